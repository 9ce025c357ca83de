// The correlation search: exact delays on several kinds of material, agreement with a direct
// evaluation, the sign-flipped search, the lag window, the tie rule and degenerate inputs.
#include "align/alignment.h"
#include "alignment_signals.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

constexpr std::size_t kFrames = 48000;

TEST(CrossCorrelate, FindsEveryDelayExactlyOnEveryMaterial) {
    const std::int64_t delays[] = {-4800, -480, -1, 0, 1, 480, 4800};
    for (Material material : {Material::noise, Material::music, Material::transients}) {
        for (std::int64_t delay : delays) {
            const DelayedPair pair = delayed_pair(material, 11, kFrames, delay);
            // A window of exactly 4800 must still reach the delays of +-4800.
            const CorrelationPeak peak = cross_correlate(pair.ref, pair.dut, 4800, false);
            EXPECT_EQ(peak.lag, delay) << material_name(material);
            EXPECT_NEAR(peak.corr, 1.0, 1e-9) << material_name(material) << " delay " << delay;
        }
    }
}

TEST(CrossCorrelate, DelayWithLeadingZerosGivesConfidenceNearOne) {
    const std::vector<double> ref = make_material(Material::music, 3, kFrames);
    const std::vector<double> dut = delayed_with_zeros(ref, 480);
    const CorrelationPeak peak = cross_correlate(ref, dut, 4800, false);
    EXPECT_EQ(peak.lag, 480);
    EXPECT_NEAR(peak.corr, 1.0, 1e-9);
}

TEST(CrossCorrelate, AgreesWithDirectEvaluationOnSmallRandomInputs) {
    SignalRng rng = signal_rng(77);
    for (int trial = 0; trial < 200; ++trial) {
        const auto n_a = static_cast<std::size_t>(signal_next_int(rng, 1, 300));
        const auto n_b = static_cast<std::size_t>(signal_next_int(rng, 1, 300));
        const auto max_lag = static_cast<std::size_t>(signal_next_int(rng, 0, 400));
        const bool invert = trial % 2 == 1;
        const std::vector<double> a = signal_uniform(1000 + trial, n_a, -1.0, 1.0);
        const std::vector<double> b = signal_uniform(5000 + trial, n_b, -1.0, 1.0);
        const CorrelationPeak fast = cross_correlate(a, b, max_lag, invert);
        const CorrelationPeak direct = direct_correlate(a, b, max_lag, invert);
        EXPECT_EQ(fast.lag, direct.lag) << "trial " << trial;
        EXPECT_NEAR(fast.corr, direct.corr, 1e-9) << "trial " << trial;
    }
}

TEST(CrossCorrelate, AgreesWithDirectEvaluationOnADelayedCopyWithNoise) {
    const DelayedPair pair = delayed_pair(Material::noise, 8, 700, -37);
    std::vector<double> dut = pair.dut;
    const std::vector<double> extra = signal_uniform(9, dut.size(), -0.3, 0.3);
    for (std::size_t i = 0; i < dut.size(); ++i) {
        dut[i] += extra[i];
    }
    const CorrelationPeak fast = cross_correlate(pair.ref, dut, 100, false);
    const CorrelationPeak direct = direct_correlate(pair.ref, dut, 100, false);
    EXPECT_EQ(fast.lag, -37);
    EXPECT_EQ(direct.lag, -37);
    EXPECT_NEAR(fast.corr, direct.corr, 1e-9);
    // Added noise of variance 0.03 against 1/12: about 1 / sqrt(1.36) = 0.857.
    EXPECT_NEAR(fast.corr, 0.857, 0.03);
}

TEST(CrossCorrelate, InvertedSearchReturnsTheNegativeCorrelation) {
    const DelayedPair pair = delayed_pair(Material::music, 21, kFrames, 480);
    const std::vector<double> dut = negated(pair.dut);
    const CorrelationPeak inverted = cross_correlate(pair.ref, dut, 4800, true);
    EXPECT_EQ(inverted.lag, 480);
    EXPECT_NEAR(inverted.corr, -1.0, 1e-9);
    const CorrelationPeak normal = cross_correlate(pair.ref, dut, 4800, false);
    EXPECT_LT(normal.corr, 0.5);
}

TEST(CrossCorrelate, InvertedSearchOnAnUninvertedCopyStaysLow) {
    const DelayedPair pair = delayed_pair(Material::noise, 22, kFrames, 100);
    const CorrelationPeak inverted = cross_correlate(pair.ref, pair.dut, 4800, true);
    EXPECT_NE(inverted.lag, 100);
    EXPECT_LT(inverted.corr, 0.0);
    EXPECT_GT(inverted.corr, -0.1);
}

