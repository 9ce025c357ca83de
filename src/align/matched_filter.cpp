#include "align/matched_filter.h"

#include "align/correlation_plan.h"
#include "align/window_correlation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

// The first lag of the largest magnitude; the running best starts at -1.0.
std::size_t peak_lag(std::span<const double> c) {
    double best = -1.0;
    std::size_t best_k = 0;
    for (std::size_t k = 0; k < c.size(); ++k) {
        if (std::fabs(c[k]) > best) {
            best = std::fabs(c[k]);
            best_k = k;
        }
    }
    return best_k;
}

// Peak magnitude over the mean magnitude of the lags outside [peak - w, peak + w]; 0 when no lag
// is left or their mean is 0.
double peak_to_sidelobe(std::span<const double> c, std::size_t peak, std::size_t m) {
    const std::size_t lags = c.size();
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
    // With the template as b, C(L) = sum signal[n] * tmpl[n - L] is c_k at L = k.
    const LagWindow window{0, static_cast<std::int64_t>(n - m)};
    const WindowSums sums =
        correlate_window(view_of(signal), view_of(tmpl), window, plan_blocks(n, m, window));
    if (!sums.c) return {};
    const std::span<const double> c(sums.c, lag_window_width(window));
    const std::size_t peak = peak_lag(c);
    // The peak is reported with its sign (not as |c|), so an inverted match can be told apart.
    return {peak, peak_to_sidelobe(c, peak, m), c[peak]};
}
