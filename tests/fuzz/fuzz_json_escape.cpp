// libFuzzer harness for the two JSON string escapes. TextBuffer's text_append_json takes C
// strings: the input is handed over from its start and from just after each NUL
// (text_buffer_checks.h), each text appended to a buffer that starts with some raw text. Its
// output must never hold a raw byte below 0x20 and must decode (strict_json.h) to exactly the
// text; the earlier contents must stay as they were and the buffer's length, NUL and capacity must
// agree. The results writer's json_escape_value takes the whole input, NULs included, and its
// output must decode to exactly the input; what it may still do beyond that is set in
// strict_json.h.
#include "report/text_buffer.h"
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
        if (!decode_json_contents(append_checked(buffer, text_append_json, text), false, decoded))
            __builtin_trap();
        if (decoded != text) __builtin_trap();
    });
    text_buffer_free(buffer);
}

// A refusal is allowed only while the escaper limits lengths, and only for a value whose shortest
// escaped form is over the limit; an accepted value's escaped form must be within it.
void check_value_escape(std::string_view value) {
    std::string escaped = "left over from an earlier value";
    const bool escaped_ok = json_escape_value(value, escaped);
    const bool raw_controls = raw_control_bytes_allowed();
    const bool too_long = shortest_escaped_length(value, raw_controls) > kMaxEscapedValueLength;
    if (!escaped_ok) {
        if (!escaped_length_limited() || !too_long) __builtin_trap();
        return;
    }
    if (escaped_length_limited() && escaped.size() > kMaxEscapedValueLength) __builtin_trap();
    std::string decoded;
    if (!decode_json_contents(escaped, raw_controls, decoded) || decoded != value) __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    check_text_buffer_escape(data, size);
    check_value_escape(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
