// The level fidelity check at its edges: the worst sample and its ties, runs across excluded
// samples, stereo verdicts, missing overlap, one-frame, full-scale, silent and rate-less files.
#include "checks/level_fidelity.h"
#include "level_fidelity_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace level_fidelity_test;

// A DUT that starts `offset` frames late: `offset` unrelated frames, then the reference.
std::vector<double> late_copy(const std::vector<double>& ref, std::size_t offset) {
    std::vector<double> dut = level_signal(99, offset);
    dut.insert(dut.end(), ref.begin(), ref.end());
    return dut;
}

TEST(LevelFidelityEdges, WorstSampleIsAReferenceFrameIndex) {
    const std::vector<double> ref = level_signal(11, 100);
    std::vector<double> dut = late_copy(ref, 5);
    dut[40 + 5] *= 2.0;
    const LevelFidelityResult r = run_level(mono_file(ref), mono_file(dut), kGeneral, 5);
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_EQ(c.samples_included, 100u);
    EXPECT_EQ(c.worst_sample, 40u);
    EXPECT_EQ(c.worst_diff_db, 20.0 * std::log10(2.0));
    EXPECT_EQ(c.worst_ref_amp, std::fabs(ref[40]));
    EXPECT_EQ(c.worst_dut_amp, 2.0 * std::fabs(ref[40]));
}

TEST(LevelFidelityEdges, AnEqualRatioLaterDoesNotReplaceTheWorst) {
    const std::vector<double> ref = level_signal(12, 100);
    std::vector<double> dut = ref;
    dut[40] *= 2.0;
    dut[60] *= 2.0;
    const LevelFidelityResult tie = run_level(mono_file(ref), mono_file(dut), kGeneral);
    EXPECT_EQ(tie.channel[0].worst_sample, 40u);
    dut[70] *= 0.25;
    const LevelFidelityResult larger = run_level(mono_file(ref), mono_file(dut), kGeneral);
    EXPECT_EQ(larger.channel[0].worst_sample, 70u);
    EXPECT_EQ(larger.channel[0].worst_diff_db, 20.0 * std::log10(0.25));
    EXPECT_EQ(larger.channel[0].worst_dut_amp, 0.25 * std::fabs(ref[70]));
}

TEST(LevelFidelityEdges, WorstSampleWithTheDutEarly) {
    // Offset -3: reference frame n pairs with DUT frame n - 3, so reference frames 0..2 have no
    // partner and the worst at DUT frame 20 is reference frame 23.
    const std::vector<double> ref = level_signal(13, 50);
    std::vector<double> dut(ref.begin() + 3, ref.end());
    dut[20] *= 0.5;
    const LevelFidelityResult r = run_level(mono_file(ref), mono_file(dut), kGeneral, -3);
    EXPECT_EQ(r.channel[0].samples_included, 47u);
    EXPECT_EQ(r.channel[0].worst_sample, 23u);
    EXPECT_EQ(r.channel[0].worst_diff_db, 20.0 * std::log10(0.5));
}

// At 1 kHz one sample is one millisecond: 10 samples 6 dB loud, then `gap`, then 10 more.
LevelFidelityResult run_with_gap(const std::vector<double>& gap_ref,
                                 const std::vector<double>& gap_dut) {
    std::vector<double> ref(10, 0.5);
    std::vector<double> dut(10, 1.0);
    ref.insert(ref.end(), gap_ref.begin(), gap_ref.end());
    dut.insert(dut.end(), gap_dut.begin(), gap_dut.end());
    ref.insert(ref.end(), 10, 0.5);
    dut.insert(dut.end(), 10, 1.0);
    ref.insert(ref.end(), 200, 0.5);
    dut.insert(dut.end(), 200, 0.5);
    return run_level(mono_file(ref, 1000), mono_file(dut, 1000), {-80.0, 1.02, 20.0});
}

