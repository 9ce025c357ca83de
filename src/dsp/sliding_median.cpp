#include "dsp/sliding_median.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace {

constexpr double kPadding = std::numeric_limits<double>::infinity();

// Index of the first window value that is not less than x (held when there is none). The window
// is padded with +inf up to the scratch length, a power of two, so the search halves a fixed
// range with no bounds to check and no data-dependent branch: the windows are short and their
// order is random, so a mispredicted branch per halving would cost more than the comparisons.
std::size_t lower_position(const SlidingNeighbourhood& s, double x) {
    const double* a = s.sorted.data();
    std::size_t below = 0;
    for (std::size_t step = s.sorted.size() / 2; step > 0; step /= 2)
        below += a[below + step - 1] < x ? step : 0;
    return below + (a[below] < x ? 1 : 0);
}

void insert_value(SlidingNeighbourhood& s, double x) {
    double* a = s.sorted.data();
    const std::size_t at = lower_position(s, x);
    std::copy_backward(a + at, a + s.held, a + s.held + 1);
    a[at] = x;
    ++s.held;
}

void remove_value(SlidingNeighbourhood& s, double x) {
    double* a = s.sorted.data();
    const std::size_t at = lower_position(s, x);
    std::copy(a + at + 1, a + s.held, a + at);
    --s.held;
    a[s.held] = kPadding;
}

// Removes one copy of `old_value` and inserts `new_value`, moving only the values between. The
// two searches do not depend on each other, so they run side by side.
void replace_value(SlidingNeighbourhood& s, double old_value, double new_value) {
    // An equal value would leave the window as it is (and break the slot arithmetic below).
    if (new_value == old_value) return;
    double* a = s.sorted.data();
    const std::size_t from = lower_position(s, old_value);
    const std::size_t to = lower_position(s, new_value);
    if (new_value < old_value) {
        std::copy_backward(a + to, a + from, a + from + 1);
        a[to] = new_value;
        return;
    }
    // a[from] holds old_value < new_value, so to > from.
    std::copy(a + from + 1, a + to, a + from);
    a[to - 1] = new_value;
}

// The sorted neighbourhood: the window with the centre's value skipped once. The slot skipped is
// the first holding that value (any copy leaves the same values); position k of the neighbourhood
// is position k of the window before that slot and k + 1 from it on. Since the window is sorted,
// "from it on" is exactly "window[k] is not below the centre's value", which needs no search.
struct Holed {
    const double* a = nullptr;
    double centre = 0.0;
    std::size_t count = 0; // values in the neighbourhood
};

double holed_at(const Holed& h, std::size_t k) {
    return h.a[k] < h.centre ? h.a[k] : h.a[k + 1];
}

// Deviations from the median, as two ascending runs: the lower run walks down from the value just
// below position `split`, the upper run walks up from `split`. Every value before `split` is at
// most the median and every value from it on at least the median, so both runs ascend.
struct DeviationRuns {
    Holed values;
    std::size_t split = 0;
    double centre = 0.0;
};

double lower_deviation(const DeviationRuns& r, std::size_t t) {
    return std::fabs(holed_at(r.values, r.split - 1 - t) - r.centre);
}

double upper_deviation(const DeviationRuns& r, std::size_t t) {
    return std::fabs(holed_at(r.values, r.split + t) - r.centre);
}

// The rank + 1 smallest deviations are the i smallest of the lower run and the j = rank + 1 - i
// smallest of the upper run for exactly one share i: the smallest i at which the upper run's last
// taken deviation is no greater than the lower run's next one. That test holds for every share
// below it and fails from it on. A probe holds the two deviations the test at share i compares.
struct Probe {
    double upper = 0.0; // upper run at rank - i
    double lower = 0.0; // lower run at i
};

Probe probe_share(const DeviationRuns& r, std::size_t rank, std::size_t i) {
    return {upper_deviation(r, rank - i), lower_deviation(r, i)};
}

bool share_too_small(const Probe& p) {
    return p.upper > p.lower;
}

// The share within [first, last] (last when the test holds up to last - 1), by halving without a
// data-dependent branch, for the same reason as lower_position.
std::size_t search_share(const DeviationRuns& r, std::size_t rank, std::size_t first,
                         std::size_t last) {
    std::size_t n = last - first;
    if (n == 0) return first;
    while (n > 1) {
        const std::size_t step = n / 2;
        first = share_too_small(probe_share(r, rank, first + step)) ? first + step : first;
        n -= step;
    }
    return first + (share_too_small(probe_share(r, rank, first)) ? 1 : 0);
}

// The deviations on both sides of the cut at a share: the last taken and the first left of each
// run. A run with nothing taken gives -1 (below every deviation), one with nothing left +inf.
struct Cut {
    double lower_last = -1.0;
    double upper_last = -1.0;
    double lower_next = std::numeric_limits<double>::infinity();
    double upper_next = std::numeric_limits<double>::infinity();
};

