// The peak levels of the loudness measure on unfiltered samples: the sample peak, and the true
// peak found by 4x polyphase oversampling through a 48-tap interpolation filter.
#pragma once

#include <array>
#include <cstddef>

inline constexpr std::size_t kTruePeakTaps = 48;
inline constexpr std::size_t kTruePeakPhases = 4;
inline constexpr std::size_t kTruePeakTapsPerPhase = kTruePeakTaps / kTruePeakPhases;

using TruePeakFilter = std::array<double, kTruePeakTaps>;

// Tap k: the windowed sinc sin(x pi / 4) / (x pi), x = k - 23.5, times the Hamming weight
// 0.54 - 0.46 cos(2 pi k / 47); then every tap is scaled by 4 / (sum of the taps).
TruePeakFilter true_peak_filter();

// The largest |x| of the `count` samples first[0], first[stride], first[2 * stride], ...; 0.0
// when there are none.
double channel_sample_peak(const double* first, std::size_t count, std::size_t stride);

// For the same samples x[n] = first[n * stride]: the largest |y| over every input sample n and
// phase p, y = sum over j = 0 .. 11 of h[p + 4 j] x[n - j] added in the order of j, samples
// before the start counting as 0. The input samples themselves are not candidates. 0.0 when there
// are no samples.
double channel_true_peak(const double* first, std::size_t count, std::size_t stride,
                         const TruePeakFilter& h);
