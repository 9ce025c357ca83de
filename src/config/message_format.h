// printf-style formatting of a complete message line into a std::string.
#pragma once

#include <string>

void format_message(std::string& out, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
