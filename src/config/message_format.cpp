#include "config/message_format.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

void format_message(std::string& out, const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list measure;
    va_copy(measure, args);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length < 0) {
        out.clear();
    } else {
        std::string text(static_cast<std::size_t>(length) + 1, '\0');
        std::vsnprintf(text.data(), text.size(), format, args);
        text.resize(static_cast<std::size_t>(length));
        out = std::move(text);
    }
    va_end(args);
}
