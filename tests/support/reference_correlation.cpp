#include "support/reference_correlation.h"

#include "support/reference_fft.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

std::size_t power_of_two_at_least(std::size_t n) {
    std::size_t p = 1;
    while (p < n) {
        p <<= 1;
    }
    return p;
}

// C(L) for every L, at index L (L + n for L < 0) of the real parts.
std::vector<double> whole_correlation(std::span<const double> a, std::span<const double> b,
                                      std::size_t n) {
    std::vector<double> fa(2 * n, 0.0);
    std::vector<double> fb(2 * n, 0.0);
    for (std::size_t i = 0; i < a.size(); ++i)
        fa[2 * i] = a[i];
    for (std::size_t i = 0; i < b.size(); ++i)
        fb[2 * i] = b[i];
    reference_fft_complex(fa.data(), n, false);
    reference_fft_complex(fb.data(), n, false);
    for (std::size_t k = 0; k < n; ++k) {
        const double ar = fa[2 * k], ai = fa[2 * k + 1], br = fb[2 * k], bi = fb[2 * k + 1];
        fa[2 * k] = ar * br + ai * bi;
        fa[2 * k + 1] = ai * br - ar * bi;
    }
    reference_fft_complex(fa.data(), n, true);
    return fa;
}

double normalised(std::span<const double> a, std::span<const double> b, std::int64_t lag,
                  double c) {
    const auto n_a = static_cast<std::int64_t>(a.size());
    const auto n_b = static_cast<std::int64_t>(b.size());
    double energy_a = 0.0;
    double energy_b = 0.0;
    for (std::int64_t i = std::max<std::int64_t>(0, lag); i < std::min(n_a, n_b + lag); ++i) {
        energy_a += a[static_cast<std::size_t>(i)] * a[static_cast<std::size_t>(i)];
        energy_b += b[static_cast<std::size_t>(i - lag)] * b[static_cast<std::size_t>(i - lag)];
    }
    const double product = energy_a * energy_b;
    return product > 0.0 ? c / std::sqrt(product) : 0.0;
}

} // namespace

ReferencePeak reference_correlate(std::span<const double> a, std::span<const double> b,
                                  std::size_t max_lag, bool invert) {
    if (a.empty() || b.empty()) return {};
    const std::size_t n = power_of_two_at_least(a.size() + b.size() - 1);
    const std::vector<double> c = whole_correlation(a, b, n);
    const auto n_a = static_cast<std::int64_t>(a.size());
    const auto n_b = static_cast<std::int64_t>(b.size());
    const auto reach = static_cast<std::int64_t>(std::min(max_lag, std::max(a.size(), b.size())));
    const std::int64_t lo = std::max(-reach, 1 - n_b);
    const std::int64_t hi = std::min(reach, n_a - 1);
    const auto at = [&](std::int64_t l) {
        return c[2 * static_cast<std::size_t>(l < 0 ? l + static_cast<std::int64_t>(n) : l)];
    };
    const double sign = invert ? -1.0 : 1.0;
    std::int64_t best_l = lo;
    double best = -1e300;
    for (std::int64_t l = lo; l <= hi; ++l) {
        if (sign * at(l) > best) {
            best = sign * at(l);
            best_l = l;
        }
    }
    return {-best_l, normalised(a, b, best_l, at(best_l))};
}
