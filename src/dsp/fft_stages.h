// The butterfly stages of the radix-2 transform, run on data already in bit-reversed order.
#pragma once

#include "dsp/fft_butterflies.h"

#include <cstddef>

// Doubles of scratch space fft_stages_tabulated needs for n points.
std::size_t fft_stages_scratch_doubles(std::size_t n);

// Runs the stages of length 2 ... n, cache-blocked, with every twiddle taken from runs built in
// `scratch` (fft_stages_scratch_doubles(n) doubles) by the twiddle recurrence.
void fft_stages_tabulated(FftKernel kernel, double* data, std::size_t n, bool inverse,
                          double* scratch);

// Runs the stages of length 2 ... n one after another, filling a small fixed run of twiddles as
// the recurrence advances through each block; needs no scratch space. Same bits as the above.
void fft_stages_recurrence(FftKernel kernel, double* data, std::size_t n, bool inverse);
