// Channel alignment: how many samples the DUT lags the reference, per channel, found by
// normalised cross-correlation through the FFT, computed block by block at the lags of a bounded
// window only, so time grows linearly with the file and memory does not grow with it.
// Sign convention everywhere: offset d means DUT frame n + d corresponds to reference frame n
// (d > 0: the DUT is late).
#pragma once

#include "audio/audio.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

enum class AlignmentState : std::uint32_t {
    measured = 0,
    silent_borrowed = 1, // silent in one file; took the confident partner channel's lag
    silent_zero = 2,     // silent and nothing to borrow: offset 0
};

struct ChannelAlignment {
    bool ok = false; // the offset is reliable (always true for the silent states)
    std::int64_t offset = 0;
    double confidence = 0.0; // signed normalised correlation at the chosen lag
    bool ref_silent = false;
    bool dut_silent = false;
    AlignmentState state = AlignmentState::measured;
};

struct AlignmentResult {
    std::array<ChannelAlignment, 2> channel{}; // the second stays zeroed for mono
    std::uint64_t channels = 0;                // the reference's channel count
    std::int64_t file_offset = 0;              // channel 0's offset, applied to the whole file
    std::int64_t disagreement = 0;             // stereo: |offset0 - offset1|; mono: 0
    bool aligned = false;
    // A correlation could not get its memory: nothing was measured, the channels stay zeroed and
    // `aligned` is false, and the run must stop rather than explain a failed alignment.
    bool out_of_memory = false;
    std::uint64_t failed_bytes = 0; // the size of the allocation that failed
};

struct CorrelationPeak {
    std::int64_t lag = 0; // b lags a by this many samples
    double corr = 0.0;    // signed normalised correlation there
    // The search could not get its memory; lag and corr are then 0 and mean nothing.
    bool out_of_memory = false;
    std::uint64_t failed_bytes = 0; // the size of the allocation that failed
};

// Searches lags within +-max_lag for the largest correlation (the most negative with `invert`).
// Of equal correlations the larger lag wins; an empty input gives lag 0 and correlation 0.
CorrelationPeak cross_correlate(std::span<const double> a, std::span<const double> b,
                                std::size_t max_lag, bool invert);

// Aligns the first two channels of `ref` and `dut` (equal channel counts of 1 or 2, equal rates).
AlignmentResult align_channels(const WavFile& ref, const WavFile& dut, std::size_t max_lag,
                               std::int64_t tolerance, double confidence_threshold,
                               double silence_db);

// "measured", "silent_borrowed" or "silent_zero".
const char* alignment_state_name(AlignmentState state);
