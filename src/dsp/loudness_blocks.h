// Gated-block loudness: the positions of the overlapping blocks of a block scan and each block's
// loudness -0.691 + 10 log10(sum of the channels' mean squares) over the squares of K-weighted
// channel signals.
// The momentary (400 ms) scan and the short-term (3 s) scan, which also serves the loudness
// range, use it.
#pragma once

#include "dsp/block_sums.h"

#include <array>
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

// Blocks whose loudness is computed together: up to kSquareSumLanes ranges of frames.
struct BlockGroup {
    std::array<SampleRange, kSquareSumLanes> ranges{};
    std::size_t size = 0;
};

// A block scan fed with the squares as they are made: each block is summed once its last frame
// has arrived, and the list grows in block order. Blocks that pass the end of the signal or hold
// no frame are skipped.
struct LoudnessBlockScan {
    double sample_rate = 0.0;
    LoudnessBlockShape shape;
    std::size_t length = 0;    // frames of the signal
    std::size_t positions = 0; // block positions over them
    std::size_t next = 0;      // the first position not yet taken up
    BlockGroup group;          // blocks taken up and waiting for the rest of their group
    LoudnessBlockList list;
    bool allocated = false; // false when the list for the positions could not be had
};

// A scan over `length` frames of `channels` channels. With no positions it keeps an empty list;
// when the list cannot be allocated it keeps an empty list too, and says so.
LoudnessBlockScan loudness_block_scan(std::size_t channels, std::size_t length, double sample_rate,
                                      LoudnessBlockShape shape, bool keep_mean_squares);

// Takes up every block whose frames have all arrived: `held` holds the squares of frames base ..
// base + held.frames - 1, which must include every frame from loudness_block_scan_needs(scan) on.
// A group is summed when full, and also when `last` (no more frames will come).
void loudness_block_scan_feed(LoudnessBlockScan& scan, const FrameSquares& held, std::size_t base,
                              bool last);

// The first frame that the blocks still to be summed read; SIZE_MAX when none are left.
std::size_t loudness_block_scan_needs(const LoudnessBlockScan& scan);

// Scans the K-weighted squares of every frame at `sample_rate` in one go.
LoudnessBlockList loudness_blocks(const FrameSquares& squares, double sample_rate,
                                  LoudnessBlockShape shape, bool keep_mean_squares);

// How many blocks a scan over `length` frames keeps. A scan over more frames (the same signal
// extended) keeps those same blocks first, with the same figures.
std::size_t loudness_kept_blocks(std::size_t length, double sample_rate, LoudnessBlockShape shape);
