// Block positions and block loudness: the count formula with its rounding of halves, block spans
// by floor, skipped blocks, the empty cases, the loudness of a block from its channels' mean
// squares, and the plain left-to-right sums behind them.
#include "dsp/loudness_blocks.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace {

constexpr LoudnessBlockShape kMomentary{0.4, 0.75};
constexpr LoudnessBlockShape kShortTerm{3.0, 0.97};

// Scans the squares of the equally long channels (one or two), frame by frame.
LoudnessBlockList scan(const std::vector<std::vector<double>>& channels, double rate,
                       LoudnessBlockShape shape, bool keep = true) {
    const std::size_t length = channels.empty() ? 0 : channels[0].size();
    std::vector<double> squares;
    for (std::size_t i = 0; i < length; ++i) {
        for (const std::vector<double>& channel : channels)
            squares.push_back(channel[i] * channel[i]);
    }
    return loudness_blocks({squares.data(), channels.size(), length}, rate, shape, keep);
}

TEST(LoudnessBlocks, CountFollowsTheFormula) {
    // One second of momentary blocks: round(0.6 / 0.1) + 1.
    EXPECT_EQ(loudness_block_count(48000, 48000.0, kMomentary), 7u);
    // Ten seconds of short-term blocks at 22.05 kHz: round(7 / 0.09) + 1 = 78 + 1.
    EXPECT_EQ(loudness_block_count(220500, 22050.0, kShortTerm), 79u);
    // Exactly one block length gives one position.
    EXPECT_EQ(loudness_block_count(19200, 48000.0, kMomentary), 1u);
}

TEST(LoudnessBlocks, CountRoundsHalvesAwayFromZero) {
    // Duration 1.25 s, B 1 s, step 0.5 s: (1.25 - 1) / 0.5 = 0.5 exactly, rounded up to 1.
    EXPECT_EQ(loudness_block_count(10, 8.0, {1.0, 0.5}), 2u);
}

TEST(LoudnessBlocks, NoPositionsWhenTheBlockIsLongerOrTheStepIsNotPositive) {
    EXPECT_EQ(loudness_block_count(19199, 48000.0, kMomentary), 0u);
    EXPECT_EQ(loudness_block_count(0, 48000.0, kMomentary), 0u);
    EXPECT_EQ(loudness_block_count(480000, 48000.0, {0.4, 1.0}), 0u);
    EXPECT_EQ(loudness_block_count(480000, 48000.0, {0.4, 1.5}), 0u);
}

TEST(LoudnessBlocks, SpansFollowTheFormula) {
    const SampleRange m3 = loudness_block_span(3, 48000.0, kMomentary);
    EXPECT_EQ(m3.start, 14400u);
    EXPECT_EQ(m3.end, 33600u);
    const SampleRange s7 = loudness_block_span(7, 48000.0, kShortTerm);
    EXPECT_EQ(s7.start, 30240u);
    EXPECT_EQ(s7.end, 174240u);
    // At 22.05 kHz the short-term step is 1984.5 samples: both ends are floored, not rounded.
    const SampleRange s1 = loudness_block_span(1, 22050.0, kShortTerm);
    EXPECT_EQ(s1.start, 1984u);
    EXPECT_EQ(s1.end, 68134u);
    const SampleRange s3 = loudness_block_span(3, 22050.0, kShortTerm);
    EXPECT_EQ(s3.start, 5953u);
    EXPECT_EQ(s3.end, 72103u);
}

TEST(LoudnessBlocks, BlockPassingTheEndIsSkipped) {
    // Two positions at 8 Hz, B 1 s, v 0.5; the second block would span 4 .. 12 of 10 samples.
    const std::vector<std::vector<double>> channels = {std::vector<double>(10, 0.5)};
    const LoudnessBlockList list = scan(channels, 8.0, {1.0, 0.5});
    ASSERT_EQ(list.count, 1u);
    EXPECT_EQ(list.mean_squares[0], 0.25);
}

TEST(LoudnessBlocks, EmptyBlocksAreSkipped) {
    // Blocks of half a sample at 1 Hz: block j spans floor(j / 2) .. floor((j + 1) / 2), empty
    // for every even j. Twenty positions, ten blocks of one sample each.
    std::vector<double> x(10);
    for (std::size_t i = 0; i < x.size(); ++i)
        x[i] = static_cast<double>(i + 1);
    const LoudnessBlockShape shape{0.5, 0.0};
    EXPECT_EQ(loudness_block_count(10, 1.0, shape), 20u);
    const LoudnessBlockList list = scan({x}, 1.0, shape);
    ASSERT_EQ(list.count, 10u);
    for (std::size_t i = 0; i < list.count; ++i) {
        EXPECT_EQ(list.mean_squares[i], x[i] * x[i]) << "block " << i;
    }
}

