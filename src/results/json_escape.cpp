#include "results/json_escape.h"

#include <array>

namespace {

constexpr std::size_t kControlEscapeLength = 6; // "\u00xx"

using ControlEscapes = std::array<std::array<char, kControlEscapeLength>, 32>;

// "\u0000" to "\u001f", built once at compile time so that an escape needs no formatting.
constexpr ControlEscapes control_escapes() {
    constexpr char hex[] = "0123456789abcdef";
    ControlEscapes escapes{};
    for (std::size_t byte = 0; byte < escapes.size(); ++byte) {
        escapes[byte] = {'\\', 'u', '0', '0', hex[byte / 16], hex[byte % 16]};
    }
    return escapes;
}

constexpr ControlEscapes kControlEscapes = control_escapes();

} // namespace

std::string_view json_escaped_byte(unsigned char byte) {
    switch (byte) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\t':
        return "\\t";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    default:
        break;
    }
    if (byte >= kControlEscapes.size()) return {};
    return {kControlEscapes[byte].data(), kControlEscapeLength};
}
