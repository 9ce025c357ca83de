// Finding keys, sections and array elements in settings text by searching for the quoted name.
// The first `"key":` anywhere in the searched text wins, at any nesting depth; a quoted string
// equal to the key is passed over because no ':' follows it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Position where the value of the first `"key":` begins (blanks after the ':' skipped); may be
// text.size() when the text ends there. Empty when no such occurrence exists, or when the quoted
// key does not fit kLookupKeyCapacity.
std::optional<std::size_t> find_key_value(std::string_view text, std::string_view key);

// Copies the object that is the value of `"name":`, from its '{' to the matching '}' inclusive.
// Absent (false) when the value does not begin with '{', when the text ends before the match, or
// when the object does not fit kSectionCapacity with its terminator.
bool find_section(std::string_view text, std::string_view name, std::string& out);

// Copies element `index` (from 0) of the array value of `"key":`. Every element up to it must be
// an object; blanks and commas separate them. Fails when the value is not an array, an element is
// not an object or is unterminated, the array ends first, or the element does not fit `capacity`.
bool get_array_element_object(std::string_view text, std::string_view key, std::size_t index,
                              std::size_t capacity, std::string& out);
