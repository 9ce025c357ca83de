// Where a report goes: --out names either the exact HTML file or a directory that receives
// "<input stem>.html"; the JSON file sits beside the HTML file under the same stem.
#pragma once

#include <string>
#include <string_view>

inline constexpr std::size_t kMaxPathLength = 4095; // a path buffer of 4096 bytes with its NUL

struct OutputPaths {
    std::string html_path;
    std::string json_path; // empty unless a JSON path was wanted
};

// The file stem of a path: the text after its last '/' or '\' up to its last '.', where a '.'
// that starts that text does not count; at most 255 characters.
std::string path_stem(std::string_view path);

// Resolves the output paths from the --out text and the input file's path, creating the output
// directory (one level) when --out names one that does not exist yet. On failure returns false;
// `message` then holds "error: could not create output directory ...\n" when the directory could
// not be made, and is empty for a length overflow.
bool resolve_output_paths(const char* out, const char* input_path, bool want_json,
                          OutputPaths& paths, std::string& message);
