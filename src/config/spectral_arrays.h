// Readers for the two array-valued keys of the spectral_fidelity section.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "config/setting_value.h"

// spectral_fidelity.bands: an array of up to five objects, each with all seven numbers. A value
// that is not an array leaves `out` unset. Fails on a sixth element or a missing/malformed key.
bool read_spectral_bands(std::string_view section,
                         std::optional<std::vector<SpectralBandSetting>>& out);

// spectral_fidelity.snapshots: an integer above 0, `true` (five snapshots), or an array of up to
// 25 objects with a `time_sec` number. Other values leave `out` unset. Fails on a 26th element or
// an element without `time_sec`.
bool read_snapshots(std::string_view section, std::optional<SnapshotSetting>& out);