TEST(LoudnessBlocks, ShortSignalGivesAnEmptyList) {
    const std::vector<std::vector<double>> channels = {std::vector<double>(19199, 0.5)};
    const LoudnessBlockList list = scan(channels, 48000.0, kMomentary);
    EXPECT_EQ(list.count, 0u);
}

TEST(LoudnessBlocks, LoudnessSumsTheChannelsMeanSquares) {
    const std::vector<std::vector<double>> channels = {std::vector<double>(19200, 0.5),
                                                       std::vector<double>(19200, -0.25)};
    const LoudnessBlockList list = scan(channels, 48000.0, kMomentary);
    ASSERT_EQ(list.count, 1u);
    ASSERT_EQ(list.channels, 2u);
    EXPECT_EQ(list.mean_squares[0], 0.25);
    EXPECT_EQ(list.mean_squares[1], 0.0625);
    EXPECT_EQ(list.loudness[0], loudness_of_power(0.3125));
    EXPECT_DOUBLE_EQ(list.loudness[0], -0.691 + 10.0 * std::log10(0.3125));
}

TEST(LoudnessBlocks, SilentBlockIsMinus200) {
    const std::vector<std::vector<double>> channels = {std::vector<double>(48000, 0.0)};
    const LoudnessBlockList list = scan(channels, 48000.0, kMomentary);
    ASSERT_EQ(list.count, 7u);
    for (std::size_t i = 0; i < list.count; ++i)
        EXPECT_EQ(list.loudness[i], -200.0);
}

TEST(LoudnessBlocks, MeanSquaresOnlyOnRequest) {
    const std::vector<std::vector<double>> channels = {std::vector<double>(48000, 0.5)};
    const LoudnessBlockList list = scan(channels, 48000.0, kMomentary, false);
    EXPECT_EQ(list.count, 7u);
    EXPECT_EQ(list.mean_squares, nullptr);
}

TEST(LoudnessBlocks, SumsRunLeftToRight) {
    // 1 followed by four 2^-54: from the left each small square is lost against 1; any other
    // order would first gather them into one ulp of 1.
    const double small = std::ldexp(1.0, -27);
    const std::vector<std::vector<double>> channels = {{1.0, small, small, small, small}};
    const LoudnessBlockList list = scan(channels, 5.0, {1.0, 0.0});
    ASSERT_EQ(list.count, 1u);
    EXPECT_EQ(list.mean_squares[0], 1.0 / 5.0);
}

TEST(LoudnessBlocks, ManyBlocksMatchEachBlockScannedAlone) {
    // Blocks of 3.5 samples every 1.75 samples hold 3 or 4 samples; every block's figures must
    // equal those of a scan over that block's samples alone.
    std::vector<double> a(200);
    std::vector<double> b(200);
    for (std::size_t i = 0; i < a.size(); ++i) {
        a[i] = std::sin(0.37 * static_cast<double>(i)) * (1.0 + 1e-3 * static_cast<double>(i));
        b[i] = std::cos(1.3 * static_cast<double>(i)) * 0.3;
    }
    const LoudnessBlockShape shape{0.35, 0.5};
    const LoudnessBlockList list = scan({a, b}, 10.0, shape);
    // (20 - 0.35) / 0.175 rounds to 112; the last block ends at floor(199.5) and is kept.
    ASSERT_EQ(loudness_block_count(200, 10.0, shape), 113u);
    ASSERT_EQ(list.count, 113u);
    for (std::size_t j = 0; j < list.count; ++j) {
        const SampleRange r = loudness_block_span(j, 10.0, shape);
        const std::size_t n = r.end - r.start;
        const std::vector<double> a_part(a.begin() + r.start, a.begin() + r.end);
        const std::vector<double> b_part(b.begin() + r.start, b.begin() + r.end);
        const LoudnessBlockList alone = scan({a_part, b_part}, static_cast<double>(n), {1.0, 0.0});
        ASSERT_EQ(alone.count, 1u);
        EXPECT_EQ(list.loudness[j], alone.loudness[0]) << "block " << j;
        EXPECT_EQ(list.mean_squares[2 * j], alone.mean_squares[0]) << "block " << j;
        EXPECT_EQ(list.mean_squares[2 * j + 1], alone.mean_squares[1]) << "block " << j;
    }
}

TEST(LoudnessBlocks, LoudnessOfPower) {
    EXPECT_EQ(loudness_of_power(1.0), -0.691);
    EXPECT_EQ(loudness_of_power(0.0), -200.0);
    EXPECT_EQ(loudness_of_power(-1.0), -200.0);
}

} // namespace