TEST(CrossCorrelate, DelayBeyondTheWindowGivesTheBestInWindowLagWithLowCorrelation) {
    const DelayedPair pair = delayed_pair(Material::noise, 31, kFrames, 3000);
    const CorrelationPeak peak = cross_correlate(pair.ref, pair.dut, 1000, false);
    EXPECT_LE(std::llabs(peak.lag), 1000);
    EXPECT_LT(peak.corr, 0.1);
    // The same small input searched directly over the same window agrees on the lag.
    const std::vector<double> ref(pair.ref.begin(), pair.ref.begin() + 4000);
    const std::vector<double> dut(pair.dut.begin(), pair.dut.begin() + 4000);
    const CorrelationPeak fast = cross_correlate(ref, dut, 1000, false);
    const CorrelationPeak direct = direct_correlate(ref, dut, 1000, false);
    EXPECT_EQ(fast.lag, direct.lag);
    EXPECT_NEAR(fast.corr, direct.corr, 1e-9);
}

TEST(CrossCorrelate, EqualValuesAtTwoLagsGoToTheLargerDutLag) {
    // Two-point transforms are exact, so both lags carry exactly the same C.
    const std::vector<double> one = {1.0};
    const std::vector<double> two = {1.0, 1.0};
    const CorrelationPeak later = cross_correlate(one, two, 1, false);
    EXPECT_EQ(later.lag, 1); // lags 0 and 1 tie: 1 wins
    EXPECT_DOUBLE_EQ(later.corr, 1.0);
    const CorrelationPeak earlier = cross_correlate(two, one, 1, false);
    EXPECT_EQ(earlier.lag, 0); // lags 0 and -1 tie: 0 wins
    EXPECT_DOUBLE_EQ(earlier.corr, 1.0);
}

TEST(CrossCorrelate, AllZeroInputTiesEverywhereAndTakesTheLargestDutLag) {
    const std::vector<double> zeros(1000, 0.0);
    const std::vector<double> noise = signal_uniform(4, 1000, -1.0, 1.0);
    EXPECT_EQ(cross_correlate(zeros, noise, 100, false).lag, 100);
    EXPECT_EQ(cross_correlate(zeros, noise, 100, true).lag, 100);
    EXPECT_EQ(cross_correlate(noise, zeros, 5000, false).lag, 999);
    EXPECT_EQ(cross_correlate(noise, zeros, 5000, false).corr, 0.0);
    EXPECT_EQ(cross_correlate(zeros, zeros, 7, false).lag, 7);
    EXPECT_EQ(cross_correlate(zeros, zeros, 7, false).corr, 0.0);
}

TEST(CrossCorrelate, ZeroWindowComparesOnlyLagZero) {
    const DelayedPair pair = delayed_pair(Material::noise, 41, 2000, 5);
    const CorrelationPeak peak = cross_correlate(pair.ref, pair.dut, 0, false);
    const CorrelationPeak direct = direct_correlate(pair.ref, pair.dut, 0, false);
    EXPECT_EQ(peak.lag, 0);
    EXPECT_NEAR(peak.corr, direct.corr, 1e-9);
    EXPECT_LT(peak.corr, 0.1);
}

TEST(CrossCorrelate, EmptyInputsGiveLagZeroAndCorrelationZero) {
    const std::vector<double> empty;
    const std::vector<double> some = {0.5, -0.25, 0.125};
    for (const CorrelationPeak peak :
         {cross_correlate(empty, some, 10, false), cross_correlate(some, empty, 10, false),
          cross_correlate(empty, empty, 10, true)}) {
        EXPECT_EQ(peak.lag, 0);
        EXPECT_EQ(peak.corr, 0.0);
    }
}

TEST(CrossCorrelate, SingleSamplesCorrelateAtLagZero) {
    const std::vector<double> a = {0.5};
    const std::vector<double> b = {-0.25};
    const CorrelationPeak peak = cross_correlate(a, b, 4800, false);
    EXPECT_EQ(peak.lag, 0);
    EXPECT_DOUBLE_EQ(peak.corr, -1.0);
}

TEST(CrossCorrelate, InputsShorterThanTheWindowStillFindTheDelay) {
    for (std::int64_t delay : {-60, -7, 0, 7, 60}) {
        const DelayedPair pair = delayed_pair(Material::noise, 51, 200, delay);
        const CorrelationPeak peak = cross_correlate(pair.ref, pair.dut, 4800, false);
        EXPECT_EQ(peak.lag, delay);
        EXPECT_NEAR(peak.corr, 1.0, 1e-9);
    }
}

TEST(CrossCorrelate, UnequalLengthsFindTheDelay) {
    const DelayedPair pair = delayed_pair(Material::music, 61, kFrames, 250);
    const std::vector<double> short_dut(pair.dut.begin(), pair.dut.begin() + 20000);
    const CorrelationPeak peak = cross_correlate(pair.ref, short_dut, 4800, false);
    EXPECT_EQ(peak.lag, 250);
    EXPECT_NEAR(peak.corr, 1.0, 1e-9);
    const std::vector<double> short_ref(pair.ref.begin(), pair.ref.begin() + 15000);
    const CorrelationPeak reverse = cross_correlate(short_ref, pair.dut, 4800, false);
    EXPECT_EQ(reverse.lag, 250);
    EXPECT_NEAR(reverse.corr, 1.0, 1e-9);
}

} // namespace
