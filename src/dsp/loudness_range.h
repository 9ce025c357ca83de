// Loudness range: the spread between the 10th and the 95th percentile of the short-term loudness,
// after an absolute gate at -70 LUFS and a relative gate 20 LU under the mean of the kept blocks.
#pragma once

#include <span>

// The p-quantile of an ascending list (at least one value): the value at position p (n - 1),
// interpolated linearly between the floor and the ceiling ranks.
double interpolated_quantile(std::span<const double> sorted, double p);

// The loudness range of the short-term block loudness values in `loudness` (reordered in place);
// 0.0 when fewer than two blocks pass the gates.
double loudness_range(std::span<double> loudness);
