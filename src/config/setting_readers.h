// Fills one optional setting from a section's text with the matching getter; a key that is absent
// or malformed leaves the optional as it was.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

void read_number(std::string_view section, std::string_view key, std::optional<double>& out);
void read_integer(std::string_view section, std::string_view key, std::optional<std::int32_t>& out);
// For keys that only take integers of at least 1: smaller values are ignored like malformed ones.
void read_positive_integer(std::string_view section, std::string_view key,
                           std::optional<std::int32_t>& out);
void read_boolean(std::string_view section, std::string_view key, std::optional<bool>& out);
void read_text(std::string_view section, std::string_view key, std::size_t capacity,
               std::optional<std::string>& out);
