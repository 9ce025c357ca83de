// The bit-reversal permutation that starts the decimation-in-time transform.
#pragma once

#include <cstddef>

// Moves the complex point at every index i (interleaved re, im doubles) to the index whose low
// log2(n) bits are those of i reversed. n must be a power of two of at least 2.
void bit_reverse_permute(double* data, std::size_t n);
