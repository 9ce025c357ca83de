// Loading the two settings files into SettingsFile records, key by key as the settings table
// lists them. The override file (--config) holds the analysis sections at its top level; the
// defaults file holds tester information in `general`, the `alignment` section, and the analysis
// sections nested inside `analysis`.
#pragma once

#include <string>
#include <string_view>

#include "config/setting_value.h"

// The --config file. Fails on an unreadable, oversized or unbalanced file and on a malformed
// bands or snapshots array; `out` is replaced only on success.
bool load_override_file(const std::string& path, SettingsFile& out);

// sonalyx-defaults.cfg (or the --defaults-cfg file); fails as load_override_file does.
bool load_defaults_file(const std::string& path, SettingsFile& out);
