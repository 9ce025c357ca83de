// Value getters over settings text: each finds the first `"key":` (see config_lookup.h) and reads
// the value that begins there. A getter that fails leaves `out` untouched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The value must begin with '-' or a digit ("+1" and ".5" are refused) and is converted as a
// decimal floating-point number, exponent included; at least one character must be consumed.
bool get_number(std::string_view text, std::string_view key, double& out);

// An optional '-' then at least one digit; digits are read up to the first non-digit ("4096.0"
// reads 4096). No overflow check: the value wraps modulo 2^32.
bool get_integer(std::string_view text, std::string_view key, std::int32_t& out);

// The value must begin with "true" or "false"; what follows is not looked at.
bool get_boolean(std::string_view text, std::string_view key, bool& out);

// A double-quoted string with the escapes \\ \" \/ \n \r \t and \uXXXX (only the low 7 bits of
// XXXX are kept); any other escape fails. Fails, never truncates, when the text needs more than
// `capacity` - 1 characters. A decoded NUL byte ends the text.
bool get_text(std::string_view text, std::string_view key, std::size_t capacity, std::string& out);
