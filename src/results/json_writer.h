// The one JSON writer of the program: number formatting, string escaping, keys, arrays and the
// punctuation of objects, written to any text that can take appended bytes. The results JSON,
// the trim and plot reports and the report pages' chart data all build their JSON through it, so
// every JSON text is formatted and escaped alike.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// Where a JSON text goes: `append` adds bytes to `target` and returns false when the text could
// not grow (the text then keeps what it held before that append).
struct JsonOut {
    void* target = nullptr;
    bool (*append)(void* target, std::string_view bytes) = nullptr;
};

// A JsonOut that appends to `text`; running out of memory is a false return, not an exception.
JsonOut json_out(std::string& text);

// Room for any double in fixed notation with up to 17 decimals: 309 integer digits, sign, point.
using JsonNumberChars = std::array<char, 352>;

// `value` exactly as "%.*f" with `decimals` (0 to 17) prints it, in `chars`.
std::string_view json_format_fixed(double value, int decimals, JsonNumberChars& chars);
// `value` as "%ld" prints it, in `chars`.
std::string_view json_format_integer(long value, JsonNumberChars& chars);

bool json_raw(JsonOut out, std::string_view bytes);
// The contents of a JSON string without the quotes, by the rule of results/json_escape.h.
bool json_escaped(JsonOut out, std::string_view text);
// A quoted, escaped string.
bool json_string(JsonOut out, std::string_view text);
// "\"key\":" with the key as it is: keys are the program's own names and need no escape.
bool json_key(JsonOut out, std::string_view key);
bool json_fixed(JsonOut out, double value, int decimals);
bool json_integer(JsonOut out, long value);
// "," before every member or element but the first (`index` 0).
bool json_separator(JsonOut out, std::size_t index);
// "[" the values with `decimals` decimals separated by commas "]".
bool json_fixed_array(JsonOut out, std::span<const double> values, int decimals);
// "[" each flag as 0 or 1 separated by commas "]".
bool json_flag_array(JsonOut out, std::span<const std::uint8_t> flags);
// ",\"key\":": the key of every member after an object's first.
bool json_next_key(JsonOut out, std::string_view key);
