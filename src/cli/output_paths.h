// Where a report goes: --out names either the exact HTML file or a directory that receives
// "<input stem>.html"; the JSON file sits beside the HTML file under the same stem. The paths are
// planned before any work, so that they can be checked against the inputs; the directory is made
// only when the first file is about to be written.
#pragma once

#include <optional>
#include <string>
#include <string_view>

inline constexpr std::size_t kMaxPathLength = 4095; // a path buffer of 4096 bytes with its NUL

struct OutputPaths {
    std::string html_path;
    std::string json_path;  // empty unless a JSON path was wanted
    std::string junit_path; // the --junit file as given, empty without --junit
    // The directory --out named (without its trailing separator), made before writing; unset
    // when --out names the file itself.
    std::optional<std::string> directory;
};

// The file stem of a path: the text after its last '/' or '\' up to its last '.', where a '.'
// that starts that text does not count; at most 255 characters.
std::string path_stem(std::string_view path);

// Plans the output paths from the --out text and the input file's path, looking at the file
// system but changing nothing. False when a path would be longer than kMaxPathLength.
bool plan_output_paths(const char* out, const char* input_path, bool want_json, OutputPaths& paths);

// Makes the directory --out named (one level) when it does not exist yet. On failure returns
// false with "error: could not create output directory '...'\n" in `message`.
bool create_output_directory(const OutputPaths& paths, std::string& message);
