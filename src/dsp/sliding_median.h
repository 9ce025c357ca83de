// The median and the median absolute deviation of every value's neighbourhood in a series: the
// values at most `half` places before or after it, the value itself left out, the range cut short
// at both ends of the series. Rather than sorting each neighbourhood afresh, a sorted copy of the
// current window (the neighbourhood plus its centre) is updated by one removal and one insertion
// per step and the centre is skipped when reading it; the deviation median is then selected from
// the two sorted runs of deviations below and above the median. The figures are exactly the
// numbers two full sorts would give (a zero may differ only in its sign, as equal values may come
// out of a sort in either order).
#pragma once

#include <cstddef>
#include <span>

struct NeighbourhoodStats {
    double median = 0.0; // middle value, or the mean of the two middle values (0.0 when empty)
    double mad = 0.0;    // median of |value - median| over the neighbourhood (0.0 when empty)
};

// A cursor over the series: `sorted[0, held)` holds the window of the value at `centre` in
// ascending order, and the rest of `sorted` holds +inf. `share_hint` is where the last deviation
// median was found, the starting guess for the next one.
struct SlidingNeighbourhood {
    std::span<const double> values;
    std::size_t half = 0;
    std::span<double> sorted;
    std::size_t held = 0;
    std::size_t centre = 0;
    std::size_t share_hint = 0;
};

// Scratch values a cursor over `count` values needs: the longest window, min(2 * half + 1, count),
// rounded up to a power of two (0 for no values).
std::size_t sliding_scratch_size(std::size_t count, std::size_t half);

// A cursor on values[0]; `scratch` holds at least sliding_scratch_size(values.size(), half)
// values and must outlive the cursor. The values must not be NaN.
SlidingNeighbourhood sliding_start(std::span<const double> values, std::size_t half,
                                   std::span<double> scratch);

// Moves the cursor to the next value; past the last value it stays where it is.
void sliding_advance(SlidingNeighbourhood& s);

// Moves the cursor to values[centre] (centre < values.size()): step by step when that lies at
// most `half` values ahead, else by sorting the window there afresh.
void sliding_seek(SlidingNeighbourhood& s, std::size_t centre);

// The statistics of the neighbourhood of values[s.centre]; updates only the cursor's hint.
NeighbourhoodStats neighbourhood_stats(SlidingNeighbourhood& s);
