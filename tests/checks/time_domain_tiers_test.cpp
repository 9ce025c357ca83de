// Which tier scores a pair, which tolerance applies, the noise-floor exclusion, the worst sample
// and the signed divisor of the Time Domain scan.
#include "checks/time_domain_fixture.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace time_domain_test;

// Distinct tolerances per tier so that the recorded tolerance names the tier: low 30, signal 40,
// peak 10.
TimeDomainChannel scan_distinct(std::vector<double> ref, std::vector<double> dut) {
    return time_domain_scan(aligned_pair(make_file(std::move(ref)), make_file(std::move(dut)), 0),
                            kFloorDb, kPeakDb, 10.0, kLowDb, 30.0, 40.0)
        .channel[0];
}

// Every tolerance far below zero: each included pair with a positive reference fails, so the
// tier counters show where every pair went.
TimeDomainChannel scan_all_fail(std::vector<double> ref, std::vector<double> dut) {
    return time_domain_scan(aligned_pair(make_file(std::move(ref)), make_file(std::move(dut)), 0),
                            kFloorDb, kPeakDb, -1000.0, kLowDb, -1000.0, -1000.0)
        .channel[0];
}

TEST(TimeDomainTiers, TwentyPercentLouderIsCaughtByThePeakTierOnly) {
    // Each level twice, positive and negative: peak (0.5), signal (0.0005 -> 0.0006, both under
    // -60 dBFS), low level (0.0002 -> 0.00024, both under -70 dBFS), below the floor (0.00005).
    const std::vector<double> ref = {0.5,     -0.5,    0.0005,   -0.0005, 0.0002,
                                     -0.0002, 0.00005, -0.00005, 0.0};
    std::vector<double> dut;
    for (const double r : ref)
        dut.push_back(r * 1.2);
    const TimeDomainChannel c = scan_mono(ref, dut);
    EXPECT_EQ(c.samples_included, 6u);
    EXPECT_EQ(c.samples_excluded, 3u);
    EXPECT_EQ(c.total_fails, 1u);
    EXPECT_EQ(c.fails_peak_tier, 1u);
    EXPECT_EQ(c.fails_signal_tier, 0u);
    EXPECT_EQ(c.fails_low_level_signal_tier, 0u);
    EXPECT_EQ(c.worst_sample, 0u);
    EXPECT_DOUBLE_EQ(c.worst_diff_pct, 20.0);
    EXPECT_EQ(c.worst_ref_amp, 0.5);
    EXPECT_EQ(c.worst_dut_amp, 0.5 * 1.2);
    EXPECT_EQ(c.worst_tolerance_pct, 10.0);
}

TEST(TimeDomainTiers, LowLevelTierFailsOnItsOwn) {
    // 0.0002 -> 0.00031, both at or below -70 dBFS: 55 % against 30 %.
    const TimeDomainChannel c = scan_distinct({0.0002}, {0.00031});
    EXPECT_EQ(c.fails_low_level_signal_tier, 1u);
    EXPECT_EQ(c.fails_signal_tier, 0u);
    EXPECT_EQ(c.fails_peak_tier, 0u);
    EXPECT_EQ(c.total_fails, 1u);
    EXPECT_DOUBLE_EQ(c.worst_diff_pct, 55.0);
    EXPECT_EQ(c.worst_tolerance_pct, 30.0);
    EXPECT_FALSE(c.passed);
}

TEST(TimeDomainTiers, SignalTierFailsOnItsOwn) {
    // 0.0005 -> 0.0008: above the low level, at or below the peak level, 60 % against 40 %.
    const TimeDomainChannel c = scan_distinct({0.0005}, {0.0008});
    EXPECT_EQ(c.fails_low_level_signal_tier, 0u);
    EXPECT_EQ(c.fails_signal_tier, 1u);
    EXPECT_EQ(c.fails_peak_tier, 0u);
    EXPECT_DOUBLE_EQ(c.worst_diff_pct, 60.0);
    EXPECT_EQ(c.worst_tolerance_pct, 40.0);
}

TEST(TimeDomainTiers, PeakTierFailsOnItsOwn) {
    // 0.5 -> 0.56: 12 % against 10 %, a score that the other two tiers would let pass.
    const TimeDomainChannel c = scan_distinct({0.5}, {0.56});
    EXPECT_EQ(c.fails_low_level_signal_tier, 0u);
    EXPECT_EQ(c.fails_signal_tier, 0u);
    EXPECT_EQ(c.fails_peak_tier, 1u);
    EXPECT_NEAR(c.worst_diff_pct, 12.0, 1e-12);
    EXPECT_EQ(c.worst_tolerance_pct, 10.0);
}

TEST(TimeDomainTiers, ScoreEqualToTheToleranceDoesNotFail) {
    // 0.5 -> 0.75 scores exactly 50 %; only a larger score fails.
    const auto scan = [](double u) {
        return time_domain_scan(aligned_pair(make_file({0.5}), make_file({u}), 0), kFloorDb,
                                kPeakDb, 50.0, kLowDb, kLowTolerance, kSignalTolerance)
            .channel[0];
    };
    EXPECT_EQ(scan(0.75).total_fails, 0u);
    EXPECT_EQ(scan(0.7500001).total_fails, 1u);
}