TEST(LevelFidelityEdges, ExcludedSamplesDoNotBreakARun) {
    const LevelFidelityResult r =
        run_with_gap(std::vector<double>(5, 0.0), std::vector<double>(5, 0.0));
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_EQ(c.samples_excluded, 5u);
    EXPECT_EQ(c.samples_included, 220u);
    EXPECT_EQ(c.longest_sustained_run_ms, 20.0);
    EXPECT_TRUE(c.sustained_fail);
    // 20 of 220 ratios are out: the percentile rule fails too.
    EXPECT_EQ(c.p99_abs_db, 20.0 * std::log10(2.0));
    EXPECT_FALSE(c.passed);
}

TEST(LevelFidelityEdges, AnIncludedSampleWithinToleranceEndsARun) {
    const LevelFidelityResult r = run_with_gap({0.5}, {0.5});
    EXPECT_EQ(r.channel[0].longest_sustained_run_ms, 10.0);
    EXPECT_FALSE(r.channel[0].sustained_fail);
}

TEST(LevelFidelityEdges, AStereoFailureInChannelOneFailsTheResult) {
    const std::vector<double> left = level_signal(14, 4800);
    const std::vector<double> right = level_signal(15, 4800);
    const LevelFidelityResult r =
        run_level(stereo_file(left, right), stereo_file(left, with_gain(right, -2.0)), kGeneral);
    EXPECT_EQ(r.channels, 2u);
    EXPECT_TRUE(r.channel[0].passed);
    EXPECT_EQ(r.channel[0].p99_abs_db, 0.0);
    EXPECT_FALSE(r.channel[1].passed);
    EXPECT_NEAR(r.channel[1].median_db, -2.0, 1e-12);
    EXPECT_NEAR(r.channel[1].p99_abs_db, 2.0, 1e-12);
    EXPECT_FALSE(r.passed);
}

TEST(LevelFidelityEdges, AChannelWithEverythingExcludedPasses) {
    const std::vector<double> left = level_signal(16, 4800);
    const std::vector<double> silent(4800, 0.0);
    const LevelFidelityResult r =
        run_level(stereo_file(left, silent), stereo_file(with_gain(left, 0.5), silent), kGeneral);
    EXPECT_NEAR(r.channel[0].median_db, 0.5, 1e-12);
    EXPECT_TRUE(r.channel[0].passed);
    const LevelFidelityChannel& c = r.channel[1];
    EXPECT_EQ(c.samples_included, 0u);
    EXPECT_EQ(c.samples_excluded, 4800u);
    EXPECT_FALSE(c.has_data);
    EXPECT_TRUE(c.passed);
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelityEdges, NoOverlapComparesNothingAndPasses) {
    const std::vector<double> signal = level_signal(17, 100);
    for (const std::int64_t offset : {100, 1000, -100, -5000}) {
        const LevelFidelityResult r =
            run_level(mono_file(signal), mono_file(with_gain(signal, 6.0)), kGeneral, offset);
        EXPECT_EQ(r.channel[0].samples_included, 0u) << offset;
        EXPECT_EQ(r.channel[0].samples_excluded, 0u) << offset;
        EXPECT_FALSE(r.channel[0].has_data) << offset;
        EXPECT_TRUE(r.channel[0].passed) << offset;
        EXPECT_TRUE(r.passed) << offset;
    }
}

TEST(LevelFidelityEdges, EmptyFilesPass) {
    const LevelFidelityResult r = run_level(mono_file({}), mono_file({}), kGeneral);
    EXPECT_EQ(r.channels, 1u);
    EXPECT_EQ(r.channel[0].samples_included, 0u);
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelityEdges, AReferenceWithoutChannelsPasses) {
    const WavFile none;
    const LevelFidelityResult r = run_level(none, none, kGeneral);
    EXPECT_EQ(r.channels, 0u);
    EXPECT_TRUE(r.passed);
    EXPECT_FALSE(r.channel[0].passed);
    EXPECT_FALSE(r.channel[1].passed);
}

