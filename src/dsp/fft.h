// The radix-2 transform: power-of-two sizing and the in-place complex FFT every spectral step uses.
#pragma once

#include <cstddef>
#include <cstdint>

// Smallest power of two that is at least n; 1 for n of 0 or 1. Values above 2^63 have no 64-bit
// answer and give 0.
std::uint64_t next_pow2(std::uint64_t n);

// Transforms n complex points stored as interleaved (re, im) doubles in place. The forward
// transform (inverse false) is unscaled; the inverse divides every real and imaginary part by n. n
// must be a power of two; for n < 2, and for an n that is not a power of two, the buffer is left
// untouched. Every code path gives the bits of the plain radix-2 loop with the twiddle advanced
// by complex multiplication.
void fft_complex(double* data, std::size_t n, bool inverse);
