// Fixed-capacity text for the alignment explanation: printf-style appends that never write past
// the buffer and keep it terminated. Text beyond the capacity is cut off silently.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

struct BoundedText {
    std::vector<char> storage; // capacity bytes: the text followed by its terminator
    std::size_t length = 0;    // characters in use, at most capacity - 1
};

// An empty text that can hold capacity - 1 characters and the terminator.
BoundedText bounded_text(std::size_t capacity);

// Appends the formatted text, keeping as much as fits. A formatting error appends nothing.
void bounded_append(BoundedText& text, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

// The text so far (empty for a zero capacity).
std::string_view bounded_view(const BoundedText& text);
