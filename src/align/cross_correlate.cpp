#include "align/alignment.h"
#include "align/channel_correlation.h"
#include "align/correlation_plan.h"
#include "align/window_correlation.h"

#include <algorithm>
#include <cmath>

namespace {

// The L of the window with the largest sign * C(L), C(L) at c[L - lo]; only a strictly greater
// value replaces the running best, so the smallest L wins ties, and an empty window gives lo.
std::int64_t best_lag(const double* c, LagWindow window, double sign) {
    double best = -1e300;
    std::int64_t best_l = window.lo;
    for (std::int64_t l = window.lo; l <= window.hi; ++l) {
        const double value = sign * c[l - window.lo];
        if (value > best) {
            best = value;
            best_l = l;
        }
    }
    return best_l;
}

// C(L) divided by the root of both energies over the stretch where a and b overlap at lag L.
// Not clamped: rounding may carry an exact match a few ulps past +-1.
double normalised(const ChannelView& a, const ChannelView& b, std::int64_t lag, double c) {
    const auto start = static_cast<std::size_t>(std::max<std::int64_t>(0, lag));
    const auto end = static_cast<std::size_t>(
        std::min(static_cast<std::int64_t>(a.size), static_cast<std::int64_t>(b.size) + lag));
    double energy_a = 0.0;
    double energy_b = 0.0;
    for (std::size_t i = start; i < end; ++i) {
        const double x = view_at(a, i);
        const double y = view_at(b, static_cast<std::size_t>(static_cast<std::int64_t>(i) - lag));
        energy_a += x * x;
        energy_b += y * y;
    }
    const double product = energy_a * energy_b;
    return product > 0.0 ? c / std::sqrt(product) : 0.0;
}

} // namespace

CorrelationPeak correlate_channels(const ChannelView& a, const ChannelView& b, std::size_t max_lag,
                                   bool invert) {
    // An empty input has nothing to line up: lag 0 and correlation 0.
    if (a.size == 0 || b.size == 0) return {};
    const LagWindow window = lag_window(a.size, b.size, max_lag);
    const WindowSums sums = correlate_window(a, b, window, plan_blocks(a.size, b.size, window));
    if (!sums.c) return {0, 0.0, true, sums.failed_bytes};
    const std::int64_t l = best_lag(sums.c, window, invert ? -1.0 : 1.0);
    // Non-empty inputs never give an empty window, so C(l) is always one of the sums.
    return {-l, normalised(a, b, l, sums.c[l - window.lo])};
}

CorrelationPeak cross_correlate(std::span<const double> a, std::span<const double> b,
                                std::size_t max_lag, bool invert) {
    return correlate_channels(view_of(a), view_of(b), max_lag, invert);
}
