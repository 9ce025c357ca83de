// The Time Domain scan: a whole-file, sample-by-sample percentage-difference comparison of the
// aligned reference and DUT, with its own tolerance for each of three level tiers (low-level
// signal, signal, peak). It fails as soon as one sample pair exceeds the tolerance of its tier.
#pragma once

#include "audio/audio.h"

#include <array>
#include <cstdint>

// The scan of one channel. The worst-* fields stay 0 when no pair failed.
struct TimeDomainChannel {
    bool passed = false;                // no sample pair exceeded its tolerance
    std::uint64_t samples_included = 0; // pairs that were scored
    std::uint64_t samples_excluded = 0; // pairs with both magnitudes at or below the noise floor
    std::uint64_t total_fails = 0;      // pairs above their tier's tolerance
    bool has_failures = false;          // total_fails > 0
    std::uint64_t worst_sample = 0;     // reference frame index of the largest failing percentage
    double worst_diff_pct = 0.0;        // that percentage
    double worst_ref_amp = 0.0;         // the reference sample there, signed as stored
    double worst_dut_amp = 0.0;         // the DUT sample there
    double worst_tolerance_pct = 0.0;   // the tolerance of the tier that applied there
    std::uint64_t fails_low_level_signal_tier = 0;
    std::uint64_t fails_signal_tier = 0;
    std::uint64_t fails_peak_tier = 0;
};

struct TimeDomainResult {
    std::array<TimeDomainChannel, 2> channel{};
    std::uint32_t channels = 0; // the reference's channel count
    bool passed = false;        // every examined channel passed
};

// Scans the first min(reference channels, 2) channels over the pair's overlap. The dB levels are
// relative to full scale; the tolerances are percentages. One pass per channel; nothing is
// allocated.
TimeDomainResult time_domain_scan(const AlignedPair& pair, double noise_floor_db,
                                  double peak_threshold_db, double peak_tolerance_pct,
                                  double low_level_threshold_db, double low_level_tolerance_pct,
                                  double signal_tolerance_pct);
