// Loading a settings file: the raw text (at most 16383 bytes), "//" comment stripping and the
// brace balance check. Nothing else of JSON is validated here; values are found later by key
// search.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Fixed capacities of the settings-file reader, in bytes including the terminator.
inline constexpr std::size_t kConfigFileCapacity = 16384;    // raw file text
inline constexpr std::size_t kStrippedTextCapacity = 16384;  // text after comment stripping
inline constexpr std::size_t kSectionCapacity = 4096;        // one section object
inline constexpr std::size_t kLookupKeyCapacity = 128;       // the quoted key pattern
inline constexpr std::size_t kSnapshotElementCapacity = 256; // one snapshots array element
inline constexpr std::size_t kBandElementCapacity = 4096;    // one bands array element

// Reads the whole file in binary mode; fails when it is not a regular file, cannot be opened or
// read, or holds more than kConfigFileCapacity - 1 bytes. The text ends at the first NUL byte.
bool load_raw_config_text(const std::string& path, std::string& raw);

// Drops "//" comments outside strings (up to, not including, the next newline). Fails when the
// output would exceed kStrippedTextCapacity - 1 characters.
bool strip_config_comments(std::string_view raw, std::string& stripped);

// One step of a left-to-right scan over settings text that must skip strings: looks at text[i]
// and returns true when it stands outside any string (and is not the quote that opens one). Inside
// a string a backslash makes the scan step over the escaped character by advancing `i`.
bool outside_string(std::string_view text, std::size_t& i, bool& in_string);

// Outside strings, '{' and '}' must pair up, and no string may be left open at the end.
bool config_braces_balanced(std::string_view stripped);

// The three steps above in order: the stripped, balanced text of one settings file.
bool load_config_text(const std::string& path, std::string& stripped);
