// The impulse template check: for impulsive material, a per-frame upper envelope built from the
// reference's magnitude (widened around transients) that the aligned DUT's magnitude must stay
// under.
#pragma once

#include "audio/audio.h"

#include <array>
#include <cstddef>
#include <cstdint>

struct ImpulseTemplateChannel {
    bool passed = false;            // no DUT sample rose above the template
    std::uint64_t total_fails = 0;  // DUT samples above the template
    bool has_failures = false;      // total_fails > 0
    std::uint64_t worst_sample = 0; // reference frame index of the largest excess
    double worst_diff = 0.0;        // that excess: DUT magnitude minus template
    double worst_ref_amp = 0.0;     // reference magnitude there
    double worst_dut_amp = 0.0;     // DUT magnitude there
};

struct ImpulseTemplateResult {
    std::array<ImpulseTemplateChannel, 2> channel{};
    std::uint64_t channels = 0; // the reference's channel count
    bool passed = false;        // no examined channel failed
};

// Compares the first two channels over the pair's overlap, in consecutive frames of frame_size
// samples. The levels are in
// dBFS; ratio is the allowed multiple of the reference magnitude. A channel whose scratch cannot
// be allocated, or that the DUT lacks, is left without failures.
ImpulseTemplateResult impulse_template_check(const AlignedPair& pair, std::size_t frame_size,
                                             double peak_threshold_db, double ratio,
                                             double noise_floor_db);
