// The Time Domain scan on the situations its design singles out: identical files, a uniformly
// louder DUT, values held up to the noise floor, excluded pairs and the peak tier's either-side
// rule.
#include "checks/time_domain_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace {

using namespace time_domain_test;

constexpr double kMostNegative16 = -32768.0 / 32767.0;

TEST(TimeDomainEdge, IdenticalFilesScoreZeroAndPass) {
    const std::vector<double> signal = {0.5,   -0.5,     0.25, 0.0,
                                        0.001, -0.00005, 1.0,  kMostNegative16};
    const TimeDomainResult result = scan_defaults(make_file(signal), make_file(signal));
    const TimeDomainChannel& c = result.channel[0];
    EXPECT_TRUE(result.passed);
    EXPECT_TRUE(c.passed);
    EXPECT_FALSE(c.has_failures);
    EXPECT_EQ(c.samples_included, 6u);
    EXPECT_EQ(c.samples_excluded, 2u);
    EXPECT_EQ(c.total_fails, 0u);
    EXPECT_EQ(c.worst_sample, 0u);
    EXPECT_EQ(c.worst_diff_pct, 0.0);
    EXPECT_EQ(c.worst_tolerance_pct, 0.0);
}

TEST(TimeDomainEdge, IdenticalFilesScoreExactlyZeroPercent) {
    // With every tolerance at -0.5 % each included pair "fails", which exposes the largest score.
    const std::vector<double> signal = {0.5, -0.5, 0.25, 0.001, 1.0, kMostNegative16};
    const TimeDomainChannel c =
        time_domain_scan(aligned_pair(make_file(signal), make_file(signal), 0), kFloorDb, kPeakDb,
                         -0.5, kLowDb, -0.5, -0.5)
            .channel[0];
    EXPECT_EQ(c.total_fails, 6u);
    EXPECT_EQ(c.worst_diff_pct, 0.0);
    EXPECT_EQ(c.worst_sample, 0u);
}

TEST(TimeDomainEdge, TwentyPercentLouderFailsOnlyOnPositiveReferenceSamples) {
    // One 1 kHz cycle at 0.5: samples 1..23 are positive, 25..47 negative, 0 and 24 are silent.
    std::vector<double> ref(48);
    std::vector<double> dut(48);
    for (std::size_t n = 0; n < ref.size(); ++n) {
        ref[n] = 0.5 * std::sin(2.0 * std::numbers::pi * static_cast<double>(n) / 48.0);
        dut[n] = ref[n] * 1.2;
    }
    const TimeDomainResult result = scan_defaults(make_file(ref), make_file(dut));
    const TimeDomainChannel& c = result.channel[0];
    EXPECT_FALSE(result.passed);
    EXPECT_FALSE(c.passed);
    EXPECT_TRUE(c.has_failures);
    EXPECT_EQ(c.samples_included, 46u);
    EXPECT_EQ(c.samples_excluded, 2u);
    EXPECT_EQ(c.total_fails, 23u);
    EXPECT_EQ(c.fails_peak_tier, 23u);
    EXPECT_EQ(c.fails_signal_tier, 0u);
    EXPECT_EQ(c.fails_low_level_signal_tier, 0u);
    ASSERT_GE(c.worst_sample, 1u);
    ASSERT_LE(c.worst_sample, 23u);
    EXPECT_NEAR(c.worst_diff_pct, 20.0, 1e-9);
    EXPECT_EQ(c.worst_ref_amp, ref[c.worst_sample]);
    EXPECT_EQ(c.worst_dut_amp, dut[c.worst_sample]);
    EXPECT_EQ(c.worst_tolerance_pct, 10.0);
}

TEST(TimeDomainEdge, DutBelowFloorIsHeldUpAndScoresNearlyHundredPercent) {
    // The DUT side becomes +floor (the reference's sign): |1e-4 - 0.5| * 100 / 0.5 = 99.98.
    for (const double u : {0.0, 0.00005, -0.00005, floor_level()}) {
        const TimeDomainChannel c = scan_mono({0.5}, {u});
        EXPECT_EQ(c.samples_included, 1u) << u;
        EXPECT_EQ(c.fails_peak_tier, 1u) << u;
        EXPECT_DOUBLE_EQ(c.worst_diff_pct, 99.98) << u;
        EXPECT_EQ(c.worst_ref_amp, 0.5) << u;
        EXPECT_EQ(c.worst_dut_amp, u) << u; // the stored value, not the held one
        EXPECT_EQ(c.worst_tolerance_pct, 10.0) << u;
    }
}

TEST(TimeDomainEdge, ReferenceBelowFloorTakesTheDutSign) {
    // Against a DUT of -0.01 the reference becomes -floor and the score is -9900 %: no failure.
    const TimeDomainChannel negative = scan_mono({0.00005}, {-0.01});
    EXPECT_EQ(negative.samples_included, 1u);
    EXPECT_EQ(negative.samples_excluded, 0u);
    EXPECT_EQ(negative.total_fails, 0u);
    EXPECT_TRUE(negative.passed);
    // Against +0.01 the reference becomes +floor and the same distance scores +9900 %.
    const TimeDomainChannel positive = scan_mono({-0.00005}, {0.01});
    EXPECT_EQ(positive.fails_peak_tier, 1u);
    EXPECT_DOUBLE_EQ(positive.worst_diff_pct, 9900.0);
    EXPECT_EQ(positive.worst_ref_amp, -0.00005);
}

TEST(TimeDomainEdge, BothAtOrBelowFloorAreExcludedOnly) {
    const double f = floor_level();
    const TimeDomainChannel c = scan_mono({f, -0.00005, 0.0, -f}, {-f, f, 0.0, 0.00001});
    EXPECT_EQ(c.samples_excluded, 4u);
    EXPECT_EQ(c.samples_included, 0u);
    EXPECT_EQ(c.total_fails, 0u);
    EXPECT_TRUE(c.passed);
}

TEST(TimeDomainEdge, OneSideAbovePeakLevelMakesThePeakTier) {
    // a = 0.0005 (about -66 dBFS), b = 0.002 (about -54 dBFS): 300 % against the 10 % tolerance.
    const TimeDomainChannel c = scan_mono({0.0005}, {0.002});
    EXPECT_EQ(c.fails_peak_tier, 1u);
    EXPECT_EQ(c.fails_signal_tier, 0u);
    EXPECT_DOUBLE_EQ(c.worst_diff_pct, 300.0);
    EXPECT_EQ(c.worst_tolerance_pct, 10.0);
}

} // namespace
