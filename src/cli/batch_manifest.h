// The manifest of a batch run: one pair per line as "id, ref, dut", separated by tabs or, on a
// line without a tab, by commas. Blank lines and lines starting with '#' are skipped; a first
// line whose first column reads "id" is a header. Relative paths are taken from the manifest's
// own folder. Every line is checked before any pair runs.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct ManifestPair {
    std::string id;  // also the stem of the pair's outputs: DIR/<id>.html, DIR/<id>.json
    std::string ref; // as the analyze run is given it: relative to the manifest's folder
    std::string dut;
    std::size_t line = 0; // 1-based line in the manifest
};

struct Manifest {
    std::string name; // the manifest's path as given, for messages
    std::vector<ManifestPair> pairs;
};

// An id that is safe as a file stem: 1 to 200 characters of letters, digits, '-', '_' and '.',
// not starting with '.'.
bool is_safe_pair_id(std::string_view id);

// Reads the manifest's lines from `text`; `folder` (empty, or ending in '/') is put in front of
// relative paths. On the first bad line returns false with the complete line in `message`:
// "error: <name>:<line>: <what is wrong>\n".
bool parse_manifest(std::string_view text, std::string_view folder, Manifest& manifest,
                    std::string& message);

// Reads and parses the manifest file at `path`; "error: could not read manifest '<path>'\n" when
// it cannot be read.
bool read_manifest(const std::string& path, Manifest& manifest, std::string& message);
