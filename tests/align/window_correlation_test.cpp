// The blocked sums behind the correlation search: every lag of the window against a direct sum,
// with blocks small enough to cross many block boundaries; channels read with a stride; and the
// sizes the block plan picks.
#include "align/correlation_plan.h"
#include "align/window_correlation.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace {

double direct_sum(const std::vector<double>& a, const std::vector<double>& b, std::int64_t lag) {
    const auto n_a = static_cast<std::int64_t>(a.size());
    const auto n_b = static_cast<std::int64_t>(b.size());
    double sum = 0.0;
    for (std::int64_t n = std::max<std::int64_t>(0, lag); n < std::min(n_a, n_b + lag); ++n)
        sum += a[static_cast<std::size_t>(n)] * b[static_cast<std::size_t>(n - lag)];
    return sum;
}

double energy(const std::vector<double>& x) {
    double sum = 0.0;
    for (const double v : x)
        sum += v * v;
    return sum;
}

// `x` as channel 1 of a three-channel interleaving with unrelated neighbours.
std::vector<double> interleaved_as_channel_one(const std::vector<double>& x) {
    std::vector<double> out(3 * x.size(), 0.75);
    for (std::size_t i = 0; i < x.size(); ++i)
        out[3 * i + 1] = x[i];
    return out;
}

bool is_power_of_two(std::size_t n) {
    return n != 0 && (n & (n - 1)) == 0;
}

TEST(WindowCorrelation, EveryLagMatchesADirectSumAcrossManyBlocks) {
    SignalRng rng = signal_rng(303);
    const std::size_t min_points[] = {1, 16, 64, 256};
    std::size_t multi_block_trials = 0;
    for (int trial = 0; trial < 400; ++trial) {
        const auto n_a = static_cast<std::size_t>(signal_next_int(rng, 1, 900));
        const auto n_b = static_cast<std::size_t>(signal_next_int(rng, 1, 900));
        // Mostly narrow windows, so that a is cut into many blocks; now and then a wide one.
        const std::int64_t widest = trial % 5 == 0 ? 1000 : 40;
        const auto max_lag = static_cast<std::size_t>(signal_next_int(rng, 0, widest));
        const std::vector<double> a = signal_uniform(7000 + trial, n_a, -1.0, 1.0);
        const std::vector<double> b = signal_uniform(9000 + trial, n_b, -1.0, 1.0);
        const LagWindow window = lag_window(n_a, n_b, max_lag);
        const BlockPlan plan = plan_blocks(n_a, n_b, window, min_points[trial % 4]);
        if (plan.block < n_a) ++multi_block_trials;
        const WindowSums sums = correlate_window(view_of(a), view_of(b), window, plan);
        ASSERT_NE(sums.c, nullptr);
        const double scale = std::sqrt(energy(a) * energy(b));
        for (std::int64_t l = window.lo; l <= window.hi; ++l) {
            ASSERT_NEAR(sums.c[l - window.lo], direct_sum(a, b, l), 1e-12 * scale)
                << "trial " << trial << " lag " << l << " block " << plan.block;
        }
    }
    EXPECT_GT(multi_block_trials, 200u);
}

TEST(WindowCorrelation, StridedChannelsGiveTheSameBits) {
    const std::vector<double> a = signal_uniform(1, 5000, -1.0, 1.0);
    const std::vector<double> b = signal_uniform(2, 4000, -1.0, 1.0);
    const std::vector<double> a3 = interleaved_as_channel_one(a);
    const std::vector<double> b3 = interleaved_as_channel_one(b);
    const LagWindow window = lag_window(a.size(), b.size(), 300);
    const BlockPlan plan = plan_blocks(a.size(), b.size(), window, 1024);
    ASSERT_LT(plan.block, a.size());
    const WindowSums plain = correlate_window(view_of(a), view_of(b), window, plan);
    const WindowSums strided = correlate_window(strided_view(a3, 1, a.size(), 3),
                                                strided_view(b3, 1, b.size(), 3), window, plan);
    for (std::size_t j = 0; j < lag_window_width(window); ++j)
        ASSERT_EQ(plain.c[j], strided.c[j]) << j;
}

