// The complete transform with a chosen butterfly kernel; fft_complex runs it with the widest
// kernel the processor offers.
#pragma once

#include "dsp/fft_butterflies.h"

#include <cstddef>

// Same contract as fft_complex; `kernel` must be available (fft_kernel_available).
void fft_transform(FftKernel kernel, double* data, std::size_t n, bool inverse);
