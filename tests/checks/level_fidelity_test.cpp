// The level fidelity check on hand-built pairs whose ratios, runs and verdicts are known.
#include "checks/level_fidelity.h"
#include "level_fidelity_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace level_fidelity_test;

constexpr std::size_t kTenSeconds = 480000; // 10 s at 48 kHz

TEST(LevelFidelity, IdenticalFilesPassWithZeroRatios) {
    const std::vector<double> signal = level_signal(1, 4800);
    const LevelFidelityResult r = run_level(mono_file(signal), mono_file(signal), kGeneral);
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(r.channels, 1u);
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.samples_included, 4800u);
    EXPECT_EQ(c.samples_excluded, 0u);
    EXPECT_EQ(c.median_db, 0.0);
    EXPECT_EQ(c.mad_db, 0.0);
    EXPECT_EQ(c.p99_abs_db, 0.0);
    EXPECT_TRUE(c.has_data);
    // The first included sample always sets the worst, and 0 dB is never strictly beaten.
    EXPECT_EQ(c.worst_sample, 0u);
    EXPECT_EQ(c.worst_diff_db, 0.0);
    EXPECT_EQ(c.worst_ref_amp, std::fabs(signal[0]));
    EXPECT_EQ(c.worst_dut_amp, std::fabs(signal[0]));
    EXPECT_EQ(c.longest_sustained_run_ms, 0.0);
    EXPECT_FALSE(c.sustained_fail);
}

TEST(LevelFidelity, OneDbLouderPassesTheGeneralTolerance) {
    const std::vector<double> signal = level_signal(2, 4800);
    const LevelFidelityResult r =
        run_level(mono_file(signal), mono_file(with_gain(signal, 1.0)), kGeneral);
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_NEAR(c.median_db, 1.0, 1e-12);
    EXPECT_NEAR(c.p99_abs_db, 1.0, 1e-12);
    EXPECT_NEAR(c.mad_db, 0.0, 1e-12);
    EXPECT_EQ(c.longest_sustained_run_ms, 0.0);
    EXPECT_TRUE(c.passed);
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelity, OnePointOneDbLouderFails) {
    const std::vector<double> signal = level_signal(2, 4800);
    const LevelFidelityResult r =
        run_level(mono_file(signal), mono_file(with_gain(signal, 1.1)), kGeneral);
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_NEAR(c.median_db, 1.1, 1e-12);
    EXPECT_NEAR(c.p99_abs_db, 1.1, 1e-12);
    // Every one of the 4800 samples is out of tolerance: one 100 ms run.
    EXPECT_EQ(c.longest_sustained_run_ms, 100.0);
    EXPECT_TRUE(c.sustained_fail);
    EXPECT_FALSE(c.passed);
    EXPECT_FALSE(r.passed);
}

TEST(LevelFidelity, A912SampleBurstPassesBothRules) {
    const std::vector<double> signal = level_signal(3, kTenSeconds);
    const LevelFidelityResult r =
        run_level(mono_file(signal), mono_file(with_burst(signal, 240000, 912, 3.0)), kGeneral);
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_EQ(c.samples_included, kTenSeconds);
    EXPECT_EQ(c.p99_abs_db, 0.0);
    EXPECT_EQ(c.median_db, 0.0);
    EXPECT_EQ(c.mad_db, 0.0);
    EXPECT_EQ(c.longest_sustained_run_ms, 19.0);
    EXPECT_FALSE(c.sustained_fail);
    EXPECT_GE(c.worst_sample, 240000u);
    EXPECT_LT(c.worst_sample, 240912u);
    EXPECT_NEAR(c.worst_diff_db, 3.0, 1e-12);
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelity, A960SampleBurstFailsOnTheRunRuleAlone) {
    const std::vector<double> signal = level_signal(3, kTenSeconds);
    const LevelFidelityResult r =
        run_level(mono_file(signal), mono_file(with_burst(signal, 240000, 960, 3.0)), kGeneral);
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_EQ(c.p99_abs_db, 0.0);
    EXPECT_EQ(c.longest_sustained_run_ms, 20.0);
    EXPECT_TRUE(c.sustained_fail);
    EXPECT_FALSE(c.passed);
    EXPECT_FALSE(r.passed);
}

