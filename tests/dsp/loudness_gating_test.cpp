// Integrated loudness from hand-made momentary block lists: the inclusive absolute gate of the
// first pass, the strict gates of the second, the relative threshold, several channels, and the
// largest block loudness of a list or of its first blocks.
#include "dsp/loudness_fixture.h"
#include "dsp/loudness_gating.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

// The mean square of one channel whose block loudness is `lufs`.
double power_of(double lufs) {
    return std::pow(10.0, (lufs + 0.691) / 10.0);
}

TEST(LoudnessGating, NoBlocksGiveMinus200) {
    const LoudnessBlockList list = block_list({}, {}, 1);
    EXPECT_EQ(integrated_loudness(list), -200.0);
    EXPECT_EQ(max_block_loudness(list, list.count), -200.0);
}

TEST(LoudnessGating, BlocksUnderTheAbsoluteGateGiveMinus200) {
    const LoudnessBlockList list =
        block_list({-70.5, -80.0}, {power_of(-70.5), power_of(-80.0)}, 1);
    EXPECT_EQ(integrated_loudness(list), -200.0);
    EXPECT_EQ(max_block_loudness(list, list.count), -70.5);
}

TEST(LoudnessGating, BlockExactlyAtMinus70PassesOnlyTheFirstGate) {
    // Kept by the first pass, so the relative pass runs, where the strict test drops it.
    const LoudnessBlockList list = block_list({-70.0}, {power_of(-70.0)}, 1);
    EXPECT_EQ(integrated_loudness(list), -200.0);
    EXPECT_EQ(max_block_loudness(list, list.count), -70.0);
}

TEST(LoudnessGating, BlocksAtMinus70LowerTheRelativeThreshold) {
    // -50 and -64 alone put the relative threshold near -62.8 and drop -64. Ten blocks exactly at
    // -70 join the first pass, pull the threshold near -70.2 and so let -64 through; they
    // themselves fail the strict second pass.
    std::vector<double> loudness = {-50.0, -64.0};
    std::vector<double> z = {power_of(-50.0), power_of(-64.0)};
    for (int i = 0; i < 10; ++i) {
        loudness.push_back(-70.0);
        z.push_back(power_of(-70.0));
    }
    EXPECT_EQ(integrated_loudness(block_list(loudness, z, 1)),
              loudness_of_power((z[0] + z[1]) / 2.0));
    EXPECT_EQ(integrated_loudness(block_list({-50.0, -64.0}, {z[0], z[1]}, 1)),
              loudness_of_power(z[0]));
}

TEST(LoudnessGating, RelativeGateDropsBlocksMoreThan10LuDown) {
    const std::vector<double> loudness = {-20.0, -20.0, -35.0, -25.0};
    std::vector<double> z;
    for (const double l : loudness)
        z.push_back(power_of(l));
    // Threshold: loudness of the mean of all four less 10, about -32.3; -35 falls below it.
    const double expected = loudness_of_power(((z[0] + z[1]) + z[3]) / 3.0);
    EXPECT_EQ(integrated_loudness(block_list(loudness, z, 1)), expected);
    const LoudnessBlockList all = block_list(loudness, z, 1);
    EXPECT_EQ(max_block_loudness(all, all.count), -20.0);
}

TEST(LoudnessGating, MaximumTakesOnlyTheFirstBlocksAskedFor) {
    const std::vector<double> loudness = {-30.0, -25.0, -10.0, -40.0};
    std::vector<double> z;
    for (const double l : loudness)
        z.push_back(power_of(l));
    const LoudnessBlockList list = block_list(loudness, z, 1);
    EXPECT_EQ(max_block_loudness(list, 2), -25.0);
    EXPECT_EQ(max_block_loudness(list, 3), -10.0);
    EXPECT_EQ(max_block_loudness(list, 0), -200.0);
}

TEST(LoudnessGating, ChannelMeansAreSummed) {
    // Two blocks, two channels; the block loudness values come from the summed mean squares.
    const std::vector<double> z = {0.01, 0.02, 0.03, 0.005};
    const std::vector<double> loudness = {loudness_of_power(z[0] + z[1]),
                                          loudness_of_power(z[2] + z[3])};
    const double expected = loudness_of_power((z[0] + z[2]) / 2.0 + (z[1] + z[3]) / 2.0);
    EXPECT_EQ(integrated_loudness(block_list(loudness, z, 2)), expected);
}

} // namespace
