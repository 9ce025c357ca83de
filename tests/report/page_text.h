// Helpers for tests that look at page fragments: render one writer into a fresh buffer and get
// its text, cut a slice out of a page, and count occurrences.
#pragma once

#include "report/page/text_buffer.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

// The text `append` writes into a fresh buffer; the append must succeed.
template <typename Append> std::string render_text(Append append) {
    TextBuffer buffer;
    text_buffer_init(buffer);
    const bool ok = append(buffer);
    std::string text =
        buffer.data == nullptr ? std::string() : std::string(buffer.data, buffer.length);
    text_buffer_free(buffer);
    EXPECT_TRUE(ok);
    return text;
}

inline std::size_t count_of(std::string_view text, std::string_view piece) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string_view::npos;
         at = text.find(piece, at + piece.size())) {
        ++count;
    }
    return count;
}

// The text from the first `from` (included) up to the next `to` after it (included); empty when
// either is missing.
inline std::string slice_of(std::string_view text, std::string_view from, std::string_view to) {
    const std::size_t begin = text.find(from);
    if (begin == std::string_view::npos) return {};
    const std::size_t end = text.find(to, begin + from.size());
    if (end == std::string_view::npos) return {};
    return std::string(text.substr(begin, end + to.size() - begin));
}
