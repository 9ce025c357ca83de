#include "align/correlation_plan.h"

#include "dsp/dsp.h"

#include <algorithm>

LagWindow lag_window(std::size_t n_a, std::size_t n_b, std::size_t max_lag) {
    // A reach beyond the longer input changes neither bound; clamping it keeps the negation exact.
    const auto reach = static_cast<std::int64_t>(std::min(max_lag, std::max(n_a, n_b)));
    return {std::max(-reach, 1 - static_cast<std::int64_t>(n_b)),
            std::min(reach, static_cast<std::int64_t>(n_a) - 1)};
}

std::size_t lag_window_width(LagWindow window) {
    return window.hi < window.lo ? 0 : static_cast<std::size_t>(window.hi - window.lo) + 1;
}

BlockPlan plan_blocks(std::size_t n_a, std::size_t n_b, LagWindow window, std::size_t min_points) {
    const std::size_t width = lag_window_width(window);
    // All of a meets b[0 ... n_a - 1 - lo] at most; a linear correlation of a with that stretch,
    // or with a zero-padded stretch one window wider than a, needs no more points than this.
    const std::size_t reach_b = std::min(n_b, n_a + static_cast<std::size_t>(-window.lo));
    const std::size_t whole = next_pow2(n_a + std::min(width, reach_b) - 1);
    const std::size_t blocked = std::max<std::size_t>(min_points, next_pow2(4 * width));
    if (whole <= blocked) return {whole, n_a};
    // A block of B samples meets B + width - 1 samples of b: B + width - 1 points hold them all.
    return {blocked, blocked - width + 1};
}
