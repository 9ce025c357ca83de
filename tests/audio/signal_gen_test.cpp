// The shared test-signal generator: reproducible from its seed, inside its ranges, exact where
// the mathematics is exact.
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

TEST(SignalGen, SameSeedSameNumbers) {
    EXPECT_EQ(signal_uniform(7, 100, -1.0, 1.0), signal_uniform(7, 100, -1.0, 1.0));
    EXPECT_NE(signal_uniform(7, 100, -1.0, 1.0), signal_uniform(8, 100, -1.0, 1.0));
}

TEST(SignalGen, KnownFirstOutputOfSeedZero) {
    SignalRng rng = signal_rng(0);
    EXPECT_EQ(signal_next_u64(rng), 0xE220A8397B1DCDAFull);
    EXPECT_EQ(signal_next_u64(rng), 0x6E789E6AA1B965F4ull);
}

TEST(SignalGen, UniformStaysInRangeAndSpreads) {
    const std::vector<double> values = signal_uniform(3, 10000, -0.5, 2.0);
    double low = 10.0;
    double high = -10.0;
    for (const double v : values) {
        ASSERT_GE(v, -0.5);
        ASSERT_LT(v, 2.0);
        low = std::min(low, v);
        high = std::max(high, v);
    }
    EXPECT_LT(low, -0.49);
    EXPECT_GT(high, 1.99);
}

TEST(SignalGen, IntegersCoverBothEnds) {
    SignalRng rng = signal_rng(11);
    bool seen_low = false;
    bool seen_high = false;
    for (int i = 0; i < 1000; ++i) {
        const std::int64_t v = signal_next_int(rng, -3, 3);
        ASSERT_GE(v, -3);
        ASSERT_LE(v, 3);
        seen_low = seen_low || v == -3;
        seen_high = seen_high || v == 3;
    }
    EXPECT_TRUE(seen_low);
    EXPECT_TRUE(seen_high);
}

TEST(SignalGen, SineHitsQuarterPeriodValues) {
    const std::vector<double> sine = signal_sine(12000.0, 0.5, 48000.0, 5);
    ASSERT_EQ(sine.size(), 5u);
    EXPECT_EQ(sine[0], 0.0);
    EXPECT_NEAR(sine[1], 0.5, 1e-15);
    EXPECT_NEAR(sine[2], 0.0, 1e-15);
    EXPECT_NEAR(sine[3], -0.5, 1e-15);
    const std::vector<double> shifted = signal_sine(1000.0, 1.0, 48000.0, 1, std::numbers::pi / 2);
    EXPECT_NEAR(shifted[0], 1.0, 1e-15);
}

TEST(SignalGen, InterleaveIsFrameMajor) {
    const std::vector<std::vector<double>> channels = {{1, 2, 3}, {10, 20, 30}, {100, 200, 300}};
    const std::vector<double> expected = {1, 10, 100, 2, 20, 200, 3, 30, 300};
    EXPECT_EQ(signal_interleave(channels), expected);
    EXPECT_TRUE(signal_interleave({}).empty());
}

} // namespace
