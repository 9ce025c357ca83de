#include "checks/impulse_template_frame.h"

#include <algorithm>

namespace {

// Largest value of v over [lo, hi], both inclusive. The values are finite magnitudes, whose
// maximum does not depend on the order they are taken in, so four independent running maxima
// give the same result as one and keep the dependency chains short.
double max_over(std::span<const double> v, std::size_t lo, std::size_t hi) {
    double m[4] = {v[lo], v[lo], v[lo], v[lo]};
    std::size_t i = lo + 1;
    for (; i + 3 <= hi; i += 4) {
        m[0] = std::max(m[0], v[i]);
        m[1] = std::max(m[1], v[i + 1]);
        m[2] = std::max(m[2], v[i + 2]);
        m[3] = std::max(m[3], v[i + 3]);
    }
    for (; i <= hi; ++i)
        m[0] = std::max(m[0], v[i]);
    return std::max(std::max(m[0], m[1]), std::max(m[2], m[3]));
}

// Raises t to at least `level` over [lo, hi); nothing when hi <= lo.
void raise_range(std::span<double> t, std::size_t lo, std::size_t hi, double level) {
    for (std::size_t i = lo; i < hi; ++i)
        t[i] = std::max(t[i], level);
}

// x - by, or 0 when that would be negative.
std::size_t minus_or_zero(std::size_t x, std::size_t by) {
    return x > by ? x - by : 0;
}

// The floor everywhere, then the peak level over the first and the last `guard` positions. The
// edges are set to the peak level, not raised to it: a floor above the peak level is lowered there.
void fill_floor_and_edges(std::span<double> t, const ImpulseTemplateLevels& levels) {
    std::fill(t.begin(), t.end(), levels.floor);
    if (levels.guard < 1) return;
    const auto edge = static_cast<std::ptrdiff_t>(std::min(levels.guard, t.size()));
    std::fill(t.begin(), t.begin() + edge, levels.peak);
    std::fill(t.end() - edge, t.end(), levels.peak);
}

void apply_ratio(std::span<const double> r, double ratio, std::span<double> t) {
    for (std::size_t i = 0; i < r.size(); ++i)
        t[i] = std::max(t[i], ratio * r[i]);
}

// Widens the template around the run [a, b]: the run's own peak (capped at full scale) over the
// run and two samples to each side, and the loudest neighbour within `guard` samples beyond those
// margins (also capped) over the next `guard` samples on both sides.
void widen_run(std::span<const double> r, std::size_t a, std::size_t b,
               const ImpulseTemplateLevels& levels, std::span<double> t) {
    const std::size_t len = r.size();
    const std::size_t g = levels.guard;
    const double p = max_over(r, a, b);
    const double before = a >= 2 ? max_over(r, minus_or_zero(a - 2, g), a - 2) : 0.0;
    const double after = b + 2 < len ? max_over(r, b + 2, std::min(b + 2 + g, len - 1)) : 0.0;
    const std::size_t core_end = std::min(b + 2, len - 1); // inclusive
    raise_range(t, minus_or_zero(a, 2), core_end + 1, std::min(p * levels.ratio, 1.0));
    const double side = std::min(std::max(before, after) * levels.ratio, 1.0);
    const std::size_t a_side = std::max<std::size_t>(a, 2);
    raise_range(t, minus_or_zero(a_side - 2, g), a_side - 2, side);
    raise_range(t, core_end + 1, std::min(b + 3 + g, len), side);
}

// Every maximal stretch of positions whose magnitude is above the peak level; a run still going
// at the frame's end ends there.
void widen_transient_runs(std::span<const double> r, const ImpulseTemplateLevels& levels,
                          std::span<double> t) {
    std::size_t i = 0;
    while (i < r.size()) {
        if (!(r[i] > levels.peak)) {
            ++i;
            continue;
        }
        const std::size_t a = i;
        while (i + 1 < r.size() && r[i + 1] > levels.peak)
            ++i;
        widen_run(r, a, i, levels, t);
        ++i;
    }
}

} // namespace

void build_impulse_template(std::span<const double> r, const ImpulseTemplateLevels& levels,
                            std::span<double> t) {
    fill_floor_and_edges(t, levels);
    apply_ratio(r, levels.ratio, t);
    widen_transient_runs(r, levels, t);
}
