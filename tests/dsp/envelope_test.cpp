// The envelope reduction: columns without frames, the minimum and maximum per column, views
// that start before the file or read the DUT at a shift, the dB scale and its floor.
#include "dsp/envelope.h"

#include "support/memory_wav.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

constexpr std::size_t kLast = kEnvelopeColumns - 1;

TEST(EnvelopeReduce, ViewOfThreeFramesLeavesColumnsWithoutFrameInvalid) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    const Envelope env = reduce_envelope(file, 0, 0, 3, 0, EnvelopeScale::linear);
    ASSERT_EQ(env.valid.size(), kEnvelopeColumns);
    std::vector<std::size_t> valid_columns;
    for (std::size_t i = 0; i < kEnvelopeColumns; ++i) {
        if (env.valid[i] != 0) valid_columns.push_back(i);
    }
    EXPECT_EQ(valid_columns, (std::vector<std::size_t>{1365, 2730, 4095}));
    EXPECT_EQ(env.max[1365], 0.5);
    EXPECT_EQ(env.min[2730], -0.25);
    EXPECT_EQ(env.max[4095], 0.75);
    EXPECT_EQ(env.min[0], 0.0);
    EXPECT_EQ(env.valid[0], 0);
}

TEST(EnvelopeReduce, LongViewKeepsMinimumAndMaximumPerColumn) {
    std::vector<double> ramp(2 * kEnvelopeColumns);
    for (std::size_t f = 0; f < ramp.size(); ++f) {
        ramp[f] = (f % 2 == 0 ? -1.0 : 1.0) * static_cast<double>(f) / 10000.0;
    }
    const WavFile file = memory_wav({ramp}, 48000);
    const Envelope env = reduce_envelope(file, 0, 0, ramp.size(), 0, EnvelopeScale::linear);
    for (const std::size_t i : {std::size_t{0}, std::size_t{1}, std::size_t{1000}, kLast}) {
        EXPECT_EQ(env.valid[i], 1) << i;
        EXPECT_EQ(env.min[i], ramp[2 * i]) << i;
        EXPECT_EQ(env.max[i], ramp[2 * i + 1]) << i;
    }
}

TEST(EnvelopeReduce, StartBeforeTheFileAndShiftMoveTheFramesRead) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    const Envelope early = reduce_envelope(file, 0, -1, 3, 0, EnvelopeScale::linear);
    EXPECT_EQ(early.valid[1365], 0);
    EXPECT_EQ(early.max[2730], 0.5);
    EXPECT_EQ(early.max[4095], -0.25);
    const Envelope shifted = reduce_envelope(file, 0, 0, 3, 1, EnvelopeScale::linear);
    EXPECT_EQ(shifted.max[1365], -0.25);
    EXPECT_EQ(shifted.max[2730], 0.75);
    EXPECT_EQ(shifted.valid[4095], 0);
}

TEST(EnvelopeReduce, DbScaleConvertsMagnitudesAndFloorsAtMinus140) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.0}}, 48000);
    const Envelope env = reduce_envelope(file, 0, 0, 3, 0, EnvelopeScale::db);
    EXPECT_NEAR(env.max[1365], -6.020599913279624, 1e-12);
    EXPECT_NEAR(env.min[2730], -12.041199826559248, 1e-12);
    EXPECT_EQ(env.max[4095], -140.0);
    EXPECT_EQ(env.min[0], -140.0);
}

TEST(EnvelopeReduce, MissingChannelLeavesEveryColumnInvalid) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    const Envelope env = reduce_envelope(file, 1, 0, 3, 0, EnvelopeScale::linear);
    EXPECT_EQ(std::count(env.valid.begin(), env.valid.end(), 1), 0);
}

} // namespace
