// Where a setting lives in the typed record: moving a resolved value between its table form
// (Resolved<SettingValue>) and its typed member of AnalysisConfig.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "config/analysis_config.h"
#include "config/setting_value.h"

inline void unpack(const SettingValue& v, double& out) {
    out = v.number;
}
inline void unpack(const SettingValue& v, bool& out) {
    out = v.boolean;
}
inline void unpack(const SettingValue& v, std::string& out) {
    out = v.text;
}
inline void unpack(const SettingValue& v, std::size_t& out) {
    out = static_cast<std::size_t>(v.integer);
}
inline void unpack(const SettingValue& v, long& out) {
    out = static_cast<long>(v.integer);
}
inline void unpack(const SettingValue& v, std::int32_t& out) {
    out = static_cast<std::int32_t>(v.integer);
}
inline void unpack(const SettingValue& v, std::vector<SpectralBandSetting>& out) {
    out = v.bands;
}
inline void unpack(const SettingValue& v, SnapshotSetting& out) {
    out = v.snapshots;
}

inline void pack(double value, SettingValue& out) {
    out.number = value;
}
inline void pack(bool value, SettingValue& out) {
    out.boolean = value;
}
inline void pack(const std::string& value, SettingValue& out) {
    out.text = value;
}
inline void pack(std::size_t value, SettingValue& out) {
    out.integer = static_cast<std::int64_t>(value);
}
inline void pack(long value, SettingValue& out) {
    out.integer = value;
}
inline void pack(std::int32_t value, SettingValue& out) {
    out.integer = value;
}
inline void pack(const std::vector<SpectralBandSetting>& value, SettingValue& out) {
    out.bands = value;
}
inline void pack(const SnapshotSetting& value, SettingValue& out) {
    out.snapshots = value;
}

template <typename T> void unpack_resolved(const Resolved<SettingValue>& in, Resolved<T>& out) {
    out.set = in.set;
    out.source = in.source;
    unpack(in.value, out.value);
}

template <typename T> Resolved<SettingValue> pack_resolved(const Resolved<T>& in) {
    Resolved<SettingValue> out{in.set, {}, in.source};
    pack(in.value, out.value);
    return out;
}

using SlotStore = void (*)(AnalysisConfig&, const Resolved<SettingValue>&);
using SlotLoad = Resolved<SettingValue> (*)(const AnalysisConfig&);

struct SettingSlot {
    SlotStore store = nullptr;
    SlotLoad load = nullptr;
};

template <auto Section, auto Key>
void store_slot(AnalysisConfig& config, const Resolved<SettingValue>& value) {
    unpack_resolved(value, (config.*Section).*Key);
}

template <auto Section, auto Key> Resolved<SettingValue> load_slot(const AnalysisConfig& config) {
    return pack_resolved((config.*Section).*Key);
}

// The slot of AnalysisConfig::*Section::*Key.
template <auto Section, auto Key>
inline constexpr SettingSlot kSlotOf{store_slot<Section, Key>, load_slot<Section, Key>};
