#include "dsp/fft.h"

#include "dsp/fft_transform.h"

std::uint64_t next_pow2(std::uint64_t n) {
    // Above 2^63 no 64-bit power of two is at least n; those values give 0.
    constexpr std::uint64_t kLargest = std::uint64_t{1} << 63;
    if (n > kLargest) {
        return 0;
    }
    std::uint64_t p = 1;
    while (p < n) {
        p <<= 1;
    }
    return p;
}

void fft_complex(double* data, std::size_t n, bool inverse) {
    fft_transform(fft_best_kernel(), data, n, inverse);
}
