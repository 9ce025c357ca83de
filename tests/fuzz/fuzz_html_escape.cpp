// libFuzzer harness for the HTML escapes of TextBuffer. The input is handed over as C strings
// (text_buffer_checks.h): from its start, so the escape stops at the first NUL, and from just
// after each NUL. Every text is appended with text_append_html to one buffer and with
// text_append_html_path to another, both starting with some raw text. After each append the new
// bytes must hold no raw < > " ', an '&' only as one of the five entities and, for the path
// escape, "<wbr>" right after every '/' and '\' and nowhere else; un-escaped they must give back
// the text exactly. The earlier contents must stay as they were, and the buffer's length, NUL and
// capacity must agree.
#include "report/page/text_buffer.h"
#include "text_buffer_checks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using HtmlAppend = bool (*)(TextBuffer& buffer, const char* text);

struct Entity {
    std::string_view text;
    char byte;
};

constexpr std::array<Entity, 5> kEntities = {{
    {"&amp;", '&'},
    {"&lt;", '<'},
    {"&gt;", '>'},
    {"&quot;", '"'},
    {"&#39;", '\''},
}};

// Raw text already in a buffer before the escaped texts, markup characters included: the escape
// must neither touch nor depend on it.
constexpr std::string_view kPrefixPattern = "<p class=\"note\">Tom & Jerry's 'path' a/b\\c</p>\n";

// Un-escapes the entity at the front of `rest`; false when no entity starts there.
bool decode_entity(std::string_view rest, std::size_t& used, std::string& out) {
    for (const Entity& entity : kEntities) {
        if (rest.starts_with(entity.text)) {
            out += entity.byte;
            used = entity.text.size();
            return true;
        }
    }
    return false;
}

// Un-escapes what one escape appended; false on a raw markup character, a stray '&', or (for the
// path escape) a separator without its "<wbr>".
bool decode_html(std::string_view escaped, bool path, std::string& out) {
    std::size_t i = 0;
    while (i < escaped.size()) {
        const char c = escaped[i];
        if (c == '<' || c == '>' || c == '"' || c == '\'') return false;
        if (c == '&') {
            std::size_t used = 0;
            if (!decode_entity(escaped.substr(i), used, out)) return false;
            i += used;
            continue;
        }
        out += c;
        ++i;
        if (path && (c == '/' || c == '\\')) {
            if (escaped.substr(i, 5) != "<wbr>") return false;
            i += 5;
        }
    }
    return true;
}

void check_escape(const std::uint8_t* data, std::size_t size, HtmlAppend append, bool path) {
    TextBuffer buffer;
    start_text_buffer(buffer, kPrefixPattern, data, size);
    for_each_c_text(data, size, [&](const char* text) {
        std::string decoded;
        if (!decode_html(append_checked(buffer, append, text), path, decoded)) __builtin_trap();
        if (decoded != text) __builtin_trap();
    });
    text_buffer_free(buffer);
    if (buffer.data != nullptr || buffer.length != 0 || buffer.capacity != 0) __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    check_escape(data, size, text_append_html, false);
    check_escape(data, size, text_append_html_path, true);
    return 0;
}
