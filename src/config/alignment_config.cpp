#include "config/alignment_config.h"

#include <cmath>

#include "config/resolve_settings.h"
#include "config/setting_slot.h"

namespace {

template <typename T> void take(const ResolvedTable& table, SettingId id, Resolved<T>& out) {
    unpack_resolved(resolved_setting(table, id), out);
}

} // namespace

void resolve_alignment_config(const SettingsFile& config_file, const SettingsFile& defaults,
                              AlignmentConfig& out) {
    // Only the defaults file reads the alignment section; none of these defaults depends on the
    // sample rate.
    const ResolvedTable table = resolve_from_files(config_file, defaults, {});
    take(table, SettingId::alignment_fine_align_confidence_threshold,
         out.fine_align_confidence_threshold);
    take(table, SettingId::alignment_fine_align_max_search_sec, out.fine_align_max_search_sec);
    take(table, SettingId::alignment_fine_align_agreement_tolerance_samples,
         out.fine_align_agreement_tolerance_samples);
    take(table, SettingId::alignment_sync_psr_threshold, out.sync_psr_threshold);
    take(table, SettingId::alignment_sync_search_window_sec, out.sync_search_window_sec);
    take(table, SettingId::general_low_level_signal_threshold_db,
         out.low_level_signal_threshold_db);
}

std::size_t alignment_max_search_samples(const AlignmentConfig& config, std::uint32_t sample_rate) {
    // A reach that is negative or not a number searches lag 0 only; an enormous one is capped far
    // beyond any file length so that the conversion stays defined.
    constexpr double kLargestReach = 9.0e15;
    const double samples =
        std::round(config.fine_align_max_search_sec.value * static_cast<double>(sample_rate));
    if (!(samples > 0.0)) return 0;
    return static_cast<std::size_t>(std::fmin(samples, kLargestReach));
}
