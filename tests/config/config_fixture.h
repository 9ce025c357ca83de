// Helpers for the configuration tests: settings files written into the test's temporary
// directory, and loading them through the real loaders.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/config.h"

// Writes `content` byte for byte to a new file in the temporary directory; returns its path.
std::string write_config_fixture(std::string_view content);

// Loads `content` as a --config file; fails the current test when it does not load.
SettingsFile load_override_text(std::string_view content);

// Loads `content` as a defaults file; fails the current test when it does not load.
SettingsFile load_defaults_text(std::string_view content);

// Resolves with no command-line flags at 48000 Hz and 48000 shared frames.
AnalysisConfig resolve_plain(const SettingsFile& config_file, const SettingsFile& defaults_file);

// What a loaded file gives one key, typed; empty when the file leaves it unset.
std::optional<double> number_in(const SettingsFile& file, SettingId id);
std::optional<std::int64_t> integer_in(const SettingsFile& file, SettingId id);
std::optional<bool> boolean_in(const SettingsFile& file, SettingId id);
std::optional<std::string> text_in(const SettingsFile& file, SettingId id);
std::optional<std::vector<SpectralBandSetting>> bands_in(const SettingsFile& file, SettingId id);
std::optional<SnapshotSetting> snapshots_in(const SettingsFile& file, SettingId id);
