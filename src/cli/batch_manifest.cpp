#include "cli/batch_manifest.h"

#include <fstream>
#include <iterator>
#include <map>
#include <sys/stat.h>

namespace {

constexpr std::size_t kMaxIdLength = 200;

std::string_view trimmed(std::string_view text) {
    const char* blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The columns of one line, each trimmed: split at tabs when the line has one, else at commas.
std::vector<std::string> columns(std::string_view line) {
    const char separator = line.find('\t') != std::string_view::npos ? '\t' : ',';
    std::vector<std::string> out;
    for (;;) {
        const std::size_t at = line.find(separator);
        out.emplace_back(trimmed(line.substr(0, at)));
        if (at == std::string_view::npos) return out;
        line.remove_prefix(at + 1);
    }
}

bool is_header(const std::vector<std::string>& cells) {
    const std::string& first = cells.front();
    return first.size() == 2 && (first[0] | 0x20) == 'i' && (first[1] | 0x20) == 'd';
}

std::string located(const std::string& path, std::string_view folder) {
    if (path.front() == '/') return path;
    return std::string(folder) + path;
}

// What is wrong with one pair line, or empty when nothing is.
std::string line_fault(const std::vector<std::string>& cells,
                       const std::map<std::string, std::size_t>& seen) {
    if (cells.size() < 2 || cells[1].empty())
        return "missing the ref column (expected id, ref, dut)";
    if (cells.size() < 3 || cells[2].empty())
        return "missing the dut column (expected id, ref, dut)";
    if (cells.size() > 3)
        return "too many columns (" + std::to_string(cells.size()) + "; expected id, ref, dut)";
    if (!is_safe_pair_id(cells[0]))
        return "id '" + cells[0] +
               "' is not a safe file name (1 to 200 letters, digits, '-', '_' or '.', not "
               "starting with '.')";
    const auto first = seen.find(cells[0]);
    if (first != seen.end())
        return "duplicate id '" + cells[0] + "' (first on line " + std::to_string(first->second) +
               ")";
    return {};
}

} // namespace

bool is_safe_pair_id(std::string_view id) {
    if (id.empty() || id.size() > kMaxIdLength || id.front() == '.') return false;
    for (const char c : id) {
        const bool letter = (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
        const bool digit = c >= '0' && c <= '9';
        if (!letter && !digit && c != '-' && c != '_' && c != '.') return false;
    }
    return true;
}

bool parse_manifest(std::string_view text, std::string_view folder, Manifest& manifest,
                    std::string& message) {
    std::map<std::string, std::size_t> seen;
    bool first_content = true;
    std::size_t number = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        ++number;
        if (line.empty() || line.front() == '#') continue;
        const std::vector<std::string> cells = columns(line);
        const bool header = first_content && is_header(cells);
        first_content = false;
        if (header) continue;
        const std::string fault = line_fault(cells, seen);
        if (!fault.empty()) {
            message =
                "error: " + manifest.name + ":" + std::to_string(number) + ": " + fault + "\n";
            return false;
        }
        seen.emplace(cells[0], number);
        manifest.pairs.push_back(
            {cells[0], located(cells[1], folder), located(cells[2], folder), number});
    }
    return true;
}

bool read_manifest(const std::string& path, Manifest& manifest, std::string& message) {
    manifest = {path, {}};
    message = "error: could not read manifest '" + path + "'\n";
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    std::ifstream file(path, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)),
                           std::istreambuf_iterator<char>());
    if (!file || file.bad()) return false;
    message.clear();
    const std::size_t slash = path.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    return parse_manifest(text, folder, manifest, message);
}
