// Order statistics shared by every check: the median and the nearest-rank percentile of a list of
// doubles, found by selection rather than a full sort. Both give exactly the element (or the mean
// of the two elements) a full ascending sort would give, and both may reorder their input.
#pragma once

#include <span>

// The middle element of the ascending order for an odd count; for an even count the mean of the
// two middle elements, (lower + upper) / 2. An empty list gives 0.0.
double median_of(std::span<double> values);

// The element at index round(p * (m - 1)) of the ascending order of the m values, rounded halves
// away from zero and clamped to [0, m - 1] (p is meant to lie in [0, 1]); no interpolation. An
// empty list gives 0.0.
double nearest_rank_percentile(std::span<double> values, double p);

// nearest_rank_percentile of the magnitudes |x| of the values, taken without a copy: the values
// are reordered by magnitude but keep their signs, so the list can still serve a median after.
double nearest_rank_magnitude_percentile(std::span<double> values, double p);
