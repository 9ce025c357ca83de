#pragma once
// Straightforward radix-2 transform used as the ground truth for the fast kernel: the tests compare
// the fast transform against it byte for byte, and the benchmark uses it as the baseline.

#include <cstddef>

// In-place decimation-in-time transform of n interleaved complex points (re, im). Forward is
// unscaled, inverse divides every part by n. n must be a power of two; n < 2 does nothing.
void reference_fft_complex(double* data, std::size_t n, bool inverse);
