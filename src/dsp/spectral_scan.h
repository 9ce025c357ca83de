// The spectral comparison as one frame centred in the aligned overlap, or as a continuous scan of
// overlapping frames (with edge skip and tail frame for sweeps).
#pragma once

#include "audio/audio.h"
#include "dsp/spectral_result.h"

#include <array>
#include <cstdint>

struct SpectralScanResult {
    std::array<SpectralChannelResult, 2> channel{};
    std::uint32_t channels = 0; // the reference's channel count
    bool passed = true;         // every examined channel passed
};

// Compares the first min(reference channels, 2) channels over the pair's overlap.
SpectralScanResult spectral_scan(const AlignedPair& pair, const SpectralSettings& settings);
