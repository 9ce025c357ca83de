// The neighbourhood median and median absolute deviation written as plainly as possible: gather
// the neighbourhood of one value (the values at most window / 2, rounded down, places away, the
// value itself left out, cut short at the ends of the series), sort it, read the median, then sort
// the absolute deviations from it and read their median. The tests compare the sliding
// computation against it value for value and the benchmark uses it as the baseline.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

struct ReferenceNeighbourhood {
    double median = 0.0; // 0.0 for an empty neighbourhood
    double mad = 0.0;    // 0.0 for an empty neighbourhood
};

// Sorts `values` ascending and returns the middle value, or the mean of the two middle values
// (0.0 for none).
double reference_median(std::vector<double>& values);

// Statistics of the neighbourhood of values[index] for a window of `window` values. `scratch` is
// reused from call to call, as a scan over a whole series would keep its sort buffer.
ReferenceNeighbourhood reference_neighbourhood(std::span<const double> values, std::size_t index,
                                               std::size_t window, std::vector<double>& scratch);
