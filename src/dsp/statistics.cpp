#include "dsp/statistics.h"

#include "audio/audio.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

// The element a full ascending sort would put at `index` (index < values.size()).
double select_at(std::span<double> values, std::size_t index) {
    const auto nth = values.begin() + static_cast<std::ptrdiff_t>(index);
    std::nth_element(values.begin(), nth, values.end());
    return *nth;
}

// round(p * (m - 1)), halves away from zero, clamped to the list (m > 0).
std::size_t nearest_rank_index(std::size_t m, double p) {
    const double last = static_cast<double>(m - 1);
    return static_cast<std::size_t>(std::clamp(round_half_away_from_zero(p * last), 0.0, last));
}

} // namespace

double median_of(std::span<double> values) {
    const std::size_t m = values.size();
    if (m == 0) return 0.0;
    const double upper = select_at(values, m / 2);
    if (m % 2 == 1) return upper;
    // After the selection every element before index m / 2 is no greater than `upper`, so the
    // largest of them is the lower middle element of the sorted order.
    const double lower =
        *std::max_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(m / 2));
    return (lower + upper) / 2.0;
}

double nearest_rank_percentile(std::span<double> values, double p) {
    const std::size_t m = values.size();
    if (m == 0) return 0.0;
    return select_at(values, nearest_rank_index(m, p));
}

double nearest_rank_magnitude_percentile(std::span<double> values, double p) {
    const std::size_t m = values.size();
    if (m == 0) return 0.0;
    const auto nth = values.begin() + static_cast<std::ptrdiff_t>(nearest_rank_index(m, p));
    std::nth_element(values.begin(), nth, values.end(),
                     [](double a, double b) { return std::fabs(a) < std::fabs(b); });
    return std::fabs(*nth);
}
