// Loudness range from lists of short-term loudness values: the interpolated quantiles, the
// absolute and relative gates, and the lists too short to have a range.
#include "dsp/loudness_range.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(LoudnessRange, QuantileInterpolatesBetweenFloorAndCeilingRanks) {
    const std::vector<double> sorted = {1.0, 2.0, 3.0, 4.0, 5.0};
    // Positions 0.4 and 3.8 of the five values.
    EXPECT_DOUBLE_EQ(interpolated_quantile(sorted, 0.1), 1.4);
    EXPECT_DOUBLE_EQ(interpolated_quantile(sorted, 0.95), 4.8);
    // Position 2 exactly: the value itself.
    EXPECT_EQ(interpolated_quantile(sorted, 0.5), 3.0);
    EXPECT_EQ(interpolated_quantile(sorted, 0.0), 1.0);
    EXPECT_EQ(interpolated_quantile(sorted, 1.0), 5.0);
}

TEST(LoudnessRange, QuantileOfOneValue) {
    const std::vector<double> one = {-23.0};
    EXPECT_EQ(interpolated_quantile(one, 0.95), -23.0);
}

TEST(LoudnessRange, TwoLevelsTenLuApart) {
    // Ten blocks at -20 and ten at -30: q10 at position 1.9 is -30, q95 at 18.05 is -20.
    std::vector<double> blocks(10, -20.0);
    blocks.insert(blocks.end(), 10, -30.0);
    EXPECT_EQ(loudness_range(blocks), 10.0);
}

TEST(LoudnessRange, TwoBlocksInterpolate) {
    std::vector<double> blocks = {-20.0, -24.0};
    // q95 = -24 + 0.95 * 4, q10 = -24 + 0.1 * 4.
    EXPECT_DOUBLE_EQ(loudness_range(blocks), (-24.0 + 0.95 * 4.0) - (-24.0 + 0.1 * 4.0));
}

TEST(LoudnessRange, AbsoluteGateKeepsMinus70) {
    // -70 is kept (>= -70) and so is everything within 20 LU of the mean of the kept blocks:
    // the mean of -55 and -70 sits near -57.4, the threshold near -77.4.
    std::vector<double> blocks = {-55.0, -70.0, -70.1, -200.0};
    EXPECT_DOUBLE_EQ(loudness_range(blocks), (-70.0 + 0.95 * 15.0) - (-70.0 + 0.1 * 15.0));
}

TEST(LoudnessRange, RelativeGateDrops20LuDown) {
    // The mean of 10^(L/10) is dominated by the -10 blocks (about -13.0); the threshold near
    // -33.0 drops -40 but keeps -30.
    std::vector<double> blocks = {-10.0, -10.0, -40.0, -30.0};
    // Kept and sorted: -30, -10, -10; q10 at 0.2, q95 at 1.9.
    EXPECT_DOUBLE_EQ(loudness_range(blocks), -10.0 - (-30.0 + 0.2 * 20.0));
}

TEST(LoudnessRange, FewerThanTwoKeptBlocksGiveZero) {
    std::vector<double> none;
    EXPECT_EQ(loudness_range(none), 0.0);
    std::vector<double> silent = {-200.0, -90.0};
    EXPECT_EQ(loudness_range(silent), 0.0);
    std::vector<double> one_left = {-10.0, -45.0, -80.0};
    EXPECT_EQ(loudness_range(one_left), 0.0);
}

TEST(LoudnessRange, SteadyLevelHasNoRange) {
    std::vector<double> blocks(50, -23.0);
    EXPECT_EQ(loudness_range(blocks), 0.0);
}

} // namespace
