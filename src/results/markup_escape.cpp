#include "results/markup_escape.h"

std::string_view markup_escaped_byte(unsigned char byte) {
    switch (byte) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return {};
    }
}

namespace {

std::string_view xml_escaped_byte(unsigned char byte) {
    switch (byte) {
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return byte < 32 ? "?" : markup_escaped_byte(byte);
    }
}

} // namespace

void append_xml_escaped(std::string& out, std::string_view text) {
    for (const char c : text) {
        const std::string_view replacement = xml_escaped_byte(static_cast<unsigned char>(c));
        if (replacement.empty()) {
            out += c;
        } else {
            out += replacement;
        }
    }
}
