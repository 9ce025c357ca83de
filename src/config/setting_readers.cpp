#include "config/setting_readers.h"

#include "config/config_values.h"

void read_number(std::string_view section, std::string_view key, std::optional<double>& out) {
    double value = 0.0;
    if (get_number(section, key, value)) out = value;
}

void read_integer(std::string_view section, std::string_view key,
                  std::optional<std::int32_t>& out) {
    std::int32_t value = 0;
    if (get_integer(section, key, value)) out = value;
}

void read_positive_integer(std::string_view section, std::string_view key,
                           std::optional<std::int32_t>& out) {
    std::int32_t value = 0;
    if (get_integer(section, key, value) && value >= 1) out = value;
}

void read_boolean(std::string_view section, std::string_view key, std::optional<bool>& out) {
    bool value = false;
    if (get_boolean(section, key, value)) out = value;
}

void read_text(std::string_view section, std::string_view key, std::size_t capacity,
               std::optional<std::string>& out) {
    std::string value;
    if (get_text(section, key, capacity, value)) out = std::move(value);
}
