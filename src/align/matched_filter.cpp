#include "align/matched_filter.h"

#include "dsp/fft.h"
#include "dsp/nothrow_array.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

namespace {

using Buffer = std::unique_ptr<double[]>;

// n zeroed complex points whose real parts hold `values` (reversed when asked); null when memory
// is exhausted.
Buffer complex_from_real(std::span<const double> values, std::size_t n, bool reversed) {
    Buffer buffer = try_allocate_doubles(2 * n);
    if (!buffer) return buffer;
    std::fill(buffer.get(), buffer.get() + 2 * n, 0.0);
    const std::size_t m = values.size();
    for (std::size_t j = 0; j < m; ++j) {
        buffer[2 * j] = reversed ? values[m - 1 - j] : values[j];
    }
    return buffer;
}

// Transforms both, multiplies point by point into `a` and transforms back: the real part of `a`
// at index m - 1 + k then holds the correlation at lag k.
void convolve_in_place(double* a, double* b, std::size_t n) {
    fft_complex(a, n, false);
    fft_complex(b, n, false);
    for (std::size_t i = 0; i < n; ++i) {
        const double ar = a[2 * i];
        const double ai = a[2 * i + 1];
        const double br = b[2 * i];
        const double bi = b[2 * i + 1];
        a[2 * i] = ar * br - ai * bi;
        a[2 * i + 1] = ar * bi + ai * br;
    }
    fft_complex(a, n, true);
}

// The first lag of the largest magnitude; the running best starts at -1.0.
std::size_t peak_lag(const double* c, std::size_t lags) {
    double best = -1.0;
    std::size_t best_k = 0;
    for (std::size_t k = 0; k < lags; ++k) {
        if (std::fabs(c[k]) > best) {
            best = std::fabs(c[k]);
            best_k = k;
        }
    }
    return best_k;
}

// Peak magnitude over the mean magnitude of the lags outside [peak - w, peak + w]; 0 when no lag
// is left or their mean is 0.
double peak_to_sidelobe(const double* c, std::size_t lags, std::size_t peak, std::size_t m) {
    const std::size_t w = std::min(m, lags < 5 ? std::size_t{1} : lags / 4);
    const std::size_t lo = peak > w ? peak - w : 0;
    const std::size_t hi = peak + w;
    double sum = 0.0;
    std::size_t count = 0;
    for (std::size_t k = 0; k < lags; ++k) {
        if (k >= lo && k <= hi) continue;
        sum += std::fabs(c[k]);
        ++count;
    }
    if (count == 0) return 0.0;
    const double mean = sum / static_cast<double>(count);
    return mean == 0.0 ? 0.0 : std::fabs(c[peak]) / mean;
}

} // namespace

MatchedFilterResult matched_filter(std::span<const double> signal, std::span<const double> tmpl) {
    const std::size_t n = signal.size();
    const std::size_t m = tmpl.size();
    if (m == 0 || n < m) return {};
    const std::uint64_t size = next_pow2(n + m - 1);
    if (size == 0 || size > SIZE_MAX / 2) return {};
    const Buffer a = complex_from_real(signal, size, false);
    const Buffer b = complex_from_real(tmpl, size, true);
    if (!a || !b) return {};
    convolve_in_place(a.get(), b.get(), size);

    // The K correlations move to the front of `a` in lag order; every source index lies at or
    // beyond its destination, so no value is overwritten before it is read.
    const std::size_t lags = n - m + 1;
    for (std::size_t k = 0; k < lags; ++k) {
        a[k] = a[2 * (m - 1 + k)];
    }
    const std::size_t peak = peak_lag(a.get(), lags);
    // The peak is reported with its sign (not as |c|), so an inverted match can be told apart.
    return {peak, peak_to_sidelobe(a.get(), lags, peak, m), a[peak]};
}
