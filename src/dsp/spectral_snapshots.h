// The spectral comparison as a set of independent snapshots: single frames at listed times or
// spread evenly over the aligned overlap, each judged on its own.
#pragma once

#include "audio/audio.h"
#include "dsp/spectral_result.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

struct SpectralSnapshot {
    double time_sec = 0.0;         // (start + n/2) / sample_rate
    std::uint64_t start_frame = 0; // reference frame where the snapshot's frame starts
    std::array<SpectralChannelResult, 2> channel{};
};

struct SpectralSnapshotsResult {
    std::vector<SpectralSnapshot> snapshots; // empty when the overlap is shorter than one frame
    std::uint32_t channels = 0;              // the reference's channel count
    bool insufficient_samples = false;
    bool passed = true; // every snapshot of every examined channel passed
};

// Snapshots at `times_sec` when the list is not empty, else `count` snapshots spread over the
// overlap. Continuous-scan settings are ignored.
SpectralSnapshotsResult spectral_snapshots(const AlignedPair& pair,
                                           const SpectralSettings& settings,
                                           std::span<const double> times_sec, std::size_t count);
