// The value one setting holds, whatever its type, and the settings one file gives.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "config/setting_id.h"

inline constexpr std::size_t kMaxSpectralBands = 5;
inline constexpr std::size_t kMaxSnapshots = 25;
inline constexpr std::size_t kSnapshotsWhenTrue = 5;

// One element of spectral_fidelity.bands, every key required.
struct SpectralBandSetting {
    double upper_freq_hz = 0.0;
    double noise_floor_db = 0.0;
    double low_level_signal_threshold_db = 0.0;
    double peak_threshold_db = 0.0;
    double signal_tolerance_db = 0.0;
    double low_level_signal_tolerance_db = 0.0;
    double peak_tolerance_db = 0.0;
};

// spectral_fidelity.snapshots: a count, or a list of times (then `count` is the list length).
struct SnapshotSetting {
    bool is_list = false;
    std::size_t count = 0;
    std::vector<double> times_sec;
};

// Only the member of the setting's type is meaningful; integers of every width are kept in
// `integer`.
struct SettingValue {
    double number = 0.0;
    std::int64_t integer = 0;
    bool boolean = false;
    std::string text;
    std::vector<SpectralBandSetting> bands;
    SnapshotSetting snapshots;
};

// A value of one type, the other members left at their zeros.
inline SettingValue number_setting(double number) {
    SettingValue value;
    value.number = number;
    return value;
}

inline SettingValue integer_setting(std::int64_t integer) {
    SettingValue value;
    value.integer = integer;
    return value;
}

inline SettingValue boolean_setting(bool boolean) {
    SettingValue value;
    value.boolean = boolean;
    return value;
}

inline SettingValue text_setting(std::string text) {
    SettingValue value;
    value.text = std::move(text);
    return value;
}

inline SettingValue bands_setting(std::vector<SpectralBandSetting> bands) {
    SettingValue value;
    value.bands = std::move(bands);
    return value;
}

inline SettingValue snapshots_setting(SnapshotSetting snapshots) {
    SettingValue value;
    value.snapshots = std::move(snapshots);
    return value;
}

// The settings one file gives, by SettingId: empty where the key is absent or malformed.
struct SettingsFile {
    std::array<std::optional<SettingValue>, kSettingCount> values;
};

inline const std::optional<SettingValue>& file_setting(const SettingsFile& file, SettingId id) {
    return file.values[setting_index(id)];
}

inline std::optional<SettingValue>& file_setting(SettingsFile& file, SettingId id) {
    return file.values[setting_index(id)];
}
