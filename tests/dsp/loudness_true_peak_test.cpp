// The interpolation filter of the true-peak measure and the peak searches: tap values against
// 20-digit references, the normalisation, impulses that reveal the taps, the short head of the
// signal, and the sample peak of extreme codes.
#include "dsp/true_peak.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// The largest |y| of the sums y = h[p + 4j] x[n - j] over j = 0 .. min(n, 11), each added in the
// order of j.
double written_out_peak(const std::vector<double>& x, const TruePeakFilter& h) {
    double peak = 0.0;
    for (std::size_t n = 0; n < x.size(); ++n) {
        for (std::size_t p = 0; p < 4; ++p) {
            double y = 0.0;
            for (std::size_t j = 0; j <= std::min<std::size_t>(n, 11); ++j) {
                y += h[p + 4 * j] * x[n - j];
            }
            peak = std::max(peak, std::abs(y));
        }
    }
    return peak;
}

TEST(LoudnessTruePeak, TapsMatchReferenceValues) {
    // The windowed sinc worked out with 40-digit arithmetic.
    const TruePeakFilter h = true_peak_filter();
    EXPECT_NEAR(h[0], -0.0016626466562397602129, 1e-16);
    EXPECT_NEAR(h[1], -0.0044074712962394543771, 1e-16);
    EXPECT_NEAR(h[2], -0.0052837291409184089077, 1e-16);
    EXPECT_NEAR(h[3], -0.0027755804829909810858, 1e-16);
    EXPECT_NEAR(h[11], -0.019299945146598345471, 1e-16);
    EXPECT_NEAR(h[23], 0.97580150153455975636, 1e-15);
    EXPECT_NEAR(h[24], 0.97580150153455975636, 1e-15);
    EXPECT_NEAR(h[47], -0.0016626466562397602129, 1e-16);
}

TEST(LoudnessTruePeak, TapsSumToFour) {
    const TruePeakFilter h = true_peak_filter();
    double sum = 0.0;
    for (const double tap : h)
        sum += tap;
    EXPECT_NEAR(sum, 4.0, 1e-14);
    for (std::size_t k = 0; k < kTruePeakTaps; ++k) {
        EXPECT_NEAR(h[k], h[kTruePeakTaps - 1 - k], 1e-16) << "tap " << k;
    }
}

TEST(LoudnessTruePeak, ImpulseRevealsTheLargestTap) {
    const TruePeakFilter h = true_peak_filter();
    std::vector<double> x(40, 0.0);
    x[5] = -0.5;
    // Every tap meets the impulse once; the largest |y| is 0.5 times the largest |tap|, and the
    // impulse sample itself is no candidate.
    EXPECT_EQ(channel_true_peak(x.data(), x.size(), 1, h), 0.5 * h[23]);
    EXPECT_LT(channel_true_peak(x.data(), x.size(), 1, h), 0.5);
}

TEST(LoudnessTruePeak, OneSampleUsesOnlyTheFirstTapOfEachPhase) {
    const TruePeakFilter h = true_peak_filter();
    const std::vector<double> x = {1.0};
    const double expected =
        std::max({std::abs(h[0]), std::abs(h[1]), std::abs(h[2]), std::abs(h[3])});
    EXPECT_EQ(channel_true_peak(x.data(), x.size(), 1, h), expected);
}

TEST(LoudnessTruePeak, ShortSignalCountsMissingSamplesAsZero) {
    const TruePeakFilter h = true_peak_filter();
    // Three samples: the sums at n = 2 take j = 0, 1, 2 only.
    const std::vector<double> x = {0.25, -0.5, 1.0};
    EXPECT_EQ(channel_true_peak(x.data(), x.size(), 1, h), written_out_peak(x, h));
}

TEST(LoudnessTruePeak, LongerSignalMatchesTheSumWrittenOut) {
    const TruePeakFilter h = true_peak_filter();
    std::vector<double> x(30);
    for (std::size_t n = 0; n < x.size(); ++n)
        x[n] = std::sin(0.9 * static_cast<double>(n));
    EXPECT_EQ(channel_true_peak(x.data(), x.size(), 1, h), written_out_peak(x, h));
}

TEST(LoudnessTruePeak, EmptyChannelHasNoPeak) {
    const TruePeakFilter h = true_peak_filter();
    EXPECT_EQ(channel_true_peak(nullptr, 0, 1, h), 0.0);
    EXPECT_EQ(channel_sample_peak(nullptr, 0, 1), 0.0);
}

TEST(LoudnessTruePeak, SamplePeakOfTheMostNegativeCode) {
    const std::vector<double> x = {0.5, -32768.0 / 32767.0, 1.0};
    EXPECT_EQ(channel_sample_peak(x.data(), x.size(), 1), 32768.0 / 32767.0);
}

} // namespace
