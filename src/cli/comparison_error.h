// Errors that make the two files incomparable (unreadable input, unsupported or mismatched
// formats, alignment failure). Each is printed at once and collected in the run's error text,
// which the ERROR report shows.
#pragma once

#include <string>

inline constexpr std::size_t kErrorTextCapacity = 1600;    // bytes, terminator included
inline constexpr std::size_t kErrorMessageCapacity = 1500; // one message, terminator included

// Prints "error: <message>\n" to standard error and appends the message to `error_text`, after
// "; " when it already holds one; the text stops growing at its capacity.
void report_comparison_error(std::string& error_text, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
