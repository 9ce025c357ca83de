// The K-weighting pre-filter of the loudness measure: a high-shelf stage followed by a high-pass
// stage, designed for any sample rate from the fixed filter parameters, and the filter itself,
// which hands on the squares of the filtered signal that the block scans sum.
#pragma once

#include <array>
#include <cstddef>

// One second-order section, normalised so that the output coefficient a0 is 1.
struct Biquad {
    double b0 = 0.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;
};

struct KWeighting {
    Biquad shelf;     // the high-shelf stage, applied first
    Biquad high_pass; // the high-pass stage; its numerator is exactly 1, -2, 1
};

// Both stages for the sample rate `sample_rate` in Hz.
KWeighting k_weighting_design(double sample_rate);

// Frames of one or two channels inside interleaved samples: channel c of frame n is
// first[n * stride + c].
struct InterleavedFrames {
    const double* first = nullptr;
    std::size_t frames = 0;
    std::size_t stride = 1;
    std::size_t channels = 1;
};

// What the two stages of up to two channels remember between calls: per channel x1, x2, y1, y2 of
// the shelf, then of the high-pass stage. Zero is the state before the first sample.
struct KWeightingState {
    std::array<std::array<double, 8>, 2> channel{};
};

// Filters each channel through the shelf and then the high-pass stage, going on from `state` (and
// leaving it where the frames end), and writes the square of every filtered value frame by frame:
// channel c of frame n at squares[n * channels + c]. Frames fed in several calls give exactly what
// one call over all of them gives.
void k_weighting_squares(const KWeighting& k, const InterleavedFrames& in, KWeightingState& state,
                         double* squares);