TEST(LevelFidelity, MinRunZeroLeavesOnlyThePercentileRule) {
    const std::vector<double> signal = level_signal(3, kTenSeconds);
    const LevelSettings no_run_rule{-80.0, 1.02, 0.0};
    const LevelFidelityResult r =
        run_level(mono_file(signal), mono_file(with_burst(signal, 240000, 960, 3.0)), no_run_rule);
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_EQ(c.longest_sustained_run_ms, 20.0);
    EXPECT_FALSE(c.sustained_fail);
    EXPECT_TRUE(c.passed);
}

TEST(LevelFidelity, NegativeMinRunAlsoSwitchesTheRunRuleOff) {
    const std::vector<double> signal = level_signal(4, 4800);
    const LevelSettings negative_run{-80.0, 1.02, -5.0};
    const LevelFidelityResult r =
        run_level(mono_file(signal), mono_file(with_burst(signal, 100, 40, -6.0)), negative_run);
    EXPECT_FALSE(r.channel[0].sustained_fail);
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelity, ReferenceBelowTheFloorIsHeldAtTheFloor) {
    // floor -40 dB = 0.01: frame 0 is included with the reference held at 0.01, frame 1 (both
    // below) is excluded, frame 2 is exact.
    const LevelSettings settings{-40.0, 1.02, 20.0};
    const LevelFidelityResult r =
        run_level(mono_file({0.001, 0.005, -0.5}), mono_file({-0.1, 0.005, 0.5}), settings);
    const LevelFidelityChannel& c = r.channel[0];
    const double held = 20.0 * std::log10(0.1 / std::pow(10.0, -40.0 / 20.0));
    EXPECT_NEAR(held, 20.0, 1e-12);
    EXPECT_EQ(c.samples_included, 2u);
    EXPECT_EQ(c.samples_excluded, 1u);
    EXPECT_EQ(c.worst_sample, 0u);
    EXPECT_EQ(c.worst_diff_db, held);
    EXPECT_EQ(c.worst_ref_amp, 0.001);
    EXPECT_EQ(c.worst_dut_amp, 0.1);
    EXPECT_EQ(c.median_db, held / 2.0);
    EXPECT_EQ(c.p99_abs_db, held);
    EXPECT_EQ(c.mad_db, held / 2.0);
    EXPECT_FALSE(c.passed);
}

TEST(LevelFidelity, DigitalSilenceIsExcludedAndPasses) {
    const std::vector<double> silence(4800, 0.0);
    const LevelFidelityResult r = run_level(mono_file(silence), mono_file(silence), kGeneral);
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_EQ(c.samples_included, 0u);
    EXPECT_EQ(c.samples_excluded, 4800u);
    EXPECT_FALSE(c.has_data);
    EXPECT_EQ(c.median_db, 0.0);
    EXPECT_EQ(c.mad_db, 0.0);
    EXPECT_EQ(c.p99_abs_db, 0.0);
    EXPECT_EQ(c.worst_sample, 0u);
    EXPECT_EQ(c.worst_diff_db, 0.0);
    EXPECT_EQ(c.longest_sustained_run_ms, 0.0);
    EXPECT_TRUE(c.passed);
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelity, SamplesBelowTheFloorInBothFilesAreExcluded) {
    // 1e-5 is -100 dBFS, under the -80 dB floor in both files even 10 dB apart.
    std::vector<double> ref = level_signal(6, 100);
    std::vector<double> dut = ref;
    for (std::size_t i = 10; i < 30; ++i) {
        ref[i] = 1e-5;
        dut[i] = -3e-5;
    }
    const LevelFidelityResult r = run_level(mono_file(ref), mono_file(dut), kGeneral);
    EXPECT_EQ(r.channel[0].samples_included, 80u);
    EXPECT_EQ(r.channel[0].samples_excluded, 20u);
    EXPECT_EQ(r.channel[0].p99_abs_db, 0.0);
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelity, TheTwoProfilesJudgeTheSameGainDifferently) {
    const std::vector<double> signal = level_signal(7, 4800);
    const WavFile ref = mono_file(signal);
    const WavFile dut = mono_file(with_gain(signal, 1.5));
    const LevelFidelityResult general = run_level(ref, dut, kGeneral);
    const LevelFidelityResult impulse = run_level(ref, dut, kImpulse);
    EXPECT_NEAR(general.channel[0].p99_abs_db, 1.5, 1e-12);
    EXPECT_EQ(general.channel[0].p99_abs_db, impulse.channel[0].p99_abs_db);
    EXPECT_TRUE(general.channel[0].sustained_fail);
    EXPECT_FALSE(general.passed);
    EXPECT_EQ(impulse.channel[0].longest_sustained_run_ms, 0.0);
    EXPECT_TRUE(impulse.passed);
}