Cut cut_at(const DeviationRuns& r, std::size_t rank, std::size_t i) {
    const std::size_t j = rank + 1 - i;
    Cut c;
    if (i > 0) c.lower_last = lower_deviation(r, i - 1);
    if (j > 0) c.upper_last = upper_deviation(r, j - 1);
    if (i < r.split) c.lower_next = lower_deviation(r, i);
    if (j < r.values.count - r.split) c.upper_next = upper_deviation(r, j);
    return c;
}

// The cut for `rank`, looked for first next to `hint` (the previous value's share: one step moves
// the window by one value, so neighbouring shares seldom differ by more than one). The two probes
// that settle a share next to the hint already hold the four deviations of its cut.
Cut find_cut(const DeviationRuns& r, std::size_t rank, std::size_t& hint) {
    const std::size_t upper_count = r.values.count - r.split;
    const std::size_t lo = rank + 1 > upper_count ? rank + 1 - upper_count : 0;
    const std::size_t hi = std::min(rank + 1, r.split);
    const std::size_t g = std::clamp(hint, lo, hi);
    std::size_t share = g;
    if (g == hi) {
        share = search_share(r, rank, lo, hi);
    } else if (const Probe at = probe_share(r, rank, g); share_too_small(at)) {
        share = g + 1;
        if (share < hi) {
            const Probe above = probe_share(r, rank, share);
            if (!share_too_small(above)) {
                hint = share;
                return {at.lower, above.upper, above.lower, at.upper};
            }
            share = search_share(r, rank, share + 1, hi);
        }
    } else if (g > lo) {
        const Probe below = probe_share(r, rank, g - 1);
        if (share_too_small(below)) {
            hint = g;
            return {below.lower, at.upper, at.lower, below.upper};
        }
        share = search_share(r, rank, lo, g - 1);
    }
    hint = share;
    return cut_at(r, rank, share);
}

// Sorts the window of the value at s.centre into s.sorted afresh, +inf after it.
void fill_window(SlidingNeighbourhood& s) {
    const std::size_t first = s.centre > s.half ? s.centre - s.half : 0;
    const std::size_t last = std::min(s.centre + s.half + 1, s.values.size());
    s.held = last - first;
    const auto held = static_cast<std::ptrdiff_t>(s.held);
    std::fill(s.sorted.begin(), s.sorted.end(), kPadding);
    std::copy(s.values.begin() + static_cast<std::ptrdiff_t>(first),
              s.values.begin() + static_cast<std::ptrdiff_t>(last), s.sorted.begin());
    std::sort(s.sorted.begin(), s.sorted.begin() + held);
}

} // namespace

std::size_t sliding_scratch_size(std::size_t count, std::size_t half) {
    const std::size_t longest = half >= count ? count : std::min(2 * half + 1, count);
    return longest == 0 ? 0 : std::bit_ceil(longest);
}

SlidingNeighbourhood sliding_start(std::span<const double> values, std::size_t half,
                                   std::span<double> scratch) {
    SlidingNeighbourhood s;
    s.values = values;
    // A half-width beyond the series reaches no further than the series itself.
    s.half = std::min(half, values.size());
    s.sorted = scratch.first(sliding_scratch_size(values.size(), s.half));
    fill_window(s);
    return s;
}

void sliding_seek(SlidingNeighbourhood& s, std::size_t centre) {
    if (centre >= s.centre && centre - s.centre <= s.half) {
        while (s.centre < centre)
            sliding_advance(s);
        return;
    }
    s.centre = centre;
    fill_window(s);
}

void sliding_advance(SlidingNeighbourhood& s) {
    const std::size_t count = s.values.size();
    if (s.centre + 1 >= count) return;
    ++s.centre;
    // The window of the new centre gains index centre + half and loses index centre - half - 1,
    // when those exist.
    const bool gains = s.centre + s.half < count;
    const bool loses = s.centre > s.half;
    const std::size_t entering = s.centre + s.half;
    const std::size_t leaving = s.centre - s.half - 1;
    if (gains && loses) {
        replace_value(s, s.values[leaving], s.values[entering]);
    } else if (gains) {
        insert_value(s, s.values[entering]);
    } else if (loses) {
        remove_value(s, s.values[leaving]);
    }
}

NeighbourhoodStats neighbourhood_stats(SlidingNeighbourhood& s) {
    NeighbourhoodStats out;
    if (s.held < 2) return out;
    const Holed values{s.sorted.data(), s.values[s.centre], s.held - 1};
    const std::size_t middle = values.count / 2;
    const bool odd = values.count % 2 == 1;
    // The mean of the two middle values exactly as the median routine forms it.
    out.median = odd ? holed_at(values, middle)
                     : (holed_at(values, middle - 1) + holed_at(values, middle)) / 2.0;
    // The deviation at `rank` is the larger last taken one; for an even count its mean with the
    // smaller next one, as the median routine forms it.
    const DeviationRuns runs{values, middle, out.median};
    const std::size_t rank = odd ? middle : middle - 1;
    const Cut cut = find_cut(runs, rank, s.share_hint);
    const double at = std::max(cut.lower_last, cut.upper_last);
    out.mad = odd ? at : (at + std::min(cut.lower_next, cut.upper_next)) / 2.0;
    return out;
}
