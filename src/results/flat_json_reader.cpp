#include "results/flat_json_reader.h"

#include <charconv>
#include <cstddef>
#include <new>
#include <system_error>
#include <utility>

namespace {

struct Cursor {
    std::string_view text;
    std::size_t at = 0;
};

void skip_blanks(Cursor& cursor) {
    while (cursor.at < cursor.text.size()) {
        const char c = cursor.text[cursor.at];
        if (c != ' ' && c != '\n' && c != '\r' && c != '\t') return;
        ++cursor.at;
    }
}

bool take(Cursor& cursor, char expected) {
    skip_blanks(cursor);
    if (cursor.at >= cursor.text.size() || cursor.text[cursor.at] != expected) return false;
    ++cursor.at;
    return true;
}

std::optional<char> hex_byte(std::string_view digits) {
    unsigned value = 0;
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + 4, value, 16);
    if (failure != std::errc{} || end != digits.data() + 4 || value > 0xFF) return std::nullopt;
    return static_cast<char>(value);
}

// The escapes the JSON writer produces: \" \\ \t \n \r and \u00xx.
std::optional<char> read_escape(Cursor& cursor) {
    if (cursor.at >= cursor.text.size()) return std::nullopt;
    const char kind = cursor.text[cursor.at++];
    switch (kind) {
    case '"':
    case '\\':
    case '/':
        return kind;
    case 't':
        return '\t';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 'u': {
        if (cursor.text.size() - cursor.at < 4) return std::nullopt;
        const std::optional<char> byte = hex_byte(cursor.text.substr(cursor.at, 4));
        cursor.at += 4;
        return byte;
    }
    default:
        return std::nullopt;
    }
}

bool read_string(Cursor& cursor, std::string& out) {
    if (!take(cursor, '"')) return false;
    out.clear();
    while (cursor.at < cursor.text.size()) {
        const char c = cursor.text[cursor.at++];
        if (c == '"') return true;
        if (c != '\\') {
            out += c;
            continue;
        }
        const std::optional<char> escaped = read_escape(cursor);
        if (!escaped) return false;
        out += *escaped;
    }
    return false;
}

bool is_number_byte(char c) {
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

bool read_value(Cursor& cursor, FlatValue& value) {
    skip_blanks(cursor);
    if (cursor.at < cursor.text.size() && cursor.text[cursor.at] == '"') {
        value.is_text = true;
        return read_string(cursor, value.text);
    }
    const std::size_t start = cursor.at;
    while (cursor.at < cursor.text.size() && is_number_byte(cursor.text[cursor.at]))
        ++cursor.at;
    value.is_text = false;
    value.text = std::string(cursor.text.substr(start, cursor.at - start));
    return cursor.at > start;
}

bool read_member(Cursor& cursor, FlatObject& object, std::string& error) {
    std::string key;
    FlatValue value;
    if (!read_string(cursor, key) || !take(cursor, ':') || !read_value(cursor, value)) {
        error = "malformed entry at byte " + std::to_string(cursor.at);
        return false;
    }
    if (!object.emplace(key, std::move(value)).second) {
        error = "key written twice: " + key;
        return false;
    }
    return true;
}

bool read_members(Cursor& cursor, FlatObject& object, std::string& error) {
    if (!take(cursor, '{')) {
        error = "not a JSON object";
        return false;
    }
    if (take(cursor, '}')) return true;
    do {
        if (!read_member(cursor, object, error)) return false;
    } while (take(cursor, ','));
    if (!take(cursor, '}')) {
        error = "malformed entry at byte " + std::to_string(cursor.at);
        return false;
    }
    skip_blanks(cursor);
    if (cursor.at == cursor.text.size()) return true;
    error = "text after the object";
    return false;
}

template <typename Number> std::optional<Number> parse_number(const std::string& text) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, value);
    if (failure != std::errc{} || stop != end) return std::nullopt;
    return value;
}

const FlatValue* number_value(const FlatObject& object, std::string_view key) {
    const auto found = object.find(key);
    if (found == object.end() || found->second.is_text) return nullptr;
    return &found->second;
}

} // namespace

bool read_flat_json(std::string_view json, FlatObject& object, std::string& error) {
    object.clear();
    Cursor cursor{json, 0};
    try {
        if (read_members(cursor, object, error)) return true;
    } catch (const std::bad_alloc&) {
        error = "out of memory";
    }
    object.clear();
    return false;
}

std::optional<std::string> flat_text(const FlatObject& object, std::string_view key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->second.is_text) return std::nullopt;
    return found->second.text;
}

std::optional<std::int64_t> flat_integer(const FlatObject& object, std::string_view key) {
    const FlatValue* value = number_value(object, key);
    return value ? parse_number<std::int64_t>(value->text) : std::nullopt;
}

std::optional<double> flat_real(const FlatObject& object, std::string_view key) {
    const FlatValue* value = number_value(object, key);
    return value ? parse_number<double>(value->text) : std::nullopt;
}