TEST(WindowCorrelation, AllZeroInputsGiveExactZeros) {
    const std::vector<double> zeros(3000, 0.0);
    const std::vector<double> noise = signal_uniform(3, 2500, -1.0, 1.0);
    for (const bool zero_first : {true, false}) {
        const std::vector<double>& a = zero_first ? zeros : noise;
        const std::vector<double>& b = zero_first ? noise : zeros;
        const LagWindow window = lag_window(a.size(), b.size(), 100);
        const BlockPlan plan = plan_blocks(a.size(), b.size(), window, 512);
        ASSERT_LT(plan.block, a.size());
        const WindowSums sums = correlate_window(view_of(a), view_of(b), window, plan);
        for (std::size_t j = 0; j < lag_window_width(window); ++j)
            ASSERT_EQ(sums.c[j], 0.0) << j;
    }
}

TEST(LagWindow, ClampsToTheOverlapAndNeverEmptiesForNonEmptyInputs) {
    const LagWindow wide = lag_window(10, 20, 100);
    EXPECT_EQ(wide.lo, -19);
    EXPECT_EQ(wide.hi, 9);
    const LagWindow narrow = lag_window(1000, 1000, 7);
    EXPECT_EQ(narrow.lo, -7);
    EXPECT_EQ(narrow.hi, 7);
    EXPECT_EQ(lag_window_width(narrow), 15u);
    const LagWindow single = lag_window(1, 1, 0);
    EXPECT_EQ(single.lo, 0);
    EXPECT_EQ(single.hi, 0);
    EXPECT_EQ(lag_window_width({3, 2}), 0u);
}

TEST(BlockPlan, DefaultWindowUsesFixedBlocksThatHoldTheWindow) {
    const std::size_t frames = 48000 * 60;
    const LagWindow window = lag_window(frames, frames, 4800);
    const BlockPlan plan = plan_blocks(frames, frames, window);
    EXPECT_EQ(plan.points, kMinBlockPoints);
    EXPECT_EQ(plan.block, kMinBlockPoints - 9601 + 1);
    // The plan is the same for any length beyond one block: memory does not grow with the file.
    const BlockPlan longer = plan_blocks(60 * frames, 60 * frames, window);
    EXPECT_EQ(longer.points, plan.points);
    EXPECT_EQ(longer.block, plan.block);
}

TEST(BlockPlan, WideWindowsGrowTheTransformWithTheWindow) {
    const std::size_t frames = 48000 * 600;
    const LagWindow window = lag_window(frames, frames, 240000);
    const BlockPlan plan = plan_blocks(frames, frames, window);
    EXPECT_EQ(plan.points, std::size_t{1} << 21); // next_pow2(4 x 480001)
    EXPECT_EQ(plan.block, plan.points - lag_window_width(window) + 1);
}

TEST(BlockPlan, ShortInputsOrAWindowOfHalfTheFileTakeOneBlock) {
    // Never more points than the whole-signal transform of next_pow2(n_a + n_b - 1).
    SignalRng rng = signal_rng(5);
    for (int trial = 0; trial < 2000; ++trial) {
        const auto n_a = static_cast<std::size_t>(signal_next_int(rng, 1, 200000));
        const auto n_b = static_cast<std::size_t>(signal_next_int(rng, 1, 200000));
        const auto max_lag = static_cast<std::size_t>(signal_next_int(rng, 0, 200000));
        const LagWindow window = lag_window(n_a, n_b, max_lag);
        const BlockPlan plan = plan_blocks(n_a, n_b, window);
        ASSERT_TRUE(is_power_of_two(plan.points)) << trial;
        ASSERT_GE(plan.block, 1u);
        if (plan.block >= n_a) {
            ASSERT_EQ(plan.block, n_a);
            std::size_t whole = 1;
            while (whole < n_a + n_b - 1)
                whole *= 2;
            ASSERT_LE(plan.points, whole) << trial;
        } else {
            ASSERT_GE(plan.points, plan.block + lag_window_width(window) - 1) << trial;
        }
    }
    const std::size_t frames = 48000 * 120;
    const LagWindow half = lag_window(frames, frames, frames / 2);
    const BlockPlan plan = plan_blocks(frames, frames, half);
    EXPECT_EQ(plan.block, frames);
    EXPECT_EQ(plan.points, std::size_t{1} << 24); // next_pow2(2 x frames - 1), as before
}

} // namespace
