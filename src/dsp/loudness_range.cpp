#include "dsp/loudness_range.h"

#include "audio/audio.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr double kAbsoluteGate = -70.0;
constexpr double kRelativeGateOffset = 20.0;
constexpr double kLowQuantile = 0.1;
constexpr double kHighQuantile = 0.95;

// Moves the values at or above `threshold` to the front, keeping their order; returns them.
std::span<double> keep_at_or_above(std::span<double> values, double threshold) {
    const auto end = std::remove_if(values.begin(), values.end(),
                                    [threshold](double v) { return !(v >= threshold); });
    return values.first(static_cast<std::size_t>(end - values.begin()));
}

// 10 log10 of the mean of 10^(L/10) over the blocks, summed in block order, less 20 LU.
double relative_threshold(std::span<const double> loudness) {
    double sum = 0.0;
    for (const double l : loudness)
        sum += db_to_power(l);
    return power_db(sum / static_cast<double>(loudness.size())) - kRelativeGateOffset;
}

} // namespace

double interpolated_quantile(std::span<const double> sorted, double p) {
    const double position = p * static_cast<double>(sorted.size() - 1);
    const double floor_rank = std::floor(position);
    const auto low = static_cast<std::size_t>(floor_rank);
    const auto high = static_cast<std::size_t>(std::ceil(position));
    if (low == high) return sorted[low];
    // Interpolation written as the floor rank's value plus the fraction of the step to the next.
    return sorted[low] + (position - floor_rank) * (sorted[high] - sorted[low]);
}

double loudness_range(std::span<double> loudness) {
    const std::span<double> absolute = keep_at_or_above(loudness, kAbsoluteGate);
    if (absolute.empty()) return 0.0;
    const std::span<double> kept = keep_at_or_above(absolute, relative_threshold(absolute));
    if (kept.size() < 2) return 0.0;
    std::sort(kept.begin(), kept.end());
    return interpolated_quantile(kept, kHighQuantile) - interpolated_quantile(kept, kLowQuantile);
}
