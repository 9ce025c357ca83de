// Loudness after the BS.1770 method with the R128 companions: each file's integrated loudness,
// loudness range, true and sample peak and largest momentary and short-term loudness over the
// aligned overlap, and the comparison of the DUT's figures with the reference's.
#pragma once

#include "audio/audio.h"

#include <cstddef>
#include <cstdint>

struct LoudnessMeasure {
    double integrated_lufs = -200.0;
    double range_lu = 0.0;
    double true_peak_dbtp = -200.0;
    double sample_peak_dbfs = -200.0;
    double max_momentary_lufs = -200.0;
    double max_short_term_lufs = -200.0;
};

struct LoudnessResult {
    LoudnessMeasure ref;
    LoudnessMeasure dut;
    // DUT minus reference.
    double delta_integrated_lu = 0.0;
    double delta_true_peak_db = 0.0;
    double delta_range_lu = 0.0;
    double delta_max_momentary_lu = 0.0;
    double delta_max_short_term_lu = 0.0;
    double delta_sample_peak_db = 0.0;
    bool passed = false;
};

// What the verdict holds the DUT to.
struct LoudnessLimits {
    bool ceiling_enabled = false;
    double integrated_tolerance_lu = 0.0;
    double true_peak_tolerance_db = 0.0;
    double true_peak_ceiling_dbtp = 0.0;
};

// Measures `length` frames from `start_frame` of the first min(channels, file.channels, 2)
// channels at `sample_rate`, every channel weighted 1.0. The length is cut to the frames the file
// holds. No frames, no channels or a failed buffer allocation leave the initial values.
LoudnessMeasure loudness_measure(const WavFile& file, unsigned channels, std::size_t start_frame,
                                 std::size_t length, double sample_rate);

// True when `value` is at most tolerance + |tolerance| * 1e-5.
bool loudness_within(double value, double tolerance);

// Fills the six deltas from the two measures and the verdict: |integrated delta| within its
// tolerance, the signed true-peak delta within its tolerance, and, when the ceiling is enabled,
// the DUT's true peak within the ceiling.
void loudness_judge(LoudnessResult& result, const LoudnessLimits& limits);

// Measures the pair's overlap in both files with min(reference channels, 2) channels at the
// reference's sample rate, then judges the DUT against the reference.
LoudnessResult loudness_compare(const AlignedPair& pair, bool ceiling_enabled,
                                double integrated_tolerance_lu, double true_peak_tolerance_db,
                                double true_peak_ceiling_dbtp);
