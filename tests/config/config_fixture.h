// Helpers for the configuration tests: settings files written into the test's temporary
// directory, and loading them through the real loaders.
#pragma once

#include <string>
#include <string_view>

#include "config/config.h"

// Writes `content` byte for byte to a new file in the temporary directory; returns its path.
std::string write_config_fixture(std::string_view content);

// Loads `content` as a --config file; fails the current test when it does not load.
AnalysisSettings load_override_text(std::string_view content);

// Loads `content` as a defaults file; fails the current test when it does not load.
DefaultsFileSettings load_defaults_text(std::string_view content);

// Resolves with no command-line flags at 48000 Hz and 48000 shared frames.
AnalysisConfig resolve_plain(const AnalysisSettings& config_file,
                             const AnalysisSettings& defaults_file);
