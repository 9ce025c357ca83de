#include "align/alignment.h"

#include "dsp/fft.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace {

using ComplexBuffer = std::unique_ptr<double[]>;

// The lags L (b shifted by L against a) that the scan visits, lo ... hi inclusive.
struct LagWindow {
    std::int64_t lo = 0;
    std::int64_t hi = 0;
};

LagWindow lag_window(std::size_t n_a, std::size_t n_b, std::size_t max_lag) {
    // A reach beyond the longer input changes neither bound; clamping it keeps the negation exact.
    const auto reach = static_cast<std::int64_t>(std::min(max_lag, std::max(n_a, n_b)));
    return {std::max(-reach, 1 - static_cast<std::int64_t>(n_b)),
            std::min(reach, static_cast<std::int64_t>(n_a) - 1)};
}

// n zeroed complex points holding `x` in their real parts; null when memory is exhausted.
ComplexBuffer real_signal(std::span<const double> x, std::size_t n) {
    ComplexBuffer buffer(new (std::nothrow) double[2 * n]());
    if (buffer) {
        for (std::size_t i = 0; i < x.size(); ++i) {
            buffer[2 * i] = x[i];
        }
    }
    return buffer;
}

// Leaves C(L) = sum a[n] * b[n - L] in the real part of `fa` at index L (L + n for L < 0).
void correlate_in_place(double* fa, double* fb, std::size_t n) {
    fft_complex(fa, n, false);
    fft_complex(fb, n, false);
    for (std::size_t k = 0; k < n; ++k) {
        const double ar = fa[2 * k];
        const double ai = fa[2 * k + 1];
        const double br = fb[2 * k];
        const double bi = fb[2 * k + 1];
        fa[2 * k] = ar * br + ai * bi;
        fa[2 * k + 1] = ai * br - ar * bi;
    }
    fft_complex(fa, n, true);
}

double correlation_at(const double* c, std::int64_t lag, std::size_t n) {
    const std::size_t index =
        lag >= 0 ? static_cast<std::size_t>(lag) : n - static_cast<std::size_t>(-lag);
    return c[2 * index];
}

// The L of the window with the largest sign * C(L); only a strictly greater value replaces the
// running best, so the smallest L wins ties, and an empty window (hi < lo) gives lo.
std::int64_t best_lag(const double* c, std::size_t n, LagWindow window, double sign) {
    double best = -1e300;
    std::int64_t best_l = window.lo;
    for (std::int64_t l = window.lo; l <= window.hi; ++l) {
        const double value = sign * correlation_at(c, l, n);
        if (value > best) {
            best = value;
            best_l = l;
        }
    }
    return best_l;
}

// C(L) divided by the root of both energies over the stretch where a and b overlap at lag L.
// Not clamped: rounding may carry an exact match a few ulps past +-1.
double normalised(std::span<const double> a, std::span<const double> b, std::int64_t lag,
                  double c) {
    const auto start = static_cast<std::size_t>(std::max<std::int64_t>(0, lag));
    const auto end = static_cast<std::size_t>(
        std::min(static_cast<std::int64_t>(a.size()), static_cast<std::int64_t>(b.size()) + lag));
    double energy_a = 0.0;
    double energy_b = 0.0;
    for (std::size_t i = start; i < end; ++i) {
        const double x = a[i];
        const double y = b[static_cast<std::size_t>(static_cast<std::int64_t>(i) - lag)];
        energy_a += x * x;
        energy_b += y * y;
    }
    const double product = energy_a * energy_b;
    return product > 0.0 ? c / std::sqrt(product) : 0.0;
}

} // namespace

CorrelationPeak cross_correlate(std::span<const double> a, std::span<const double> b,
                                std::size_t max_lag, bool invert) {
    // An empty input has nothing to line up: lag 0 and correlation 0, as for exhausted memory.
    if (a.empty() || b.empty()) return {};
    const std::size_t n = next_pow2(a.size() + b.size() - 1);
    const ComplexBuffer fa = real_signal(a, n);
    const ComplexBuffer fb = real_signal(b, n);
    if (!fa || !fb) return {};
    correlate_in_place(fa.get(), fb.get(), n);
    const LagWindow window = lag_window(a.size(), b.size(), max_lag);
    const std::int64_t l = best_lag(fa.get(), n, window, invert ? -1.0 : 1.0);
    return {-l, normalised(a, b, l, correlation_at(fa.get(), l, n))};
}
