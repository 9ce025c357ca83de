#include "config/config_text.h"

#include <cstdio>
#include <sys/stat.h>
#include <utility>

namespace {

// Only a regular file is read: a FIFO or a device is refused by its type, so opening it never
// waits for a writer and reading it never runs through an endless stream.
bool is_regular_file(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

} // namespace

bool load_raw_config_text(const std::string& path, std::string& raw) {
    if (!is_regular_file(path)) return false;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    std::string buffer(kConfigFileCapacity - 1, '\0');
    const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file);
    // One more character must hit end of file: otherwise the file did not fit.
    const bool fits = std::fgetc(file) == EOF && std::feof(file) != 0 && std::ferror(file) == 0;
    std::fclose(file);
    if (!fits) return false;
    buffer.resize(count);
    // The text is a terminated string, so an embedded NUL byte ends it.
    const std::size_t nul = buffer.find('\0');
    if (nul != std::string::npos) buffer.resize(nul);
    raw = std::move(buffer);
    return true;
}

bool strip_config_comments(std::string_view raw, std::string& stripped) {
    std::string out;
    out.reserve(raw.size());
    bool in_string = false;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const char c = raw[i];
        const bool has_next = i + 1 < raw.size() && raw[i + 1] != '\0';
        if (in_string) {
            out.push_back(c);
            if (c == '\\' && has_next) {
                out.push_back(raw[++i]);
            } else if (c == '"') {
                in_string = false;
            }
        } else if (c == '/' && has_next && raw[i + 1] == '/') {
            // Skip to the character before the newline; the newline itself is copied next.
            while (i + 1 < raw.size() && raw[i + 1] != '\n')
                ++i;
        } else {
            out.push_back(c);
            in_string = c == '"';
        }
        if (out.size() > kStrippedTextCapacity - 1) return false;
    }
    stripped = std::move(out);
    return true;
}

bool outside_string(std::string_view text, std::size_t& i, bool& in_string) {
    const char c = text[i];
    if (in_string) {
        if (c == '\\') {
            ++i; // the escaped character cannot end the string
        } else if (c == '"') {
            in_string = false;
        }
        return false;
    }
    in_string = c == '"';
    return !in_string;
}

bool config_braces_balanced(std::string_view stripped) {
    std::size_t depth = 0;
    bool in_string = false;
    for (std::size_t i = 0; i < stripped.size(); ++i) {
        if (!outside_string(stripped, i, in_string)) continue;
        if (stripped[i] == '{') {
            ++depth;
        } else if (stripped[i] == '}') {
            if (depth == 0) return false;
            --depth;
        }
    }
    return depth == 0 && !in_string;
}

bool load_config_text(const std::string& path, std::string& stripped) {
    std::string raw;
    std::string text;
    if (!load_raw_config_text(path, raw) || !strip_config_comments(raw, text)) return false;
    if (!config_braces_balanced(text)) return false;
    stripped = std::move(text);
    return true;
}
