#include "config/setting_defaults.h"

#include <algorithm>
#include <cmath>

namespace {

// A fixed default of the entry's type.
SettingValue builtin_value(const SettingEntry& entry, double builtin) {
    SettingValue value;
    value.number = builtin;
    value.integer = static_cast<std::int64_t>(builtin);
    value.boolean = builtin != 0.0;
    value.text = entry.builtin_text;
    return value;
}

Resolved<SettingValue> builtin(const SettingEntry& entry, double value) {
    return {false, builtin_value(entry, value), SettingSource::builtin_default};
}

// Unchanged (source 0) up to 48000 Hz; above it trunc(rate * base / 48000 + 0.5), source 5.
Resolved<SettingValue> rate_scaled(const SettingEntry& entry, std::uint32_t sample_rate) {
    Resolved<SettingValue> out = builtin(entry, entry.builtin);
    if (sample_rate > 48000) {
        const double scaled = static_cast<double>(sample_rate) * entry.builtin / 48000.0 + 0.5;
        out.value.integer = static_cast<std::int64_t>(std::trunc(scaled));
        out.source = SettingSource::rate_default;
    }
    return out;
}

Resolved<SettingValue> fft_size(const SettingEntry& entry, const ResolveContext& context) {
    const std::size_t size = default_fft_size(context.sample_rate, context.shared_frames);
    Resolved<SettingValue> out = builtin(entry, static_cast<double>(size));
    if (size != 8192) out.source = SettingSource::rate_default;
    return out;
}

} // namespace

std::size_t default_fft_size(std::uint32_t sample_rate, std::size_t shared_frames) {
    std::size_t size = sample_rate <= 48000 ? 8192 : (sample_rate <= 96000 ? 16384 : 32768);
    const std::size_t limit = std::max<std::size_t>(8192, shared_frames);
    while (size > limit)
        size /= 2;
    return size;
}

Resolved<SettingValue> setting_default(const SettingEntry& entry, const ResolvedTable& resolved,
                                       const ResolveContext& context) {
    switch (entry.default_rule) {
    case DefaultRule::none:
        return {};
    case DefaultRule::rate_scaled:
        return rate_scaled(entry, context.sample_rate);
    case DefaultRule::fft_size:
        return fft_size(entry, context);
    case DefaultRule::level_profile: {
        // Only the exact text "impulse" selects the impulse defaults.
        const bool impulse =
            resolved_setting(resolved, SettingId::level_fidelity_profile).value.text == "impulse";
        return builtin(entry, impulse ? entry.impulse_builtin : entry.builtin);
    }
    case DefaultRule::general_threshold:
        return resolved_setting(resolved, SettingId::general_low_level_signal_threshold_db);
    case DefaultRule::fixed:
        break;
    }
    return builtin(entry, entry.builtin);
}
