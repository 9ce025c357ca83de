#include "results/json_entries.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <span>

namespace {

const char* comma_text(EntryEnd end) {
    return end == EntryEnd::comma ? "," : "";
}

// Appends `piece` unless the text would reach the end of the buffer (see FlatJson::capacity).
bool append_piece(FlatJson& json, std::string_view piece) {
    if (json.text.size() + piece.size() >= json.capacity) return false;
    json.text.append(piece);
    return true;
}

// Appends what snprintf wrote into `line`; fails when formatting reported an error or the line
// did not fit its buffer.
bool append_line(FlatJson& json, std::span<const char> line, int written) {
    if (written < 0 || static_cast<std::size_t>(written) >= line.size()) return false;
    return append_piece(json, std::string_view(line.data(), static_cast<std::size_t>(written)));
}

} // namespace

bool json_open(FlatJson& json, std::size_t capacity) {
    json.text.clear();
    json.capacity = capacity;
    return append_piece(json, "{\n");
}

bool json_text(FlatJson& json, const char* key, std::string_view value, EntryEnd end) {
    std::string escaped;
    if (!json_escape_value(value, escaped)) return false;
    std::array<char, kTextLineBufferSize> line{};
    const int written = std::snprintf(line.data(), line.size(), "    \"%s\": \"%s\"%s\n", key,
                                      escaped.c_str(), comma_text(end));
    return append_line(json, line, written);
}

bool json_int(FlatJson& json, const char* key, int value, EntryEnd end) {
    std::array<char, kIntegerLineBufferSize> line{};
    const int written =
        std::snprintf(line.data(), line.size(), "    \"%s\": %d%s\n", key, value, comma_text(end));
    return append_line(json, line, written);
}

bool json_long(FlatJson& json, const char* key, long value, EntryEnd end) {
    std::array<char, kIntegerLineBufferSize> line{};
    const int written =
        std::snprintf(line.data(), line.size(), "    \"%s\": %ld%s\n", key, value, comma_text(end));
    return append_line(json, line, written);
}

bool json_real(FlatJson& json, const char* key, double value, EntryEnd end) {
    if (!std::isfinite(value)) return false;
    std::array<char, kRealLineBufferSize> line{};
    const int written = std::snprintf(line.data(), line.size(), "    \"%s\": %.6f%s\n", key, value,
                                      comma_text(end));
    return append_line(json, line, written);
}

bool json_close(FlatJson& json) {
    constexpr std::string_view last_with_comma = ",\n";
    if (json.text.ends_with(last_with_comma)) json.text.erase(json.text.size() - 2, 1);
    return append_piece(json, "}\n");
}

bool json_escape_value(std::string_view value, std::string& escaped) {
    escaped.clear();
    for (const char c : value) {
        switch (c) {
        case '"':
            escaped += "\\\"";
            break;
        case '\\':
            escaped += "\\\\";
            break;
        case '\t':
            escaped += "\\t";
            break;
        case '\n':
            escaped += "\\n";
            break;
        case '\r':
            escaped += "\\r";
            break;
        default:
            escaped += c;
            break;
        }
    }
    return escaped.size() <= kMaxEscapedValueLength;
}
