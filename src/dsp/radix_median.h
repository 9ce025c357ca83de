// The median of a long list of doubles, and the median of their distances from a centre, without
// copying or reordering the list. Each value gets an integer key that sorts as the value does;
// counting passes over the keys narrow the range holding the middle ranks 16 bits at a time until
// few enough values remain to collect and select among directly. The results are the numbers
// median_of (statistics.h) gives on the same values (a zero may differ only in its sign, as equal
// values may come out of a selection in either order).
#pragma once

#include <span>

// The middle value for an odd count, the mean (lower + upper) / 2 of the two middle values for an
// even count, 0.0 for none. The values must not be NaN.
double radix_median(std::span<const double> values);

// The same median of |value - centre| over the values.
double radix_median_of_deviations(std::span<const double> values, double centre);
