#include "config/setting_read.h"

#include <cstdint>
#include <utility>
#include <vector>

#include "config/config_values.h"
#include "config/spectral_arrays.h"

namespace {

// Numbers, integers, booleans and texts: a key that is absent or malformed is simply unset.
std::optional<SettingValue> read_scalar(std::string_view section, const SettingEntry& entry) {
    SettingValue value;
    std::int32_t integer = 0;
    bool found = false;
    switch (entry.type) {
    case SettingType::number:
        found = get_number(section, entry.key, value.number);
        break;
    case SettingType::integer:
    case SettingType::positive_integer:
        found = get_integer(section, entry.key, integer) &&
                (entry.type == SettingType::integer || integer >= 1);
        value.integer = integer;
        break;
    case SettingType::boolean:
        found = get_boolean(section, entry.key, value.boolean);
        break;
    case SettingType::text:
        found = get_text(section, entry.key, entry.capacity, value.text);
        break;
    case SettingType::bands:
    case SettingType::snapshots:
        break;
    }
    if (!found) return std::nullopt;
    return value;
}

bool read_bands(std::string_view section, std::optional<SettingValue>& out) {
    std::optional<std::vector<SpectralBandSetting>> bands;
    if (!read_spectral_bands(section, bands)) return false;
    if (bands) out = bands_setting(std::move(*bands));
    return true;
}

bool read_snapshot_setting(std::string_view section, std::optional<SettingValue>& out) {
    std::optional<SnapshotSetting> snapshots;
    if (!read_snapshots(section, snapshots)) return false;
    if (snapshots) out = snapshots_setting(std::move(*snapshots));
    return true;
}

} // namespace

bool read_setting(std::string_view section, const SettingEntry& entry,
                  std::optional<SettingValue>& out) {
    if (entry.type == SettingType::bands) return read_bands(section, out);
    if (entry.type == SettingType::snapshots) return read_snapshot_setting(section, out);
    std::optional<SettingValue> value = read_scalar(section, entry);
    if (value) out = std::move(value);
    return true;
}
