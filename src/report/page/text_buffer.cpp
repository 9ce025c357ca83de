// Growth, raw appends, formatted appends and the three byte-by-byte escapes of TextBuffer.
#include "report/page/text_buffer.h"

#include "audio/audio.h"
#include "results/results.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>

static_assert(sizeof(std::size_t) >= sizeof(std::uint64_t), "capacities are passed to realloc");

namespace {

constexpr std::uint64_t initial_capacity = 256;
constexpr std::uint64_t max_doublable = std::numeric_limits<std::uint64_t>::max() / 2;

// Makes room for `count` more bytes plus the NUL; on failure nothing changes.
bool text_buffer_reserve(TextBuffer& buffer, std::uint64_t count) {
    if (count > std::numeric_limits<std::uint64_t>::max() - 1 - buffer.length) return false;
    const std::uint64_t need = buffer.length + count + 1;
    if (need <= buffer.capacity) return true;
    const std::optional<std::uint64_t> grown = text_buffer_grown_capacity(buffer.capacity, need);
    if (!grown) return false;
    void* moved = std::realloc(buffer.data, static_cast<std::size_t>(*grown));
    if (moved == nullptr) {
        report_out_of_memory(static_cast<std::size_t>(*grown));
        return false;
    }
    buffer.data = static_cast<char*>(moved);
    buffer.capacity = *grown;
    return true;
}

bool text_append_vformat(TextBuffer& buffer, const char* format, va_list args) {
    va_list measure;
    va_copy(measure, args);
    const int n = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (n < 0) return false;
    const auto count = static_cast<std::uint64_t>(n);
    if (!text_buffer_reserve(buffer, count)) return false;
    std::vsnprintf(buffer.data + buffer.length, static_cast<std::size_t>(count) + 1, format, args);
    buffer.length += count;
    return true;
}

using EscapeScratch = std::array<char, 8>;
// The replacement for one byte, or an empty view when the byte is written as itself.
using ByteEscape = std::string_view (*)(unsigned char byte, EscapeScratch& scratch);

std::string_view html_escape(unsigned char byte, EscapeScratch& /*scratch*/) {
    return markup_escaped_byte(byte);
}

std::string_view html_path_escape(unsigned char byte, EscapeScratch& scratch) {
    // A separator and its "<wbr>" hint are treated as one escaped unit.
    if (byte == '/') return "/<wbr>";
    if (byte == '\\') return "\\<wbr>";
    return html_escape(byte, scratch);
}

bool append_escaped(TextBuffer& buffer, const char* text, ByteEscape escape) {
    EscapeScratch scratch{};
    for (const char* p = text; *p != '\0'; ++p) {
        const std::string_view replacement = escape(static_cast<unsigned char>(*p), scratch);
        const bool appended =
            replacement.empty() ? text_append_char(buffer, *p)
                                : text_append_bytes(buffer, replacement.data(), replacement.size());
        if (!appended) return false;
    }
    return true;
}

} // namespace

void text_buffer_init(TextBuffer& buffer) {
    buffer.data = nullptr;
    buffer.length = 0;
    buffer.capacity = 0;
}

void text_buffer_free(TextBuffer& buffer) {
    std::free(buffer.data);
    text_buffer_init(buffer);
}

std::optional<std::uint64_t> text_buffer_grown_capacity(std::uint64_t capacity,
                                                        std::uint64_t need) {
    if (need <= capacity) return capacity;
    if (capacity == 0 && need <= initial_capacity) return initial_capacity;
    std::uint64_t grown = capacity == 0 ? initial_capacity : capacity;
    // A non-zero capacity doubles at least once, since the need exceeds it.
    do {
        if (grown > max_doublable) return std::nullopt;
        grown *= 2;
    } while (grown < need);
    return grown;
}

bool text_append_bytes(TextBuffer& buffer, const char* bytes, std::uint64_t count) {
    if (!text_buffer_reserve(buffer, count)) return false;
    std::memcpy(buffer.data + buffer.length, bytes, static_cast<std::size_t>(count));
    buffer.length += count;
    buffer.data[buffer.length] = '\0';
    return true;
}

bool text_append(TextBuffer& buffer, const char* text) {
    return text_append_bytes(buffer, text, std::strlen(text));
}

bool text_append_char(TextBuffer& buffer, char c) {
    return text_append_bytes(buffer, &c, 1);
}

bool text_append_format(TextBuffer& buffer, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const bool appended = text_append_vformat(buffer, format, args);
    va_end(args);
    return appended;
}

namespace {

bool append_to_buffer(void* target, std::string_view bytes) {
    return text_append_bytes(*static_cast<TextBuffer*>(target), bytes.data(), bytes.size());
}

} // namespace

JsonOut text_json_out(TextBuffer& buffer) {
    return {&buffer, append_to_buffer};
}

bool text_append_fixed(TextBuffer& buffer, double value, int decimals) {
    JsonNumberChars chars{};
    const std::string_view text = json_format_fixed(value, decimals, chars);
    return text_append_bytes(buffer, text.data(), text.size());
}

bool text_append_point(TextBuffer& buffer, std::string_view lead, double x, double y,
                       int decimals) {
    JsonNumberChars x_chars{};
    JsonNumberChars y_chars{};
    const std::string_view x_text = json_format_fixed(x, decimals, x_chars);
    const std::string_view y_text = json_format_fixed(y, decimals, y_chars);
    std::array<char, 2 * std::tuple_size_v<JsonNumberChars> + 16> text{};
    char* out = std::copy_n(lead.data(), std::min<std::size_t>(lead.size(), 8), text.data());
    out = std::copy(x_text.begin(), x_text.end(), out);
    *out++ = ',';
    out = std::copy(y_text.begin(), y_text.end(), out);
    *out++ = ' ';
    return text_append_bytes(buffer, text.data(), static_cast<std::uint64_t>(out - text.data()));
}

bool text_append_html(TextBuffer& buffer, const char* text) {
    return append_escaped(buffer, text, html_escape);
}

bool text_append_html_path(TextBuffer& buffer, const char* text) {
    return append_escaped(buffer, text, html_path_escape);
}

bool text_append_json(TextBuffer& buffer, const char* text) {
    return json_escaped(text_json_out(buffer), text);
}
