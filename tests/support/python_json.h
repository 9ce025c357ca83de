// Reads a JSON text back with Python's json module, an independent parser: strict by default, it
// refuses raw control characters inside strings, trailing commas and anything else outside the
// JSON grammar. The text's bytes are decoded as UTF-8 with invalid bytes kept as they are
// (surrogateescape), so that any path survives the round trip. Needs python3 on the PATH.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct PythonJson {
    bool parsed = false;             // the whole text is one valid JSON object
    std::string error;               // Python's complaint when it is not
    std::vector<std::string> values; // the text values of the keys asked for, in that order
};

// A path of exactly `length` bytes (at least 64) holding every kind of byte the escape treats
// differently: the control bytes 0x01, 0x1b and 0x1f, tab, LF, CR, DEL, '"', '\', '/', a UTF-8
// sequence and a byte 0xff that is no UTF-8, padded with 'p'.
std::string awkward_path(std::size_t length);

// Parses `text` and returns the values of `keys`, which must name text entries.
PythonJson python_json(const std::string& text, const std::vector<std::string>& keys = {});
