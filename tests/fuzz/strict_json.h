// Shared by the JSON fuzz harnesses: a strict decoder for the contents of a JSON string as the
// project's escapers write them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Whether `byte` may appear unescaped in the string contents: never a quote, a backslash or any
// byte below 0x20 (tab, LF and CR have their named escapes, the others \u00xx).
inline bool raw_byte_allowed(unsigned char byte) {
    return byte != '"' && byte != '\\' && byte >= 0x20;
}

// Value of one hexadecimal digit, or -1.
inline int hex_digit_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Decodes "\uXXXX" at the front of `rest` into one byte. A code point of 0x80 or more is refused:
// a JSON reader turns it into a UTF-8 sequence, never into the single byte the escapes work on.
inline bool decode_unicode_escape(std::string_view rest, std::string& out) {
    if (rest.size() < 6) return false;
    unsigned code = 0;
    for (std::size_t i = 2; i < 6; ++i) {
        const int digit = hex_digit_value(rest[i]);
        if (digit < 0) return false;
        code = code * 16 + static_cast<unsigned>(digit);
    }
    if (code >= 0x80) return false;
    out += static_cast<char>(code);
    return true;
}

// Decodes the escape at the front of `rest` (which starts with the backslash) into one byte and
// sets `used` to its length. Only \" \\ \t \n \r and \uXXXX are accepted.
inline bool decode_escape(std::string_view rest, std::size_t& used, std::string& out) {
    if (rest.size() < 2) return false;
    used = 2;
    switch (rest[1]) {
    case '"':
        out += '"';
        return true;
    case '\\':
        out += '\\';
        return true;
    case 't':
        out += '\t';
        return true;
    case 'n':
        out += '\n';
        return true;
    case 'r':
        out += '\r';
        return true;
    case 'u':
        used = 6;
        return decode_unicode_escape(rest, out);
    default:
        return false;
    }
}

// Decodes the contents of a JSON string (without its quotes) into `out`; false on anything the
// escapers must not write.
inline bool decode_json_contents(std::string_view escaped, std::string& out) {
    out.clear();
    std::size_t i = 0;
    while (i < escaped.size()) {
        const auto byte = static_cast<unsigned char>(escaped[i]);
        if (byte == '\\') {
            std::size_t used = 0;
            if (!decode_escape(escaped.substr(i), used, out)) return false;
            i += used;
        } else {
            if (!raw_byte_allowed(byte)) return false;
            out += static_cast<char>(byte);
            ++i;
        }
    }
    return true;
}
