// Distortion (THD+N): per channel, how much distortion and noise the DUT adds on top of the
// reference around the reference's strongest tone. Only the power by which the DUT exceeds the
// reference, bin by bin, outside a notch around the fundamental counts, divided by the DUT's power
// inside the notch. Measured on one frame centred in the aligned overlap or on a continuous scan
// of frames; a channel passes when its worst frame stays within the tolerance.
#pragma once

#include "audio/audio.h"

#include <array>
#include <cstddef>
#include <cstdint>

struct DistortionChannelResult {
    bool passed = false;                 // channel verdict: worst ratio <= tolerance
    bool frame_gated = false;            // frames were scanned but every one was gated
    bool insufficient_samples = false;   // the overlap is shorter than one frame
    std::uint64_t frames_scanned = 0;    // frames transformed, gated ones included
    std::uint64_t frames_gated = 0;      // frames whose fundamental did not clear the gate
    std::uint64_t worst_frame_start = 0; // reference frame where the worst frame starts
    double fundamental_freq_hz = 0.0;    // the worst frame's fundamental
    double thdn_ratio = 0.0;             // the worst frame's THD+N as a plain ratio
    double thdn_db = 0.0;                // the same in dB (-200.0 for a ratio of 0)
    double p50_thdn_ratio = 0.0;         // nearest-rank percentiles over the ungated frames
    double p95_thdn_ratio = 0.0;
};

struct DistortionResult {
    std::array<DistortionChannelResult, 2> channel{};
    std::uint32_t channels = 0; // the reference's channel count
    bool passed = false;        // every examined channel passed
};

// Measures the first min(reference channels, 2) channels with frames of n samples (a power of
// two) over the pair's overlap. The notch around the fundamental
// bin k0 spans k0 +- notch_bins; a frame is gated when the reference's largest magnitude is not
// above 10^(noise_floor_db / 20). Continuous scans step by round((1 - overlap_fraction) * n)
// frames (at least 1); otherwise a single frame centred in the overlap is measured. A channel
// whose frame buffers cannot be allocated passes with every count and figure 0. A reference with
// no channels gives a passing result and nothing else.
DistortionResult distortion_check(const AlignedPair& pair, std::size_t n, std::size_t notch_bins,
                                  bool continuous, double noise_floor_db, double tolerance_ratio,
                                  double overlap_fraction);
