#include "results/json_writer.h"

#include "results/json_escape.h"

#include <charconv>
#include <new>
#include <stdexcept>

namespace {

bool append_to_string(void* target, std::string_view bytes) {
    auto& text = *static_cast<std::string*>(target);
    try {
        text.append(bytes);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
}

std::string_view written(const JsonNumberChars& chars, const char* end) {
    return {chars.data(), static_cast<std::size_t>(end - chars.data())};
}

} // namespace

JsonOut json_out(std::string& text) {
    return {&text, append_to_string};
}

std::string_view json_format_fixed(double value, int decimals, JsonNumberChars& chars) {
    const std::to_chars_result result = std::to_chars(chars.data(), chars.data() + chars.size(),
                                                      value, std::chars_format::fixed, decimals);
    return written(chars, result.ptr);
}

std::string_view json_format_integer(long value, JsonNumberChars& chars) {
    const std::to_chars_result result =
        std::to_chars(chars.data(), chars.data() + chars.size(), value);
    return written(chars, result.ptr);
}

// Nothing to add is no append at all, so an empty text never makes its target allocate.
bool json_raw(JsonOut out, std::string_view bytes) {
    return bytes.empty() || out.append(out.target, bytes);
}

// Bytes that pass unchanged are appended in runs, each escape on its own.
bool json_escaped(JsonOut out, std::string_view text) {
    std::size_t run_start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view replacement = json_escaped_byte(static_cast<unsigned char>(text[i]));
        if (replacement.empty()) continue;
        if (!json_raw(out, text.substr(run_start, i - run_start)) || !json_raw(out, replacement)) {
            return false;
        }
        run_start = i + 1;
    }
    return json_raw(out, text.substr(run_start));
}

bool json_string(JsonOut out, std::string_view text) {
    return json_raw(out, "\"") && json_escaped(out, text) && json_raw(out, "\"");
}

bool json_key(JsonOut out, std::string_view key) {
    return json_raw(out, "\"") && json_raw(out, key) && json_raw(out, "\":");
}

bool json_fixed(JsonOut out, double value, int decimals) {
    JsonNumberChars chars{};
    return json_raw(out, json_format_fixed(value, decimals, chars));
}

bool json_integer(JsonOut out, long value) {
    JsonNumberChars chars{};
    return json_raw(out, json_format_integer(value, chars));
}

bool json_separator(JsonOut out, std::size_t index) {
    return index == 0 || json_raw(out, ",");
}

bool json_fixed_array(JsonOut out, std::span<const double> values, int decimals) {
    if (!json_raw(out, "[")) return false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!json_separator(out, i) || !json_fixed(out, values[i], decimals)) return false;
    }
    return json_raw(out, "]");
}

bool json_flag_array(JsonOut out, std::span<const std::uint8_t> flags) {
    if (!json_raw(out, "[")) return false;
    for (std::size_t i = 0; i < flags.size(); ++i) {
        if (!json_separator(out, i) || !json_raw(out, flags[i] != 0 ? "1" : "0")) return false;
    }
    return json_raw(out, "]");
}

bool json_next_key(JsonOut out, std::string_view key) {
    return json_raw(out, ",") && json_key(out, key);
}
