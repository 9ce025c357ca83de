// Sums of squares over several stretches of one signal. Each sum is a plain left-to-right
// accumulation of x[i] * x[i]; up to four sums advance side by side so that their additions
// overlap in time, which changes no result.
#pragma once

#include <cstddef>
#include <span>

// One stretch of samples, end exclusive.
struct SampleRange {
    std::size_t start = 0;
    std::size_t end = 0;
};

inline constexpr std::size_t kSquareSumLanes = 4;

// sums[g] = x[r.start]^2 + x[r.start + 1]^2 + ... + x[r.end - 1]^2 for ranges[g], summed from
// 0.0 in sample order. At most kSquareSumLanes ranges; `sums` holds one value per range.
void sums_of_squares(const double* x, std::span<const SampleRange> ranges, std::span<double> sums);
