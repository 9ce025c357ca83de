// Writing a finished page or JSON text to disk in one piece.
#pragma once

#include <string>
#include <string_view>

// Writes `content` to a temporary file beside `path` and renames it over `path`, so that a failed
// write leaves neither a partial file nor a damaged earlier one. Returns false on any failure.
bool write_file_atomically(const std::string& path, std::string_view content);
