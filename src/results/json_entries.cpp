#include "results/json_entries.h"

#include "results/json_escape.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <initializer_list>

namespace {

// Holds any number an entry prints, NUL included: "%.6f" of the largest finite double is 317
// characters (sign, 309 integer digits, point, six decimals) and "%d" and "%ld" are far shorter.
constexpr std::size_t kNumberTextSize = 320;
using NumberText = std::array<char, kNumberTextSize>;

std::string_view comma_text(EntryEnd end) {
    return end == EntryEnd::comma ? "," : "";
}

// Appends the pieces in order, all of them or (when memory runs out) none.
bool append_pieces(FlatJson& json, std::initializer_list<std::string_view> pieces) {
    const std::size_t before = json.text.size();
    const bool appended = json_guard_memory([&json, pieces] {
        for (const std::string_view piece : pieces)
            json.text.append(piece);
        return true;
    });
    if (!appended) json.text.resize(before);
    return appended;
}

// "    \"<key>\": <quote><value><quote><comma>\n"
bool append_entry(FlatJson& json, const char* key, std::string_view value, std::string_view quote,
                  EntryEnd end) {
    return append_pieces(json, {"    \"", key, "\": ", quote, value, quote, comma_text(end), "\n"});
}

// Appends what snprintf wrote into `number` as the entry's value; fails when formatting reported
// an error.
bool append_number(FlatJson& json, const char* key, const NumberText& number, int written,
                   EntryEnd end) {
    if (written < 0 || static_cast<std::size_t>(written) >= number.size()) return false;
    return append_entry(json, key, {number.data(), static_cast<std::size_t>(written)}, "", end);
}

void append_escaped(std::string& escaped, std::string_view value) {
    escaped.reserve(escaped.size() + value.size());
    for (const char c : value) {
        const std::string_view replacement = json_escaped_byte(static_cast<unsigned char>(c));
        if (replacement.empty()) {
            escaped += c;
        } else {
            escaped += replacement;
        }
    }
}

} // namespace

bool json_open(FlatJson& json) {
    json.text.clear();
    return append_pieces(json, {"{\n"});
}

bool json_text(FlatJson& json, const char* key, std::string_view value, EntryEnd end) {
    std::string escaped;
    return json_escape_value(value, escaped) && append_entry(json, key, escaped, "\"", end);
}

bool json_int(FlatJson& json, const char* key, int value, EntryEnd end) {
    NumberText number{};
    const int written = std::snprintf(number.data(), number.size(), "%d", value);
    return append_number(json, key, number, written, end);
}

bool json_long(FlatJson& json, const char* key, long value, EntryEnd end) {
    NumberText number{};
    const int written = std::snprintf(number.data(), number.size(), "%ld", value);
    return append_number(json, key, number, written, end);
}

bool json_real(FlatJson& json, const char* key, double value, EntryEnd end) {
    if (!std::isfinite(value)) {
        json.refused_key = key;
        return false;
    }
    NumberText number{};
    const int written = std::snprintf(number.data(), number.size(), "%.6f", value);
    return append_number(json, key, number, written, end);
}

bool json_close(FlatJson& json) {
    constexpr std::string_view last_with_comma = ",\n";
    if (json.text.ends_with(last_with_comma)) json.text.erase(json.text.size() - 2, 1);
    return append_pieces(json, {"}\n"});
}

bool json_escape_value(std::string_view value, std::string& escaped) {
    escaped.clear();
    const bool done = json_guard_memory([&escaped, value] {
        append_escaped(escaped, value);
        return true;
    });
    if (!done) escaped.clear();
    return done;
}
