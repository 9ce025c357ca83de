// The value a setting takes when no file and no flag gives one, as the settings table states it.
#pragma once

#include "config/resolve_settings.h"
#include "config/setting_table.h"

// `resolved` holds the keys before `entry` in table order, already resolved: a default may
// depend on one of them (the level fidelity profile, the general low-level threshold).
Resolved<SettingValue> setting_default(const SettingEntry& entry, const ResolvedTable& resolved,
                                       const ResolveContext& context);
