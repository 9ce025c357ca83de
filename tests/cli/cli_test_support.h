// Running the built sonalyx executable from the command-line tests.
#pragma once

#include "support/run_process.h"

#include <string>
#include <vector>

// Runs the built executable with `args` after the program name.
ProcessOutput run_sonalyx(const std::vector<std::string>& args);
// Runs the built executable in `working_dir` (which the caller owns) under `limits`.
ProcessOutput run_sonalyx_in(const std::string& working_dir, const std::vector<std::string>& args,
                             const ProcessLimits& limits = {});
// Runs a copy of the executable at `exe` (used to place a defaults file next to it).
ProcessOutput run_sonalyx_at(const std::string& exe, const std::vector<std::string>& args);
// The usage text as --help prints it.
const std::string& usage_text();
