// Finding and loading the defaults file of a run: the file named by --defaults-cfg, else
// sonalyx-defaults.cfg in the directory of the running executable when it is there.
#pragma once

#include "config/config.h"

#include <string>

// The directory holding the running executable (from /proc/self/exe, cut at its last '/'), or
// false when it cannot be determined.
bool executable_directory(std::string& dir);

// Loads the run's defaults file into `out` (left untouched when there is none). On failure returns
// false with the complete error line in `message`.
bool load_run_defaults(const char* defaults_cfg_path, SettingsFile& out, std::string& message);

// sonalyx-defaults.cfg in the executable's directory when it is there, else empty.
std::string found_defaults_file();
