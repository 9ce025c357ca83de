#include "dsp/sliding_bounds.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <new>

namespace {

constexpr double kPadding = std::numeric_limits<double>::infinity();
// Beyond this magnitude a sum of two values or a difference could overflow; the bounds are then
// not used. Audio lies many orders of magnitude below it.
constexpr double kLargestSafe = 1e300;

std::size_t union_size(std::size_t half) {
    return 2 * half + kBoundsBatch;
}

// For each of eight values, the index of the first value of the padded ascending buffer that is
// not less than it: halving searches over the whole power-of-two length with no data-dependent
// branch. The eight run in lock step, each in its own register, so that their chains of dependent
// loads overlap.
void positions_of_eight(std::span<const double> sorted, const std::array<double, kBoundsBatch>& x,
                        std::array<std::size_t, kBoundsBatch>& below) {
    static_assert(kBoundsBatch == 8);
    const double* a = sorted.data();
    const double x0 = x[0];
    const double x1 = x[1];
    const double x2 = x[2];
    const double x3 = x[3];
    const double x4 = x[4];
    const double x5 = x[5];
    const double x6 = x[6];
    const double x7 = x[7];
    std::size_t b0 = 0;
    std::size_t b1 = 0;
    std::size_t b2 = 0;
    std::size_t b3 = 0;
    std::size_t b4 = 0;
    std::size_t b5 = 0;
    std::size_t b6 = 0;
    std::size_t b7 = 0;
    for (std::size_t step = sorted.size() / 2; step > 0; step /= 2) {
        b0 += a[b0 + step - 1] < x0 ? step : 0;
        b1 += a[b1 + step - 1] < x1 ? step : 0;
        b2 += a[b2 + step - 1] < x2 ? step : 0;
        b3 += a[b3 + step - 1] < x3 ? step : 0;
        b4 += a[b4 + step - 1] < x4 ? step : 0;
        b5 += a[b5 + step - 1] < x5 ? step : 0;
        b6 += a[b6 + step - 1] < x6 ? step : 0;
        b7 += a[b7 + step - 1] < x7 ? step : 0;
    }
    below = {b0 + (a[b0] < x0 ? 1 : 0), b1 + (a[b1] < x1 ? 1 : 0), b2 + (a[b2] < x2 ? 1 : 0),
             b3 + (a[b3] < x3 ? 1 : 0), b4 + (a[b4] < x4 ? 1 : 0), b5 + (a[b5] < x5 ? 1 : 0),
             b6 + (a[b6] < x6 ? 1 : 0), b7 + (a[b7] < x7 ? 1 : 0)};
}

// Puts the smaller of a and b in a and the larger in b.
void order(double& a, double& b) {
    const double low = std::min(a, b);
    b = std::max(a, b);
    a = low;
}

// Sorts eight values with the 19 comparators of an optimal network, written out so that the
// values stay in registers.
void sort_eight(std::array<double, kBoundsBatch>& v) {
    static_assert(kBoundsBatch == 8);
    order(v[0], v[2]);
    order(v[1], v[3]);
    order(v[4], v[6]);
    order(v[5], v[7]);
    order(v[0], v[4]);
    order(v[1], v[5]);
    order(v[2], v[6]);
    order(v[3], v[7]);
    order(v[0], v[1]);
    order(v[2], v[3]);
    order(v[4], v[5]);
    order(v[6], v[7]);
    order(v[2], v[4]);
    order(v[3], v[5]);
    order(v[1], v[4]);
    order(v[3], v[6]);
    order(v[1], v[2]);
    order(v[3], v[4]);
    order(v[5], v[6]);
}

// Eight values of the series sorted, each with the first position of its value in the union.
struct SortedEight {
    std::array<double, kBoundsBatch> values{};
    std::array<std::size_t, kBoundsBatch> places{};
};

SortedEight sorted_eight(const SlidingBounds& b, std::size_t from) {
    SortedEight out;
    std::copy_n(b.values.begin() + static_cast<std::ptrdiff_t>(from), kBoundsBatch,
                out.values.begin());
    sort_eight(out.values);
    positions_of_eight(b.sorted, out.values, out.places);
    return out;
}

// Leaving values are all in the union; a value that leaves more than once takes the copies after
// its first position one by one, so that every leaving value marks its own slot.
void separate_equal_places(SortedEight& leaving) {
    for (std::size_t k = 1; k < kBoundsBatch; ++k) {
        if (leaving.values[k] == leaving.values[k - 1])
            leaving.places[k] = leaving.places[k - 1] + 1;
    }
}

// Slides the union by one batch in a single pass from the top down. A value that stays moves by
// the number of entering values placed at or before it less the number of leaving values at or
// before it; an entering value goes after the staying values smaller than it and after the
// entering values before it. A leaving value is written where the same rule puts it, a slot that
// a staying value further down or an entering value (both written later) takes over, or one of
// the spare slots at either end; so no branch depends on the data.
void slide_union(SlidingBounds& b, const SortedEight& leaving, const SortedEight& entering) {
    const std::size_t n = union_size(b.half);
    signed char* moves = b.moves.get();
    for (std::size_t k = 0; k < kBoundsBatch; ++k) {
        --moves[leaving.places[k]];
        ++moves[entering.places[k]];
    }
    // out[-1] and out[n .. n + kBoundsBatch) are the spare slots.
    double* out = b.spare.data();
    // shift = the tallies at or below i: minus those above it, as all of them add up to 0.
    std::ptrdiff_t shift = 0;
    for (std::size_t i = n; i-- > 0;) {
        shift -= moves[i + 1];
        out[static_cast<std::ptrdiff_t>(i) + shift] = b.sorted[i];
    }
    for (std::size_t k = 0; k < kBoundsBatch; ++k) {
        const std::size_t place = entering.places[k];
        std::size_t dropped_before = 0;
        for (const std::size_t p : leaving.places)
            dropped_before += p < place ? 1 : 0;
        out[place - dropped_before + k] = entering.values[k];
        moves[leaving.places[k]] = 0;
        moves[place] = 0;
    }
    std::fill(out + n, out + n + kBoundsBatch, kPadding);
    std::swap(b.sorted, b.spare);
}

// The k-th smallest (from 0) of two ascending runs of at least k + 1 values each: the k + 1
// smallest are the first i of `low` and the first k + 1 - i of `high` for the smallest i at which
// low[i] is not below high[k - i] (or k + 1), found by halving.
template <class Low, class High> double kth_of_two_runs(Low low, High high, std::size_t k) {
    std::size_t first = 0;
    std::size_t count = k + 1;
    while (count > 0) {
        const std::size_t step = count / 2;
        if (low(first + step) < high(k - first - step)) {
            first += step + 1;
            count -= step + 1;
        } else {
            count = step;
        }
    }
    const double below = -kPadding;
    return std::max(first > 0 ? low(first - 1) : below, first <= k ? high(k - first) : below);
}

} // namespace

