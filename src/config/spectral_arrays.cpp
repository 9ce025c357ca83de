#include "config/spectral_arrays.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "config/config_lookup.h"
#include "config/config_text.h"
#include "config/config_values.h"

namespace {

struct BandKey {
    const char* key;
    double SpectralBandSetting::*member;
};

constexpr std::array<BandKey, 7> kBandKeys = {{
    {"upper_freq_hz", &SpectralBandSetting::upper_freq_hz},
    {"noise_floor_db", &SpectralBandSetting::noise_floor_db},
    {"low_level_signal_threshold_db", &SpectralBandSetting::low_level_signal_threshold_db},
    {"peak_threshold_db", &SpectralBandSetting::peak_threshold_db},
    {"signal_tolerance_db", &SpectralBandSetting::signal_tolerance_db},
    {"low_level_signal_tolerance_db", &SpectralBandSetting::low_level_signal_tolerance_db},
    {"peak_tolerance_db", &SpectralBandSetting::peak_tolerance_db},
}};

bool value_is_array(std::string_view section, std::string_view key) {
    const std::optional<std::size_t> value = find_key_value(section, key);
    return value && *value < section.size() && section[*value] == '[';
}

bool read_band(std::string_view element, SpectralBandSetting& band) {
    for (const BandKey& entry : kBandKeys) {
        if (!get_number(element, entry.key, band.*entry.member)) return false;
    }
    return true;
}

// The elements are read until the getter fails: past the end, at an element that is not an
// object, or at one too large for its buffer; the elements read so far form the list.
bool read_snapshot_times(std::string_view section, std::optional<SnapshotSetting>& out) {
    SnapshotSetting snapshots;
    snapshots.is_list = true;
    std::string element;
    for (std::size_t i = 0;
         get_array_element_object(section, "snapshots", i, kSnapshotElementCapacity, element);
         ++i) {
        double time_sec = 0.0;
        if (i == kMaxSnapshots || !get_number(element, "time_sec", time_sec)) return false;
        snapshots.times_sec.push_back(time_sec);
    }
    // An empty array still selects snapshot mode; validation then refuses its count of 0.
    snapshots.count = snapshots.times_sec.size();
    out = std::move(snapshots);
    return true;
}

} // namespace

bool read_spectral_bands(std::string_view section,
                         std::optional<std::vector<SpectralBandSetting>>& out) {
    if (!value_is_array(section, "bands")) return true;
    std::vector<SpectralBandSetting> bands;
    std::string element;
    for (std::size_t i = 0;
         get_array_element_object(section, "bands", i, kBandElementCapacity, element); ++i) {
        SpectralBandSetting band;
        if (i == kMaxSpectralBands || !read_band(element, band)) return false;
        bands.push_back(band);
    }
    // An empty array counts as set with no band; validation then refuses it (no Nyquist cover).
    out = std::move(bands);
    return true;
}

bool read_snapshots(std::string_view section, std::optional<SnapshotSetting>& out) {
    if (value_is_array(section, "snapshots")) return read_snapshot_times(section, out);
    std::int32_t count = 0;
    bool enabled = false;
    if (get_integer(section, "snapshots", count)) {
        // Only counts above 0 are a snapshot setting; 0 and negative counts are ignored.
        if (count > 0) out = SnapshotSetting{false, static_cast<std::size_t>(count), {}};
    } else if (get_boolean(section, "snapshots", enabled) && enabled) {
        out = SnapshotSetting{false, kSnapshotsWhenTrue, {}};
    }
    return true;
}
