// Growable in-memory text with printf-style, HTML-escaped and JSON-escaped appends. Every page and
// JSON text is built in one TextBuffer and written out in a single piece. Each append returns
// false when the buffer cannot grow; the buffer then keeps its previous data, length and capacity.
#pragma once

#include "results/results.h"

#include <cstdint>
#include <optional>
#include <string_view>

// The buffer manages its memory with malloc/realloc/free so that a failed growth is a null return
// that leaves the old block intact.
struct TextBuffer {
    char* data = nullptr;       // owned; followed by a NUL once anything was appended, null before
    std::uint64_t length = 0;   // text bytes, NUL not counted
    std::uint64_t capacity = 0; // bytes allocated for data
};

void text_buffer_init(TextBuffer& buffer);
// Releases the data and resets all fields; safe on a buffer that never allocated.
void text_buffer_free(TextBuffer& buffer);

// Capacity to hold `need` bytes when the buffer has `capacity`: unchanged when it already fits,
// else 256 (from 0) or the capacity doubled until it reaches `need`. Empty when 64 bits overflow.
std::optional<std::uint64_t> text_buffer_grown_capacity(std::uint64_t capacity, std::uint64_t need);

// Appends `count` raw bytes; grows before reading any of them.
bool text_append_bytes(TextBuffer& buffer, const char* bytes, std::uint64_t count);
bool text_append(TextBuffer& buffer, const char* text);
bool text_append_char(TextBuffer& buffer, char c);
// Also false, with the buffer untouched, when the formatting itself reports an error.
bool text_append_format(TextBuffer& buffer, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

// Appends `value` exactly as "%.*f" with `decimals` (0 to 17) prints it, formatted by the JSON
// writer's number formatter (results/json_writer.h), which is several times quicker than printf,
// so the charts' long runs of numbers use this.
bool text_append_fixed(TextBuffer& buffer, double value, int decimals);
// "<lead><x>,<y> " with both numbers as "%.*f" with `decimals` (0 to 17) prints them: one chart
// point. `lead` is at most 8 characters ("M", "L" or nothing).
bool text_append_point(TextBuffer& buffer, std::string_view lead, double x, double y, int decimals);

// The escapes work byte by byte (nothing is decoded as UTF-8). One that fails part-way leaves the
// bytes escaped so far in the buffer.
// & < > " ' become entities.
bool text_append_html(TextBuffer& buffer, const char* text);
// As the HTML escape, plus "<wbr>" after every '/' and '\' so long paths can break there.
bool text_append_html_path(TextBuffer& buffer, const char* text);
// JSON string contents (no surrounding quotes) by the one rule of results/json_escape.h: " \ tab
// LF CR as backslash pairs, other bytes below 32 as \u00xx; '/' and bytes 127-255 pass unchanged.
bool text_append_json(TextBuffer& buffer, const char* text);
// The JSON writer of results/json_writer.h appending to `buffer`.
JsonOut text_json_out(TextBuffer& buffer);
