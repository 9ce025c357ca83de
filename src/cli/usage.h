// The fixed usage text and the version banner of the sonalyx executable.
#pragma once

#include "results/results.h"

#include <cstdio>

// Writes the whole usage text to `stream` (standard output for --help, standard error after a
// usage error).
void print_usage(std::FILE* stream);
