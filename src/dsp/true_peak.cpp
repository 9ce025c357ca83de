#include "dsp/true_peak.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// The first samples have fewer than 12 predecessors; the missing ones are zeros and add nothing
// to the sums.
double head_peak(std::span<const double> x, const TruePeakFilter& h) {
    double peak = 0.0;
    for (std::size_t n = 0; n < x.size(); ++n) {
        for (std::size_t p = 0; p < kTruePeakPhases; ++p) {
            double y = 0.0;
            for (std::size_t j = 0; j <= n; ++j)
                y += h[p + kTruePeakPhases * j] * x[n - j];
            peak = std::max(peak, std::abs(y));
        }
    }
    return peak;
}

// From sample `first` (at least 11) on every phase takes all 12 terms. The four phase sums
// advance side by side, each still adding its terms in the order j = 0 .. 11; taps 4j .. 4j + 3
// are the j-th taps of phases 0 .. 3.
double full_peak(std::span<const double> x, const TruePeakFilter& h, std::size_t first) {
    static_assert(kTruePeakPhases == 4);
    const double* samples = x.data();
    double peak = 0.0;
    for (std::size_t n = first; n < x.size(); ++n) {
        double y0 = 0.0;
        double y1 = 0.0;
        double y2 = 0.0;
        double y3 = 0.0;
        for (std::size_t j = 0; j < kTruePeakTapsPerPhase; ++j) {
            const double v = samples[n - j];
            const double* taps = h.data() + kTruePeakPhases * j;
            y0 += taps[0] * v;
            y1 += taps[1] * v;
            y2 += taps[2] * v;
            y3 += taps[3] * v;
        }
        peak = std::max({peak, std::abs(y0), std::abs(y1), std::abs(y2), std::abs(y3)});
    }
    return peak;
}

} // namespace

TruePeakFilter true_peak_filter() {
    constexpr double pi = std::numbers::pi;
    TruePeakFilter h{};
    double sum = 0.0;
    for (std::size_t k = 0; k < kTruePeakTaps; ++k) {
        const auto index = static_cast<double>(k);
        // x = k - 23.5 is never 0, so the sinc's own value at 0 (0.25) is never needed.
        const double x = index - 23.5;
        const double hamming = 0.54 - 0.46 * std::cos(2.0 * pi * index / 47.0);
        // "x × π/4" is taken left to right: (x × π) / 4.
        h[k] = std::sin(x * pi / 4.0) / (x * pi) * hamming;
        sum += h[k];
    }
    const double scale = 4.0 / sum;
    for (double& tap : h)
        tap *= scale;
    return h;
}

double channel_sample_peak(std::span<const double> x) {
    double peak = 0.0;
    for (const double v : x)
        peak = std::max(peak, std::abs(v));
    return peak;
}

double channel_true_peak(std::span<const double> x, const TruePeakFilter& h) {
    const std::size_t head = std::min(x.size(), kTruePeakTapsPerPhase - 1);
    return std::max(head_peak(x.first(head), h), full_peak(x, h, head));
}
