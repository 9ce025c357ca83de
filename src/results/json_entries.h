// The flat JSON object shared by the results JSON, the ERROR results JSON, the trim report and the
// plot JSON: "{\n", one entry line per key, "}\n". The text grows as needed, so no key or value
// is too long for it. Every entry is either appended whole or not at all; a failed entry leaves
// the text as it was and returns false, so a writer chains its entries with && and stops at the
// first one. An entry fails in two cases only: memory ran out (std::bad_alloc, or
// std::length_error for a size past what a string can hold, caught and turned into false), or a
// real is NaN or infinite (an internal fault, see json_real).
#pragma once

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

struct FlatJson {
    std::string text;
    std::string refused_key; // the key of a real refused as NaN or infinite, if any
};

// Whether an entry line ends with "," (every results entry) or not (the last entry of the ERROR
// JSON, the trim report and the plot JSON).
enum class EntryEnd { comma, last };

// Starts a new object: clears the text and writes "{\n".
bool json_open(FlatJson& json);

// "    \"%s\": \"%s\"%s\n" with the value escaped by json_escape_value.
bool json_text(FlatJson& json, const char* key, std::string_view value,
               EntryEnd end = EntryEnd::comma);
// "    \"%s\": %d%s\n"
bool json_int(FlatJson& json, const char* key, int value, EntryEnd end = EntryEnd::comma);
// "    \"%s\": %ld%s\n"
bool json_long(FlatJson& json, const char* key, long value, EntryEnd end = EntryEnd::comma);
// "    \"%s\": %.6f%s\n". A NaN or infinite value fails the entry and is named in `refused_key`:
// JSON has no spelling for it and the measurements never produce one, so it is treated as an
// internal fault, not printed.
bool json_real(FlatJson& json, const char* key, double value, EntryEnd end = EntryEnd::comma);

// Removes the comma after the last entry, if there is one, then writes "}\n".
bool json_close(FlatJson& json);

// Replaces `escaped` with `value` escaped by the rule of results/json_escape.h (bytes below 32 as
// \u00xx or \t, \n, \r, '"' and '\' as backslash pairs), every byte of the view taken, a NUL
// included. False only when memory ran out; `escaped` is then empty.
bool json_escape_value(std::string_view value, std::string& escaped);

// Runs `build` (a callable returning bool) and returns its result, or false when it ran out of
// memory: the builders wrap their whole text in this so that no allocation failure, also in the
// strings that make up their keys, escapes as an exception.
template <typename Build> bool json_guard_memory(Build build) {
    try {
        return build();
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
}
