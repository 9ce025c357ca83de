#include "dsp/loudness.h"

#include "audio/audio.h"

#include <algorithm>
#include <cmath>

bool loudness_within(double value, double tolerance) {
    return value <= tolerance + std::abs(tolerance) * 1e-5;
}

void loudness_judge(LoudnessResult& result, const LoudnessLimits& limits) {
    const LoudnessMeasure& ref = result.ref;
    const LoudnessMeasure& dut = result.dut;
    result.delta_integrated_lu = dut.integrated_lufs - ref.integrated_lufs;
    result.delta_true_peak_db = dut.true_peak_dbtp - ref.true_peak_dbtp;
    result.delta_range_lu = dut.range_lu - ref.range_lu;
    result.delta_max_momentary_lu = dut.max_momentary_lufs - ref.max_momentary_lufs;
    result.delta_max_short_term_lu = dut.max_short_term_lufs - ref.max_short_term_lufs;
    result.delta_sample_peak_db = dut.sample_peak_dbfs - ref.sample_peak_dbfs;
    // The true-peak delta is signed: a DUT quieter than the reference never fails it. The ceiling
    // takes the same slack as the tolerances, |ceiling| * 1e-5.
    result.passed =
        loudness_within(std::abs(result.delta_integrated_lu), limits.integrated_tolerance_lu) &&
        loudness_within(result.delta_true_peak_db, limits.true_peak_tolerance_db) &&
        (!limits.ceiling_enabled ||
         loudness_within(dut.true_peak_dbtp, limits.true_peak_ceiling_dbtp));
}

LoudnessResult loudness_compare(const AlignedPair& pair, bool ceiling_enabled,
                                double integrated_tolerance_lu, double true_peak_tolerance_db,
                                double true_peak_ceiling_dbtp) {
    const Overlap& overlap = pair.overlap;
    const unsigned channels = std::min(pair.ref->channels, 2u);
    const auto rate = static_cast<double>(pair.ref->sample_rate);
    LoudnessResult result;
    {
        const ProgressPart part(std::size_t{0}, std::size_t{2});
        result.ref = loudness_measure(*pair.ref, channels, overlap.ref_start, overlap.length, rate);
    }
    const ProgressPart part(std::size_t{1}, std::size_t{2});
    result.dut = loudness_measure(*pair.dut, channels, pair.dut_start, overlap.length, rate);
    loudness_judge(result, {ceiling_enabled, integrated_tolerance_lu, true_peak_tolerance_db,
                            true_peak_ceiling_dbtp});
    return result;
}
