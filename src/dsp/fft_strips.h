// The long stages of the transform, run column strip by column strip so that each strip stays in
// cache while it passes through all of them.
#pragma once

#include "dsp/fft_butterflies.h"

#include <cstddef>

// Doubles of scratch space fft_strip_stages needs for `rows` rows.
std::size_t fft_strip_scratch_doubles(std::size_t rows);

// Sees data as `rows` rows of `row_points` points (rows a power of two of at least 2) whose
// stages up to length row_points are done, and runs the remaining stages, lengths
// 2 * row_points ... rows * row_points, with twiddles from the same recurrence as every other
// path. row_points must be a multiple of the strip width (16 points).
void fft_strip_stages(FftKernel kernel, double* data, std::size_t rows, std::size_t row_points,
                      bool inverse, double* scratch);
