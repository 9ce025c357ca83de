// Gated-block loudness: the positions of the overlapping blocks of a block scan and each block's
// loudness -0.691 + 10 log10(sum of the channels' mean squares) over K-weighted channel signals.
// The momentary (400 ms), short-term (3 s) and loudness-range scans all use it.
#pragma once

#include "dsp/block_sums.h"

#include <cstddef>
#include <memory>
#include <span>

// -0.691 + 10 log10(power) for a summed mean square `power`, or -200.0 (kSilenceDb) when it is
// not above 0.
double loudness_of_power(double power);

// The block scan's shape: block length in seconds and the fraction by which blocks overlap.
struct LoudnessBlockShape {
    double block_seconds = 0.0;
    double overlap = 0.0;
};

// The number of block positions over `length` samples at `sample_rate`:
// round((duration - B) / (B (1 - v))) + 1, halves away from zero; 0 when B is longer than the
// duration or 1 - v is not above 0.
std::size_t loudness_block_count(std::size_t length, double sample_rate, LoudnessBlockShape shape);

// Block j spans floor(B j (1 - v) fs) to floor(B (j (1 - v) + 1) fs).
SampleRange loudness_block_span(std::size_t j, double sample_rate, LoudnessBlockShape shape);

// The loudness of every block kept, in block order, and on request each kept block's mean square
// per channel (block i, channel k at i * channels + k).
struct LoudnessBlockList {
    std::unique_ptr<double[]> loudness;
    std::unique_ptr<double[]> mean_squares;
    std::size_t count = 0;
    std::size_t channels = 0;
};

// Scans `length` samples of every channel signal (each span holds at least `length` samples) at
// `sample_rate`. Blocks that pass the end of the signal or hold no sample are skipped. An empty
// list is no error; a list that cannot be allocated is also returned empty.
LoudnessBlockList loudness_blocks(std::span<const std::span<const double>> channels,
                                  std::size_t length, double sample_rate, LoudnessBlockShape shape,
                                  bool keep_mean_squares);
