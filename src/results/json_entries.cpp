#include "results/json_entries.h"

#include "results/json_writer.h"

#include <cmath>

namespace {

std::string_view comma_text(EntryEnd end) {
    return end == EntryEnd::comma ? "," : "";
}

// One entry line: "    \"<key>\": " the value `write_value` writes, the comma, "\n". The line is
// built apart and appended whole, so a failed entry leaves the text as it was.
template <typename WriteValue>
bool append_entry(FlatJson& json, const char* key, EntryEnd end, WriteValue write_value) {
    std::string line;
    const JsonOut out = json_out(line);
    if (!json_raw(out, "    ") || !json_key(out, key) || !json_raw(out, " ") || !write_value(out) ||
        !json_raw(out, comma_text(end)) || !json_raw(out, "\n")) {
        return false;
    }
    return json_raw(json_out(json.text), line);
}

} // namespace

bool json_open(FlatJson& json) {
    json.text.clear();
    return json_raw(json_out(json.text), "{\n");
}

bool json_text(FlatJson& json, const char* key, std::string_view value, EntryEnd end) {
    return append_entry(json, key, end, [value](JsonOut out) { return json_string(out, value); });
}

bool json_int(FlatJson& json, const char* key, int value, EntryEnd end) {
    return append_entry(json, key, end, [value](JsonOut out) { return json_integer(out, value); });
}

bool json_long(FlatJson& json, const char* key, long value, EntryEnd end) {
    return append_entry(json, key, end, [value](JsonOut out) { return json_integer(out, value); });
}

bool json_real(FlatJson& json, const char* key, double value, EntryEnd end) {
    if (!std::isfinite(value)) {
        json.refused_key = key;
        return false;
    }
    return append_entry(json, key, end, [value](JsonOut out) { return json_fixed(out, value, 6); });
}

bool json_close(FlatJson& json) {
    constexpr std::string_view last_with_comma = ",\n";
    if (json.text.ends_with(last_with_comma)) json.text.erase(json.text.size() - 2, 1);
    return json_raw(json_out(json.text), "}\n");
}

bool json_escape_value(std::string_view value, std::string& escaped) {
    escaped.clear();
    const bool done = json_escaped(json_out(escaped), value);
    if (!done) escaped.clear();
    return done;
}
