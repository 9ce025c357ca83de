#include "config/config_lookup.h"

#include "config/config_text.h"

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::size_t skip_blanks(std::string_view text, std::size_t pos) {
    while (pos < text.size() && is_blank(text[pos]))
        ++pos;
    return pos;
}

std::size_t skip_element_separators(std::string_view text, std::size_t pos) {
    while (pos < text.size() && (is_blank(text[pos]) || text[pos] == ','))
        ++pos;
    return pos;
}

// One past the '}' matching the '{' at `open`, skipping strings and their backslash escapes.
std::optional<std::size_t> object_end(std::string_view text, std::size_t open) {
    std::size_t depth = 0;
    bool in_string = false;
    for (std::size_t i = open; i < text.size(); ++i) {
        if (!outside_string(text, i, in_string)) continue;
        if (text[i] == '{') {
            ++depth;
        } else if (text[i] == '}' && --depth == 0) {
            return i + 1;
        }
    }
    return std::nullopt;
}

// Copies the object starting at `open` when it is terminated and fits `capacity` (terminator
// included).
bool copy_object(std::string_view text, std::size_t open, std::size_t capacity, std::string& out) {
    const std::optional<std::size_t> end = object_end(text, open);
    if (!end || *end - open + 1 > capacity) return false;
    out.assign(text.substr(open, *end - open));
    return true;
}

} // namespace

std::optional<std::size_t> find_key_value(std::string_view text, std::string_view key) {
    if (key.size() + 3 > kLookupKeyCapacity) return std::nullopt;
    std::string pattern;
    pattern.reserve(key.size() + 2);
    pattern.append(1, '"').append(key).append(1, '"');
    std::size_t from = 0;
    while (true) {
        const std::size_t match = text.find(pattern, from);
        if (match == std::string_view::npos) return std::nullopt;
        const std::size_t after = skip_blanks(text, match + pattern.size());
        if (after < text.size() && text[after] == ':') return skip_blanks(text, after + 1);
        from = match + pattern.size();
    }
}

bool find_section(std::string_view text, std::string_view name, std::string& out) {
    const std::optional<std::size_t> value = find_key_value(text, name);
    if (!value || *value >= text.size() || text[*value] != '{') return false;
    return copy_object(text, *value, kSectionCapacity, out);
}

bool get_array_element_object(std::string_view text, std::string_view key, std::size_t index,
                              std::size_t capacity, std::string& out) {
    const std::optional<std::size_t> value = find_key_value(text, key);
    if (!value || *value >= text.size() || text[*value] != '[') return false;
    std::size_t pos = *value + 1;
    for (std::size_t element = 0;; ++element) {
        pos = skip_element_separators(text, pos);
        if (pos >= text.size() || text[pos] != '{') return false;
        if (element == index) return copy_object(text, pos, capacity, out);
        const std::optional<std::size_t> end = object_end(text, pos);
        if (!end) return false;
        pos = *end;
    }
}
