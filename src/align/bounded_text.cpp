#include "align/bounded_text.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

BoundedText bounded_text(std::size_t capacity) {
    BoundedText text;
    text.storage.assign(capacity, '\0');
    return text;
}

void bounded_append(BoundedText& text, const char* format, ...) {
    if (text.storage.empty()) return;
    const std::size_t room = text.storage.size() - text.length;
    va_list args;
    va_start(args, format);
    const int wanted = std::vsnprintf(text.storage.data() + text.length, room, format, args);
    va_end(args);
    if (wanted < 0) {
        text.storage[text.length] = '\0';
        return;
    }
    text.length = std::min(text.length + static_cast<std::size_t>(wanted), text.storage.size() - 1);
}

std::string_view bounded_view(const BoundedText& text) {
    return {text.storage.data(), text.length};
}
