// Level Fidelity: whether the DUT reproduces the reference's level sample by sample. Every aligned
// sample pair above a noise floor gives the ratio of the DUT magnitude to the reference magnitude
// in dB; a channel passes when the 99th percentile of the absolute ratios stays within the
// tolerance and no run of consecutive out-of-tolerance samples lasts the minimum run length.
#pragma once

#include "audio/audio.h"

#include <array>
#include <cstdint>

struct LevelFidelityChannel {
    bool passed = false;                   // channel verdict
    std::uint64_t samples_included = 0;    // pairs that produced a dB ratio
    std::uint64_t samples_excluded = 0;    // pairs with both magnitudes below the floor
    double median_db = 0.0;                // median of the signed dB ratios
    double mad_db = 0.0;                   // median of |ratio - median_db| (no scale factor)
    double p99_abs_db = 0.0;               // nearest-rank 99th percentile of |ratio|
    bool has_data = false;                 // samples_included > 0
    std::uint64_t worst_sample = 0;        // reference frame index of the largest |ratio|
    double worst_diff_db = 0.0;            // the signed ratio there
    double worst_ref_amp = 0.0;            // |reference sample| there, not held at the floor
    double worst_dut_amp = 0.0;            // |DUT sample| there, not held at the floor
    double longest_sustained_run_ms = 0.0; // longest run of out-of-tolerance included samples
    bool sustained_fail = false;           // that run reached the minimum run length
};

struct LevelFidelityResult {
    std::array<LevelFidelityChannel, 2> channel{};
    std::uint32_t channels = 0; // the reference's channel count
    bool passed = false;        // every examined channel passed
};

// Compares the first min(reference channels, 2) channels over the pair's overlap. Magnitudes are
// held up to floor = 10^(floor_db / 20); a ratio is out of tolerance when its magnitude exceeds
// tolerance_db plus a relative slack of 1e-5; min_run_ms of 0 or less switches the run rule off. A
// channel with no included sample passes with all statistics 0. The scratch for the statistics is
// allocated without throwing; when it cannot be had, that channel's statistics stay 0 and it
// fails. Both files must have the same channel count (the driver refuses other pairs); a pair
// that does not is treated as having no overlap.
LevelFidelityResult level_fidelity(const AlignedPair& pair, double floor_db, double tolerance_db,
                                   double min_run_ms);
