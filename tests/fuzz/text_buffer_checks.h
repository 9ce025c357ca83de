// Shared by the TextBuffer escape harnesses: the buffer's own invariants, a buffer that starts
// with some raw text, and the input handed over as the C strings an escape sees.
#pragma once

#include "report/page/text_buffer.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

// Neither the starting text nor any escaped text holds a NUL, so the text ends exactly at
// `length`, and the NUL after it fits the capacity.
inline void check_text_buffer(const TextBuffer& buffer) {
    if (buffer.data == nullptr || buffer.length + 1 > buffer.capacity) __builtin_trap();
    if (buffer.data[buffer.length] != '\0') __builtin_trap();
    if (std::strlen(buffer.data) != buffer.length) __builtin_trap();
}

// Starts the buffer with 0 to 510 bytes of `pattern` repeated, the count taken from the input's
// first byte so that escaped text starts at many offsets relative to the buffer's growth.
inline void start_text_buffer(TextBuffer& buffer, std::string_view pattern,
                              const std::uint8_t* data, std::size_t size) {
    text_buffer_init(buffer);
    const std::size_t count = size > 0 ? data[0] * 2u : 0u;
    std::string text;
    while (text.size() < count)
        text += pattern;
    if (!text_append_bytes(buffer, text.data(), count)) __builtin_trap();
    check_text_buffer(buffer);
}

// Copies the input with a NUL after it (in a block of exactly that size, so a read past the NUL
// is caught) and calls `use` with it from its start, which an escape reads up to the first NUL,
// and from just after each NUL.
template <typename Use> void for_each_c_text(const std::uint8_t* data, std::size_t size, Use use) {
    auto text = std::make_unique<char[]>(size + 1);
    if (size > 0) std::memcpy(text.get(), data, size);
    text[size] = '\0';
    use(static_cast<const char*>(text.get()));
    for (std::size_t i = 0; i < size; ++i) {
        if (text[i] == '\0') use(static_cast<const char*>(text.get() + i + 1));
    }
}

// Appends `text` with `append` and checks the buffer: its earlier contents unchanged, its
// invariants kept. Returns the bytes the append added.
template <typename Append>
std::string_view append_checked(TextBuffer& buffer, Append append, const char* text) {
    const std::string before(buffer.data, buffer.length);
    if (!append(buffer, text)) __builtin_trap();
    check_text_buffer(buffer);
    if (std::string_view(buffer.data, before.size()) != before) __builtin_trap();
    return std::string_view(buffer.data + before.size(), buffer.length - before.size());
}
