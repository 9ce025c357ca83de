// Sums of stored squares over blocks of frames. The squares of one or two channels are kept frame
// by frame; each block's sum per channel is a plain left-to-right accumulation from 0.0 in frame
// order. Eight blocks advance side by side, and the two channels of a frame share one vector, so
// that many additions overlap in time; no sum changes by it.
#pragma once

#include <cstddef>
#include <span>

// One stretch of frames, end exclusive.
struct SampleRange {
    std::size_t start = 0;
    std::size_t end = 0;
};

// The squares of `channels` (1 or 2) channels over `frames` frames: channel c of frame n at
// data[n * channels + c].
struct FrameSquares {
    const double* data = nullptr;
    std::size_t channels = 1;
    std::size_t frames = 0;
};

inline constexpr std::size_t kSquareSumLanes = 8;

// sums[g * channels + c] = the squares of channel c over ranges[g] (within the frames), added
// from 0.0 in frame order. At most kSquareSumLanes ranges; `sums` holds ranges * channels values.
void sums_of_squares(const FrameSquares& squares, std::span<const SampleRange> ranges,
                     std::span<double> sums);
