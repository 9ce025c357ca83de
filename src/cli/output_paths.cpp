#include "cli/output_paths.h"

#include <cerrno>
#include <sys/stat.h>

namespace {

constexpr std::size_t kMaxStemLength = 255;

bool is_separator(char c) {
    return c == '/' || c == '\\';
}

bool is_directory(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// Everything up to and including the last separator ("" when there is none).
std::string_view directory_part(std::string_view path) {
    const std::size_t sep = path.find_last_of("/\\");
    return sep == std::string_view::npos ? std::string_view{} : path.substr(0, sep + 1);
}

bool make_directory(const std::string& dir) {
    // An empty directory text is what remains of "/" after its separator is removed: the root.
    if (dir.empty() || is_directory(dir)) return true;
    return ::mkdir(dir.c_str(), 0755) == 0 || errno == EEXIST;
}

bool plan_into_directory(std::string_view out, const char* input_path, bool want_json,
                         OutputPaths& paths) {
    if (out.size() > kMaxPathLength) return false;
    if (!out.empty() && is_separator(out.back())) out.remove_suffix(1);
    const std::string dir(out);
    const std::string base = dir + "/" + path_stem(input_path);
    paths.directory = dir;
    paths.html_path = base + ".html";
    if (want_json) paths.json_path = base + ".json";
    return paths.html_path.size() <= kMaxPathLength && paths.json_path.size() <= kMaxPathLength;
}

} // namespace

std::string path_stem(std::string_view path) {
    const std::size_t sep = path.find_last_of("/\\");
    std::string_view name = sep == std::string_view::npos ? path : path.substr(sep + 1);
    const std::size_t dot = name.find_last_of('.');
    if (dot != std::string_view::npos && dot > 0) name = name.substr(0, dot);
    return std::string(name.substr(0, kMaxStemLength));
}

bool plan_output_paths(const char* out, const char* input_path, bool want_json,
                       OutputPaths& paths) {
    paths = {};
    const std::string_view out_text(out);
    if (is_directory(std::string(out_text)) || (!out_text.empty() && is_separator(out_text.back())))
        return plan_into_directory(out_text, input_path, want_json, paths);
    if (out_text.size() > kMaxPathLength) return false;
    paths.html_path = out_text;
    if (want_json) {
        paths.json_path = std::string(directory_part(out_text)) + path_stem(out_text) + ".json";
        if (paths.json_path.size() > kMaxPathLength) return false;
    }
    return true;
}

bool create_output_directory(const OutputPaths& paths, std::string& message) {
    if (!paths.directory || make_directory(*paths.directory)) return true;
    message = "error: could not create output directory '" + *paths.directory + "'\n";
    return false;
}
