#include "dsp/sweep_search.h"

#include "audio/audio.h"

#include <cmath>

namespace {

constexpr double kCentsPerOctave = 1200.0;

// x raised to `limit` when below it; a NaN also becomes `limit`.
double at_least(double x, double limit) {
    return x >= limit ? x : limit;
}

// x lowered to `limit` when above it; a NaN also becomes `limit`.
double at_most(double x, double limit) {
    return x <= limit ? x : limit;
}

// The frame centre's place in the reference, 0 at its first frame and 1 at its end.
double sweep_position(std::size_t start, std::size_t n, std::size_t ref_frames) {
    const double p = (static_cast<double>(start) + 0.5 * static_cast<double>(n)) /
                     static_cast<double>(ref_frames);
    // An empty reference gives 0/0 for an empty frame (NaN, taken as 0) or x/0 (+inf, taken as 1).
    return at_most(at_least(p, 0.0), 1.0);
}

} // namespace

double sweep_expected_frequency(SpectralMode mode, const SweepSettings& sweep, std::size_t start,
                                std::size_t n, std::size_t ref_frames) {
    if (mode == SpectralMode::amp_sweep) return sweep.test_freq_hz;
    if (mode != SpectralMode::freq_sweep) return 0.0;
    const double p = sweep_position(start, n, ref_frames);
    if (sweep.shape == SweepShape::log && sweep.start_hz > 0.0) {
        return sweep.start_hz * std::pow(sweep.end_hz / sweep.start_hz, p);
    }
    return sweep.start_hz + (sweep.end_hz - sweep.start_hz) * p;
}

BinRange sweep_search_range(double freq_hz, double sample_rate, std::size_t n,
                            std::size_t bin_count, double window_cents) {
    if (bin_count == 0) return {};
    const double width = sample_rate / static_cast<double>(n);
    const double last = static_cast<double>(bin_count - 1);
    const double centre = round_half_away_from_zero(freq_hz / width);
    double lo = std::floor(freq_hz * std::exp2(-window_cents / kCentsPerOctave) / width);
    double hi = std::ceil(freq_hz * std::exp2(window_cents / kCentsPerOctave) / width);
    // Every clamp stays in double, so a NaN or infinite frequency never reaches the integer cast;
    // a NaN frequency ends up searching every bin.
    lo = at_least(at_most(lo, centre - 1.0), 0.0);
    hi = at_least(at_most(at_least(hi, centre + 1.0), last), 0.0);
    lo = at_most(at_most(lo, last), hi);
    return {static_cast<std::size_t>(lo), static_cast<std::size_t>(hi)};
}
