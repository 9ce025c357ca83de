// libFuzzer harness for the two JSON string escapes. TextBuffer's text_append_json takes C
// strings: the input is handed over from its start and from just after each NUL
// (text_buffer_checks.h), each text appended to a buffer that starts with some raw text. Its
// output must never hold a raw byte below 0x20 and must decode (strict_json.h) to exactly the
// text; the earlier contents must stay as they were and the buffer's length, NUL and capacity must
// agree. The results writer's json_escape_value takes the whole input, NULs included, and its
// output must decode to exactly the input and, without NULs, equal the page escape's output.
#include "report/page/text_buffer.h"
#include "results/json_entries.h"
#include "strict_json.h"
#include "text_buffer_checks.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

// Raw text already in the buffer before the escaped texts; the escape must not touch it.
constexpr std::string_view kPrefixPattern = "{\n    \"ref_file\": \"a\\\"b\",\n    \"x\": 1,\n";

void check_text_buffer_escape(const std::uint8_t* data, std::size_t size) {
    TextBuffer buffer;
    start_text_buffer(buffer, kPrefixPattern, data, size);
    for_each_c_text(data, size, [&](const char* text) {
        std::string decoded;
        if (!decode_json_contents(append_checked(buffer, text_append_json, text), decoded))
            __builtin_trap();
        if (decoded != text) __builtin_trap();
    });
    text_buffer_free(buffer);
}

// The results writer's escape takes any value, NULs included: its output must decode to exactly
// the value, and for a value without NUL it must be what the page's escape writes.
void check_value_escape(std::string_view value) {
    std::string escaped = "left over from an earlier value";
    std::string decoded;
    if (!json_escape_value(value, escaped) || !decode_json_contents(escaped, decoded) ||
        decoded != value)
        __builtin_trap();
    if (value.find('\0') != std::string_view::npos) return;
    TextBuffer page;
    text_buffer_init(page);
    const std::string text(value);
    if (!text_append_json(page, text.c_str())) __builtin_trap();
    if (std::string_view(page.data, page.length) != escaped) __builtin_trap();
    text_buffer_free(page);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    check_text_buffer_escape(data, size);
    check_value_escape(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