TEST(LevelFidelityEdges, MismatchedChannelCountsCompareNothing) {
    const std::vector<double> left = level_signal(18, 50);
    const LevelFidelityResult r =
        run_level(stereo_file(left, left), mono_file(with_gain(left, 6.0)), kGeneral);
    EXPECT_EQ(r.channel[0].samples_included + r.channel[0].samples_excluded, 0u);
    EXPECT_EQ(r.channel[1].samples_included + r.channel[1].samples_excluded, 0u);
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelityEdges, OneFrameFiles) {
    const LevelFidelityResult r = run_level(mono_file({0.5}), mono_file({-0.25}), kGeneral);
    const LevelFidelityChannel& c = r.channel[0];
    const double ratio = 20.0 * std::log10(0.5);
    EXPECT_EQ(c.samples_included, 1u);
    EXPECT_EQ(c.median_db, ratio);
    EXPECT_EQ(c.mad_db, 0.0);
    EXPECT_EQ(c.p99_abs_db, -ratio);
    EXPECT_EQ(c.worst_diff_db, ratio);
    EXPECT_EQ(c.longest_sustained_run_ms, 1.0 / 48000.0 * 1000.0);
    EXPECT_FALSE(c.sustained_fail);
    EXPECT_FALSE(c.passed);
}

TEST(LevelFidelityEdges, FullScaleCodesGiveFiniteTinyRatios) {
    // 16-bit codes 32767 and -32768 as the reader stores them: 1.0 and about -1.0000305.
    const double top = 32767.0 / kWavInt16FullScale;
    const double bottom = -32768.0 / kWavInt16FullScale;
    const LevelFidelityResult r =
        run_level(mono_file({top, bottom, bottom}), mono_file({bottom, top, bottom}), kGeneral);
    const LevelFidelityChannel& c = r.channel[0];
    const double up = 20.0 * std::log10(-bottom / top);
    const double down = 20.0 * std::log10(top / -bottom);
    EXPECT_NEAR(up, 2.650764e-4, 1e-9);
    EXPECT_EQ(c.samples_included, 3u);
    EXPECT_EQ(c.median_db, 0.0);
    EXPECT_EQ(c.p99_abs_db, std::max(up, -down));
    // The two ratios are opposite up to the last bit; the larger magnitude is the worst.
    if (-down > up) {
        EXPECT_EQ(c.worst_sample, 1u);
        EXPECT_EQ(c.worst_diff_db, down);
        EXPECT_EQ(c.worst_ref_amp, -bottom);
        EXPECT_EQ(c.worst_dut_amp, 1.0);
    } else {
        EXPECT_EQ(c.worst_sample, 0u);
        EXPECT_EQ(c.worst_diff_db, up);
        EXPECT_EQ(c.worst_ref_amp, 1.0);
        EXPECT_EQ(c.worst_dut_amp, -bottom);
    }
    EXPECT_TRUE(r.passed);
}

TEST(LevelFidelityEdges, AFloorThatUnderflowsStillExcludesSilence) {
    // 10^(-10000 / 20) is below every double; two zero samples must still be excluded, not 0 / 0.
    const LevelSettings bottomless{-10000.0, 1.02, 20.0};
    const LevelFidelityResult r =
        run_level(mono_file({0.0, 0.5, 0.0}), mono_file({0.0, 0.5, 0.5}), bottomless);
    const LevelFidelityChannel& c = r.channel[0];
    EXPECT_EQ(c.samples_excluded, 1u);
    EXPECT_EQ(c.samples_included, 2u);
    EXPECT_TRUE(std::isfinite(c.worst_diff_db));
    EXPECT_TRUE(std::isfinite(c.median_db));
    EXPECT_GT(c.worst_diff_db, 6000.0);
    EXPECT_FALSE(r.passed);
}

TEST(LevelFidelityEdges, ARateOfZeroSwitchesTheRunRuleOff) {
    const std::vector<double> signal = level_signal(19, 100);
    const LevelFidelityResult r =
        run_level(mono_file(signal, 0), mono_file(with_gain(signal, 6.0), 0), kGeneral);
    EXPECT_EQ(r.channel[0].longest_sustained_run_ms, 0.0);
    EXPECT_FALSE(r.channel[0].sustained_fail);
    EXPECT_NEAR(r.channel[0].p99_abs_db, 6.0, 1e-12);
    EXPECT_FALSE(r.passed);
}

} // namespace
