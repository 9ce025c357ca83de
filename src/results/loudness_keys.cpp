#include "results/loudness_keys.h"

#include "results/prefixed_entries.h"
#include "results/run_results.h"

#include <array>

namespace {

// One figure: its key suffix for the two measures, its key suffix for the delta, and where the
// values live.
struct LoudnessFigure {
    const char* measure_suffix;
    const char* delta_suffix;
    double LoudnessMeasure::*value;
    double LoudnessResult::*delta;
};

// In the order of the results JSON.
constexpr std::array<LoudnessFigure, 6> kFigures = {{
    {"integrated_lufs", "integrated_lu", &LoudnessMeasure::integrated_lufs,
     &LoudnessResult::delta_integrated_lu},
    {"lra_lu", "lra_lu", &LoudnessMeasure::range_lu, &LoudnessResult::delta_range_lu},
    {"true_peak_dbtp", "true_peak_db", &LoudnessMeasure::true_peak_dbtp,
     &LoudnessResult::delta_true_peak_db},
    {"sample_peak_dbfs", "sample_peak_db", &LoudnessMeasure::sample_peak_dbfs,
     &LoudnessResult::delta_sample_peak_db},
    {"max_momentary_lufs", "max_momentary_lu", &LoudnessMeasure::max_momentary_lufs,
     &LoudnessResult::delta_max_momentary_lu},
    {"max_short_term_lufs", "max_short_term_lu", &LoudnessMeasure::max_short_term_lufs,
     &LoudnessResult::delta_max_short_term_lu},
}};

bool write_figure(FlatJson& json, const LoudnessResult& r, const LoudnessFigure& f) {
    return json_prefixed_real(json, "loudness_ref_", f.measure_suffix, r.ref.*f.value) &&
           json_prefixed_real(json, "loudness_dut_", f.measure_suffix, r.dut.*f.value) &&
           json_prefixed_real(json, "loudness_delta_", f.delta_suffix, r.*f.delta);
}

} // namespace

bool write_loudness_keys(FlatJson& json, const LoudnessResult& r) {
    if (!json_text(json, "loudness_verdict", verdict_text(r.passed))) return false;
    for (const LoudnessFigure& figure : kFigures) {
        if (!write_figure(json, r, figure)) return false;
    }
    return true;
}