bool sliding_bounds_possible(std::size_t count, std::size_t half) {
    // The deviation bound needs more than kBoundsBatch + 2 values on either side of the median's
    // range; the first batch needs its whole union inside the series.
    return half >= kBoundsBatch + 3 && count >= union_size(half);
}

SlidingBounds sliding_bounds_start(std::span<const double> values, std::size_t half,
                                   std::size_t first) {
    SlidingBounds b;
    b.values = values;
    b.half = half;
    b.first = first;
    if (!sliding_bounds_possible(values.size(), half) || first < half ||
        first + kBoundsBatch + half > values.size())
        return b;
    const std::size_t n = union_size(half);
    // Each buffer: a spare slot, then the union with room for the spare slots after it, padded to
    // a power of two for the searches.
    const std::size_t size = std::bit_ceil(n + kBoundsBatch);
    b.buffers.reset(new (std::nothrow) double[2 * (size + 1)]);
    b.moves.reset(new (std::nothrow) signed char[size]());
    if (!b.buffers || !b.moves) return b;
    std::fill(b.buffers.get(), b.buffers.get() + 2 * (size + 1), kPadding);
    b.sorted = {b.buffers.get() + 1, size};
    b.spare = {b.buffers.get() + size + 2, size};
    std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(first - half), n, b.sorted.begin());
    std::sort(b.sorted.begin(), b.sorted.begin() + static_cast<std::ptrdiff_t>(n));
    b.active = true;
    return b;
}

void sliding_bounds_next(SlidingBounds& b) {
    if (!b.active) return;
    // The next batch's last window ends at first + 2 kBoundsBatch - 1 + half.
    const std::size_t next = b.first + kBoundsBatch;
    if (next + kBoundsBatch - 1 + b.half >= b.values.size()) {
        b.active = false;
        return;
    }
    SortedEight leaving = sorted_eight(b, b.first - b.half);
    separate_equal_places(leaving);
    const SortedEight entering = sorted_eight(b, b.first + kBoundsBatch + b.half);
    slide_union(b, leaving, entering);
    b.first = next;
}

NeighbourhoodBounds sliding_bounds_of(const SlidingBounds& b) {
    const std::size_t h = b.half;
    const std::size_t n = union_size(h);
    const double* s = b.sorted.data();
    NeighbourhoodBounds out;
    out.median_low = s[h - 1];
    out.median_high = s[h + kBoundsBatch];
    out.usable = s[0] >= -kLargestSafe && s[n - 1] <= kLargestSafe;
    // Positions h - 1 .. h + kBoundsBatch lie in the median's range and deviate by at least 0;
    // below them the distances to median_low ascend downwards, above them the distances to
    // median_high ascend upwards, h - 1 values each.
    const double low = out.median_low;
    const double high = out.median_high;
    const auto below = [s, h, low](std::size_t t) { return low - s[h - 2 - t]; };
    const auto above = [s, h, high](std::size_t t) { return s[h + kBoundsBatch + 1 + t] - high; };
    out.mad_low = kth_of_two_runs(below, above, h - kBoundsBatch - 3);
    return out;
}
