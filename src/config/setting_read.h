// Reading one setting of the table from the text of its section.
#pragma once

#include <optional>
#include <string_view>

#include "config/setting_table.h"
#include "config/setting_value.h"

// Fills `out` when the section gives the key a well-formed value of the entry's type, and leaves
// it alone otherwise. Fails only on a malformed bands or snapshots array.
bool read_setting(std::string_view section, const SettingEntry& entry,
                  std::optional<SettingValue>& out);
