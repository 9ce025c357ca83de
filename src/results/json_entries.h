// The flat JSON object shared by the results JSON, the ERROR results JSON and the trim report:
// "{\n", one entry line per key, "}\n", built within a fixed capacity. Every entry is formatted in
// a bounded line buffer and either appended whole or not at all; a failed entry leaves the text
// as it was and returns false, so a writer chains its entries with && and stops at the first one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

inline constexpr std::size_t kResultsJsonCapacity = 65536;
inline constexpr std::size_t kErrorJsonCapacity = 4096;
inline constexpr std::size_t kTrimReportCapacity = 2048;

// The longest escaped text value an entry accepts.
inline constexpr std::size_t kMaxEscapedValueLength = 510;

// Line buffers, NUL included: a longer line makes its entry fail. Of the two sizes named for the
// non-text entries, the smaller serves both integer kinds and the larger the reals, whose %.6f
// digits run longer.
inline constexpr std::size_t kTextLineBufferSize = 600;
inline constexpr std::size_t kIntegerLineBufferSize = 128;
inline constexpr std::size_t kRealLineBufferSize = 160;

struct FlatJson {
    std::string text;
    // Bytes of the fixed buffer the text lives in. The last byte is kept for the terminating NUL:
    // a piece "reaches the end" when the text length after it would be capacity or more, and such
    // a piece fails.
    std::size_t capacity = 0;
};

// Whether an entry line ends with "," (every results entry) or not (the last entry of the ERROR
// JSON and of the trim report).
enum class EntryEnd { comma, last };

// Starts a new object: clears the text and writes "{\n".
bool json_open(FlatJson& json, std::size_t capacity);

// "    \"%s\": \"%s\"%s\n" with the value escaped by json_escape_value.
bool json_text(FlatJson& json, const char* key, std::string_view value,
               EntryEnd end = EntryEnd::comma);
// "    \"%s\": %d%s\n"
bool json_int(FlatJson& json, const char* key, int value, EntryEnd end = EntryEnd::comma);
// "    \"%s\": %ld%s\n"
bool json_long(FlatJson& json, const char* key, long value, EntryEnd end = EntryEnd::comma);
// "    \"%s\": %.6f%s\n". A NaN or infinite value fails the entry: JSON has no spelling for it and
// the measurements never produce one, so it is treated as an internal fault, not printed.
bool json_real(FlatJson& json, const char* key, double value, EntryEnd end = EntryEnd::comma);

// Removes the comma after the last entry, if there is one, then writes "}\n".
bool json_close(FlatJson& json);

// Escapes '"' and '\' as backslash pairs and tab, LF, CR as \t, \n, \r; every other byte passes
// unchanged. False when the escaped text is longer than kMaxEscapedValueLength characters.
bool json_escape_value(std::string_view value, std::string& escaped);
