#include "config/alignment_config.h"

#include <cmath>

#include "config/resolve_helpers.h"

namespace {

// A key only the defaults file can set.
template <typename T>
void resolve_from_defaults(Resolved<T>& out, const std::optional<T>& defaults_file, T builtin) {
    out = defaults_file ? Resolved<T>{true, *defaults_file, SettingSource::defaults_file}
                        : Resolved<T>{false, builtin, SettingSource::builtin_default};
}

} // namespace

void resolve_alignment_config(const AnalysisSettings& config_file,
                              const DefaultsFileSettings& defaults, AlignmentConfig& out) {
    const AlignmentSettings& a = defaults.alignment;
    resolve_from_defaults(out.fine_align_confidence_threshold, a.fine_align_confidence_threshold,
                          0.9);
    resolve_from_defaults(out.fine_align_max_search_sec, a.fine_align_max_search_sec, 0.1);
    resolve_from_defaults(out.fine_align_agreement_tolerance_samples,
                          a.fine_align_agreement_tolerance_samples, std::int32_t{2});
    resolve_from_defaults(out.sync_psr_threshold, a.sync_psr_threshold, 6.0);
    resolve_from_defaults(out.sync_search_window_sec, a.sync_search_window_sec, 45.0);
    resolve_setting(out.low_level_signal_threshold_db,
                    config_file.general.low_level_signal_threshold_db,
                    defaults.analysis.general.low_level_signal_threshold_db, -70.0);
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
