#include "cli/comparison_error.h"

#include "cli/capped_append.h"

#include <cstdarg>
#include <cstdio>

void report_comparison_error(std::string& error_text, const char* format, ...) {
    char message[kErrorMessageCapacity];
    va_list args;
    va_start(args, format);
    std::vsnprintf(message, sizeof message, format, args);
    va_end(args);
    std::fprintf(stderr, "error: %s\n", message);
    append_capped(error_text, "; ", message, kErrorTextCapacity - 1);
}
