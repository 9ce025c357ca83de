#include "align/window_correlation.h"

#include "audio/audio.h"
#include "dsp/dsp.h"

#include <algorithm>

namespace {

// Samples first ... first + count - 1 of one input: a block of a, or the samples of b it meets.
struct Stretch {
    std::size_t first = 0;
    std::size_t count = 0;
};

// The samples of b the block a[start ... start + length - 1] meets at the window's lags: n - L for
// n in the block and L in [lo, hi], clipped to b.
Stretch stretch_of_b(std::size_t n_b, std::size_t start, std::size_t length, LagWindow window) {
    const auto from = static_cast<std::int64_t>(start);
    const std::int64_t first = std::max<std::int64_t>(0, from - window.hi);
    const std::int64_t end = std::min(static_cast<std::int64_t>(n_b),
                                      from + static_cast<std::int64_t>(length) - window.lo);
    if (end <= first) return {};
    return {static_cast<std::size_t>(first), static_cast<std::size_t>(end - first)};
}

// view[first ... first + count - 1] in the real parts of `points` otherwise zero complex points.
void load_real(double* buffer, const ChannelView& view, Stretch stretch, std::size_t points) {
    std::fill(buffer, buffer + 2 * points, 0.0);
    for (std::size_t i = 0; i < stretch.count; ++i) {
        buffer[2 * i] = view_at(view, stretch.first + i);
    }
}

// Leaves sum_i x[i] * y[i - e] in the real part of x at index e (e + points for e < 0).
void correlate_in_place(double* x, double* y, std::size_t points) {
    fft_complex(x, points, false);
    fft_complex(y, points, false);
    for (std::size_t k = 0; k < points; ++k) {
        const double xr = x[2 * k];
        const double xi = x[2 * k + 1];
        const double yr = y[2 * k];
        const double yi = y[2 * k + 1];
        x[2 * k] = xr * yr + xi * yi;
        x[2 * k + 1] = xi * yr - xr * yi;
    }
    fft_complex(x, points, true);
}

// Adds one block's share of C(L) to c: with the block of a taken from `a_first` and b from
// `b_first`, it lies at e = L + b_first - a_first. The plan's sizes keep every e of the window
// within (-points, points) and free of wrapped-around terms.
void accumulate(double* c, const double* x, LagWindow window, std::size_t a_first,
                std::size_t b_first, std::size_t points) {
    const std::int64_t shift =
        static_cast<std::int64_t>(b_first) - static_cast<std::int64_t>(a_first);
    const auto n = static_cast<std::int64_t>(points);
    const std::size_t width = lag_window_width(window);
    for (std::size_t j = 0; j < width; ++j) {
        const std::int64_t e = window.lo + static_cast<std::int64_t>(j) + shift;
        c[j] += x[2 * static_cast<std::size_t>(e >= 0 ? e : e + n)];
    }
}

} // namespace

WindowSums correlate_window(const ChannelView& a, const ChannelView& b, LagWindow window,
                            BlockPlan plan) {
    WindowSums sums;
    const std::size_t width = lag_window_width(window);
    const std::size_t points = plan.points;
    const std::size_t doubles = width + 4 * points;
    sums.storage = try_allocate_doubles(doubles);
    if (!sums.storage) {
        sums.failed_bytes = doubles * sizeof(double);
        return sums;
    }
    double* c = sums.storage.get();
    double* x = c + width;
    double* y = x + 2 * points;
    std::fill(c, c + width, 0.0);
    for (std::size_t start = 0; start < a.size; start += plan.block) {
        const Stretch block{start, std::min(plan.block, a.size - start)};
        const Stretch met = stretch_of_b(b.size, block.first, block.count, window);
        // A block that meets no sample of b adds exactly nothing.
        if (met.count == 0) continue;
        report_progress(static_cast<double>(start) / static_cast<double>(a.size));
        load_real(x, a, block, points);
        load_real(y, b, met, points);
        correlate_in_place(x, y, points);
        accumulate(c, x, window, block.first, met.first, points);
    }
    sums.c = c;
    return sums;
}