TEST(TimeDomainTiers, LevelBoundariesDecideTheTier) {
    const double low = low_level();
    const double peak = peak_level();
    // Low level needs both sides at or below it; peak needs one side strictly above it.
    const TimeDomainChannel c = scan_all_fail({low, low, 0.0002, peak, peak, 0.0005, 0.0005},
                                              {low, 0.0004, 0.00032, peak, 0.0011, 0.0011, 0.0001});
    EXPECT_EQ(c.samples_included, 7u);
    EXPECT_EQ(c.fails_low_level_signal_tier, 1u); // (low, low)
    EXPECT_EQ(c.fails_signal_tier, 4u);           // one side above low, none above peak
    EXPECT_EQ(c.fails_peak_tier, 2u);             // a DUT of 0.0011 against either reference
    EXPECT_EQ(c.total_fails, 7u);
}

TEST(TimeDomainTiers, PairsAtOrBelowTheFloorAreExcluded) {
    // Floor at -40 dBFS (0.01): the first three pairs are excluded despite their differences;
    // the last two are held up to the floor and scored (100 % and 50 %).
    const TimeDomainChannel c =
        time_domain_scan(aligned_pair(make_file({0.005, 0.009, 0.01, 0.005, 0.02}),
                                      make_file({0.009, 0.005, 0.01, 0.02, 0.005}), 0),
                         -40.0, kPeakDb, kPeakTolerance, kLowDb, kLowTolerance, kSignalTolerance)
            .channel[0];
    EXPECT_EQ(c.samples_excluded, 3u);
    EXPECT_EQ(c.samples_included, 2u);
    EXPECT_EQ(c.fails_peak_tier, 2u);
    EXPECT_EQ(c.worst_sample, 3u);
    EXPECT_EQ(c.worst_diff_pct, 100.0);
    EXPECT_EQ(c.worst_ref_amp, 0.005);
    EXPECT_EQ(c.worst_dut_amp, 0.02);
}

TEST(TimeDomainTiers, WorstSampleIsTheLargestScoreWithItsTiersTolerance) {
    // Scores: 12 % peak, 80 % signal, 20 % peak, 55 % low level, 20 % peak.
    const TimeDomainChannel c =
        scan_mono({0.5, 0.0005, 0.5, 0.0002, 0.5}, {0.56, 0.0009, 0.6, 0.00031, 0.6});
    EXPECT_EQ(c.total_fails, 5u);
    EXPECT_EQ(c.fails_peak_tier, 3u);
    EXPECT_EQ(c.fails_signal_tier, 1u);
    EXPECT_EQ(c.fails_low_level_signal_tier, 1u);
    EXPECT_EQ(c.worst_sample, 1u);
    EXPECT_DOUBLE_EQ(c.worst_diff_pct, 80.0);
    EXPECT_EQ(c.worst_ref_amp, 0.0005);
    EXPECT_EQ(c.worst_dut_amp, 0.0009);
    EXPECT_EQ(c.worst_tolerance_pct, 50.0);
}

TEST(TimeDomainTiers, FirstOfEqualWorstScoresIsKept) {
    const TimeDomainChannel c = scan_mono({0.5, 0.5, 0.5}, {0.6, 0.7, 0.7});
    EXPECT_EQ(c.total_fails, 3u);
    EXPECT_EQ(c.worst_sample, 1u);
    EXPECT_DOUBLE_EQ(c.worst_diff_pct, 40.0);
}

TEST(TimeDomainTiers, NegativeReferenceNeverFails) {
    // The signed divisor: -0.5 -> -0.9 scores -80 %, -0.5 -> +0.5 scores -200 %.
    const TimeDomainChannel negative = scan_mono({-0.5, -0.5, -0.001}, {-0.9, 0.5, 0.5});
    EXPECT_EQ(negative.samples_included, 3u);
    EXPECT_EQ(negative.total_fails, 0u);
    EXPECT_TRUE(negative.passed);
    // The mirrored pair with a positive reference scores +80 % and fails.
    const TimeDomainChannel positive = scan_mono({0.5}, {0.9});
    EXPECT_EQ(positive.total_fails, 1u);
    EXPECT_DOUBLE_EQ(positive.worst_diff_pct, 80.0);
}

TEST(TimeDomainTiers, NegativeScoresBelowMinusOneFailWithoutAWorstSample) {
    // A tolerance below -1 % lets a negative score fail, but the worst starts at -1.0, so a
    // -20 % failure is counted while the worst-* fields stay 0.
    const TimeDomainChannel c =
        time_domain_scan(aligned_pair(make_file({-0.5}), make_file({-0.6}), 0), kFloorDb, kPeakDb,
                         -50.0, kLowDb, kLowTolerance, kSignalTolerance)
            .channel[0];
    EXPECT_EQ(c.total_fails, 1u);
    EXPECT_TRUE(c.has_failures);
    EXPECT_FALSE(c.passed);
    EXPECT_EQ(c.worst_sample, 0u);
    EXPECT_EQ(c.worst_diff_pct, 0.0);
    EXPECT_EQ(c.worst_ref_amp, 0.0);
    EXPECT_EQ(c.worst_tolerance_pct, 0.0);
}

} // namespace