TEST(LevelFidelity, TheImpulseFloorExcludesQuietMaterialTheGeneralOneCompares) {
    // Magnitudes between about -76 and -50 dBFS: above the -80 dB floor, below -30 dB.
    const std::vector<double> quiet = with_gain(level_signal(8, 4800), -50.0);
    const WavFile ref = mono_file(quiet);
    const WavFile dut = mono_file(with_gain(quiet, 3.0));
    const LevelFidelityResult general = run_level(ref, dut, kGeneral);
    const LevelFidelityResult impulse = run_level(ref, dut, kImpulse);
    EXPECT_EQ(general.channel[0].samples_included, 4800u);
    EXPECT_NEAR(general.channel[0].p99_abs_db, 3.0, 1e-12);
    EXPECT_FALSE(general.passed);
    EXPECT_EQ(impulse.channel[0].samples_included, 0u);
    EXPECT_EQ(impulse.channel[0].samples_excluded, 4800u);
    EXPECT_TRUE(impulse.passed);
}

TEST(LevelFidelity, ARatioComputedAtTheToleranceRidesOnTheSlack) {
    // 20 log10 of a 1 dB gain comes out a hair above 1.0 for some samples; keep only those, so
    // that every ratio exceeds a 1.0 dB tolerance by rounding alone. The relative slack of 1e-5
    // lets them pass.
    const std::vector<double> signal = level_signal(9, 4800);
    const std::vector<double> louder = with_gain(signal, 1.0);
    std::vector<double> ref;
    std::vector<double> dut;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        if (20.0 * std::log10(std::fabs(louder[i]) / std::fabs(signal[i])) <= 1.0) continue;
        ref.push_back(signal[i]);
        dut.push_back(louder[i]);
    }
    ASSERT_GE(ref.size(), 10u);
    // At 1 kHz ten samples already make a 10 ms run, twice the 5 ms minimum, had they counted.
    const LevelSettings one_db{-80.0, 1.0, 5.0};
    const LevelFidelityResult r = run_level(mono_file(ref, 1000), mono_file(dut, 1000), one_db);
    EXPECT_GT(r.channel[0].p99_abs_db, 1.0);
    EXPECT_GT(r.channel[0].median_db, 1.0);
    EXPECT_EQ(r.channel[0].longest_sustained_run_ms, 0.0);
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelity, TheSlackIsRelativeAndSmall) {
    const std::vector<double> signal = level_signal(10, 4800);
    const WavFile ref = mono_file(signal);
    const LevelSettings one_db{-80.0, 1.0, 0.0};
    // Within 1.00001 dB.
    const LevelFidelityResult inside =
        run_level(ref, mono_file(with_gain(signal, 1.000005)), one_db);
    EXPECT_NEAR(inside.channel[0].p99_abs_db, 1.000005, 1e-12);
    EXPECT_TRUE(inside.passed);
    // Beyond it.
    const LevelFidelityResult outside =
        run_level(ref, mono_file(with_gain(signal, 1.00002)), one_db);
    EXPECT_NEAR(outside.channel[0].p99_abs_db, 1.00002, 1e-12);
    EXPECT_FALSE(outside.passed);
    // For 100 dB the slack is 0.001 dB.
    const LevelSettings hundred_db{-200.0, 100.0, 0.0};
    const LevelFidelityResult wide =
        run_level(ref, mono_file(with_gain(signal, 100.0005)), hundred_db);
    EXPECT_TRUE(wide.passed);
}

} // namespace
