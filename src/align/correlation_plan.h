// Which lags a correlation search visits and how it is cut into blocks: the lag window, and the
// transform size and block length that compute C(L) = sum a[n] * b[n - L] over that window only,
// with memory that depends on the window, never on the length of the inputs.
#pragma once

#include <cstddef>
#include <cstdint>

// The lags L (b shifted by L against a) that the search visits, lo ... hi inclusive.
struct LagWindow {
    std::int64_t lo = 0;
    std::int64_t hi = 0;
};

// The lags within +-max_lag at which a (n_a samples) and b (n_b samples) overlap. For non-empty
// inputs lo <= 0 <= hi, so the window is never empty.
LagWindow lag_window(std::size_t n_a, std::size_t n_b, std::size_t max_lag);

// hi - lo + 1 (0 for an empty window).
std::size_t lag_window_width(LagWindow window);

// Each block of `block` samples of a is correlated with the stretch of b it meets at the window's
// lags in one transform of `points` complex points (a power of two).
struct BlockPlan {
    std::size_t points = 0;
    std::size_t block = 0;
};

// Smallest transform of the blocked search. Measured on 48 kHz noise (2^12 ... 2^19 points): for
// windows up to a few thousand lags shorter transforms are slower, spending too many of their
// points on the window, and longer ones run out of cache.
inline constexpr std::size_t kMinBlockPoints = std::size_t{1} << 16;

// One block over all of a when that transform is no larger than a block's; otherwise blocks of
// points - width + 1 samples with points = max(min_points, next_pow2(4 * width)), so that at least
// three quarters of each transform advance through a (measured faster than half, from 10,000 to
// 1,000,000 lags). Non-empty inputs and window; min_points a power of two.
BlockPlan plan_blocks(std::size_t n_a, std::size_t n_b, LagWindow window,
                      std::size_t min_points = kMinBlockPoints);
