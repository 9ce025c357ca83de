// Exhausted memory: block lists that cannot be allocated leave the documented initial values. The
// arrays asked for here (2^60 doubles and more) pass the largest object size, so they are refused
// before any allocation is tried.
#include "dsp/loudness.h"
#include "dsp/loudness_blocks.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

constexpr std::size_t kHuge = std::size_t{1} << 60;

TEST(LoudnessAllocation, BlockListThatCannotBeAllocatedIsEmpty) {
    // 2^60 + 1 one-second blocks at 1 Hz; no sample is read when the list cannot be allocated.
    ASSERT_EQ(loudness_block_count(kHuge, 1.0, {1.0, 0.0}), kHuge + 1);
    const LoudnessBlockList list = loudness_blocks({nullptr, 1, kHuge}, 1.0, {1.0, 0.0}, true);
    EXPECT_EQ(list.count, 0u);
    EXPECT_EQ(list.loudness, nullptr);
    EXPECT_EQ(list.mean_squares, nullptr);
}

TEST(LoudnessAllocation, BlockListsThatCannotBeAllocatedKeepTheInitialValues) {
    // The record claims 2^60 frames; at 1 Hz they hold about 10^19 momentary and short-term block
    // positions, whose lists cannot exist, so nothing is read.
    WavFile file;
    file.sample_rate = 1;
    file.channels = 2;
    file.format = kWavFormatFloat64;
    file.frames = kHuge;
    ASSERT_GT(loudness_block_count(kHuge, 1.0, {0.4, 0.75}), kHuge);
    ASSERT_GT(loudness_block_count(kHuge, 1.0, {3.0, 0.97}), kHuge);
    const LoudnessMeasure m = loudness_measure(file, 2, 0, kHuge, 1.0);
    EXPECT_EQ(m.integrated_lufs, -200.0);
    EXPECT_EQ(m.range_lu, 0.0);
    EXPECT_EQ(m.true_peak_dbtp, -200.0);
    EXPECT_EQ(m.sample_peak_dbfs, -200.0);
    EXPECT_EQ(m.max_momentary_lufs, -200.0);
    EXPECT_EQ(m.max_short_term_lufs, -200.0);
}

} // namespace
