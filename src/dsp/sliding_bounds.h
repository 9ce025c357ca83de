// Bounds on the neighbourhood median and median absolute deviation (see sliding_median.h) that
// hold for a whole batch of consecutive centres at once. The neighbourhood of every centre of the
// batch is the union of the batch's windows with kBoundsBatch values left out, so the r-th
// smallest value of a neighbourhood lies between the r-th and the (r + kBoundsBatch)-th smallest
// of the union; the deviations have a lower bound in the same way. The union is kept sorted in a
// buffer that slides a batch at a time: the values that leave and the values that enter are
// sorted by a fixed network and placed by searches, and one pass with no data-dependent branch
// moves every value to its new place.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

inline constexpr std::size_t kBoundsBatch = 8;

// For every centre of the batch, with h = half and the neighbourhood of 2h values: the median
// (the mean of the h-th and (h + 1)-th smallest value, as the median routine forms it) lies in
// [median_low, median_high], and the h-th smallest |value - median| is at least mad_low, so the
// median absolute deviation is too. Every figure is an exact value of the union or a difference
// rounded like the deviations themselves, so rounding never breaks a bound.
struct NeighbourhoodBounds {
    double median_low = 0.0;
    double median_high = 0.0;
    double mad_low = 0.0;
    bool usable = false; // false when a value of the union is too large in magnitude for them
};

// The sorted union of the windows of centres first .. first + kBoundsBatch - 1, each window
// values[c - half .. c + half] wholly inside the series. `sorted` holds the union ascending and
// +inf after it up to a power of two; `spare` is the second buffer of the same size, and `moves`
// the per-position tallies of one slide (zero between slides).
struct SlidingBounds {
    std::span<const double> values;
    std::size_t half = 0;
    std::size_t first = 0;
    std::unique_ptr<double[]> buffers;
    std::unique_ptr<signed char[]> moves;
    std::span<double> sorted;
    std::span<double> spare;
    bool active = false; // the batch at `first` is set up
};

// True when the series of `count` values with neighbourhoods reaching `half` to either side has at
// least one batch and the bounds can say anything (half large enough against the batch).
bool sliding_bounds_possible(std::size_t count, std::size_t half);

// The batch of centres first .. first + kBoundsBatch - 1 (first >= half). Inactive when bounds
// are not possible, the batch's last window would pass the series' end, or the buffers cannot be
// allocated. The values must not be NaN.
SlidingBounds sliding_bounds_start(std::span<const double> values, std::size_t half,
                                   std::size_t first);

// Moves to the next batch; inactive from the batch whose last window would pass the series' end.
void sliding_bounds_next(SlidingBounds& b);

// The bounds of the current batch (b.active).
NeighbourhoodBounds sliding_bounds_of(const SlidingBounds& b);
