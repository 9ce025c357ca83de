// Reads back the program's own flat JSON objects (the results JSON, the ERROR JSON, the batch rows
// JSON): one object of keys with a text or a number each, no nesting, no arrays.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

struct FlatValue {
    std::string text; // the unescaped text, or the number as it was written
    bool is_text = false;
};

using FlatObject = std::map<std::string, FlatValue, std::less<>>;

// False with a one-line `error` when `json` is not one flat object (a key written twice included).
bool read_flat_json(std::string_view json, FlatObject& object, std::string& error);

// The value of `key` when it is there and of the asked kind.
std::optional<std::string> flat_text(const FlatObject& object, std::string_view key);
std::optional<std::int64_t> flat_integer(const FlatObject& object, std::string_view key);
std::optional<double> flat_real(const FlatObject& object, std::string_view key);
