#include "config/config_values.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "config/config_lookup.h"

namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

std::optional<int> hex_digit(char c) {
    if (is_digit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return std::nullopt;
}

// The value text after `"key":`, empty when the key is absent or nothing follows it.
std::string_view value_text(std::string_view text, std::string_view key) {
    const std::optional<std::size_t> pos = find_key_value(text, key);
    if (!pos) return {};
    return text.substr(*pos);
}

// Decodes \uXXXX whose four digits start at `pos`; keeps the low 7 bits.
std::optional<char> decode_unicode_escape(std::string_view value, std::size_t pos) {
    if (pos + 4 > value.size()) return std::nullopt;
    int code = 0;
    for (std::size_t i = pos; i < pos + 4; ++i) {
        const std::optional<int> digit = hex_digit(value[i]);
        if (!digit) return std::nullopt;
        code = code * 16 + *digit;
    }
    return static_cast<char>(code & 0x7F);
}

// Decodes the escape whose letter is at `pos` (just after the backslash) and moves `pos` past it.
std::optional<char> decode_escape(std::string_view value, std::size_t& pos) {
    if (pos >= value.size()) return std::nullopt;
    const char letter = value[pos++];
    switch (letter) {
    case '\\':
    case '"':
    case '/':
        return letter;
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'u': {
        const std::optional<char> decoded = decode_unicode_escape(value, pos);
        pos += 4;
        return decoded;
    }
    default:
        return std::nullopt;
    }
}

} // namespace

bool get_number(std::string_view text, std::string_view key, double& out) {
    const std::string_view value = value_text(text, key);
    if (value.empty() || (value[0] != '-' && !is_digit(value[0]))) return false;
    // strtod needs a terminated string; nothing in this program changes the "C" locale.
    const std::string terminated(value);
    char* end = nullptr;
    const double number = std::strtod(terminated.c_str(), &end);
    if (end == terminated.c_str()) return false;
    out = number;
    return true;
}

bool get_integer(std::string_view text, std::string_view key, std::int32_t& out) {
    const std::string_view value = value_text(text, key);
    std::size_t pos = 0;
    const bool negative = !value.empty() && value[0] == '-';
    if (negative) ++pos;
    if (pos >= value.size() || !is_digit(value[pos])) return false;
    std::uint32_t magnitude = 0;
    for (; pos < value.size() && is_digit(value[pos]); ++pos) {
        magnitude = magnitude * 10u + static_cast<std::uint32_t>(value[pos] - '0');
    }
    if (negative) magnitude = 0u - magnitude;
    out = static_cast<std::int32_t>(magnitude);
    return true;
}

bool get_boolean(std::string_view text, std::string_view key, bool& out) {
    const std::string_view value = value_text(text, key);
    if (value.starts_with("true")) {
        out = true;
    } else if (value.starts_with("false")) {
        out = false;
    } else {
        return false;
    }
    return true;
}

bool get_text(std::string_view text, std::string_view key, std::size_t capacity, std::string& out) {
    const std::string_view value = value_text(text, key);
    if (value.empty() || value[0] != '"' || capacity == 0) return false;
    std::string decoded;
    for (std::size_t pos = 1;;) {
        if (pos >= value.size()) return false;
        const char c = value[pos++];
        if (c == '"') break;
        const std::optional<char> next = c == '\\' ? decode_escape(value, pos) : c;
        if (!next || decoded.size() + 1 > capacity - 1) return false;
        decoded.push_back(*next);
    }
    const std::size_t nul = decoded.find('\0');
    if (nul != std::string::npos) decoded.resize(nul);
    out = std::move(decoded);
    return true;
}
