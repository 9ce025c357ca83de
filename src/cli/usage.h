// The fixed usage text and the version banner of the sonalyx executable.
#pragma once

#include <cstdio>

inline constexpr const char* kSonalyxVersion = "0.7.1-beta";

// Writes the whole usage text to `stream` (standard output for --help, standard error after a
// usage error).
void print_usage(std::FILE* stream);
