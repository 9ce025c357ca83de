// Events of the artifact check: a 5 ms dropout, hard clipping below full scale, a burst that
// only the whole-file measure counts, the two worst slots, and the event walk on its own (runs,
// the minimum run, silence/clip stretches, ties).
#include "dsp/artifact.h"
#include "dsp/artifact_events.h"
#include "dsp/artifact_fixture.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr double kLoneScale = 1.4826 * 1e-12;

ArtifactChannelResult mono_check(const std::vector<double>& ref, const std::vector<double>& dut,
                                 const ArtifactSettings& s = {}) {
    return run_artifact(artifact_wav({ref}), artifact_wav({dut}), s).channel[0];
}

// The largest local deviation over frames [first, first + length) of e.
double run_local_peak(const std::vector<double>& e, std::size_t first, std::size_t length) {
    double peak = 0.0;
    for (std::size_t i = first; i < first + length; ++i)
        peak = std::max(peak, artifact_local_deviation(e, i));
    return peak;
}

TEST(ArtifactEvents, FiveMillisecondDropoutIsOneCountedEvent) {
    // 240 zero samples at 48 kHz in an otherwise identical DUT.
    const std::vector<double> ref = artifact_program(31, 4800);
    std::vector<double> dut = ref;
    std::fill(dut.begin() + 2000, dut.begin() + 2240, 0.0);
    const ArtifactChannelResult c = mono_check(ref, dut);
    EXPECT_FALSE(c.passed);
    EXPECT_EQ(c.samples_flagged, 240u);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.counted_event_count, 1u);
    EXPECT_EQ(c.first_event_start_frame, 2000u);
    EXPECT_EQ(c.first_event_length, 240u);
    EXPECT_EQ(c.worst_event_start_frame, 2000u);
    EXPECT_EQ(c.worst_event_length, 240u);
    EXPECT_TRUE(c.worst_event_counted);
    const std::vector<double> e = artifact_differences(ref, dut);
    const double peak = run_local_peak(e, 2000, 240);
    EXPECT_EQ(c.worst_event_deviation_ratio, peak);
    EXPECT_EQ(c.worst_event_severity, peak / 6.0);
}

TEST(ArtifactEvents, FiveMillisecondDropoutCountsByItsSilenceRunAlone) {
    // With both severity rules out of reach only the 240-sample silence run can count it.
    const std::vector<double> ref = artifact_program(31, 4800);
    std::vector<double> dut = ref;
    std::fill(dut.begin() + 2000, dut.begin() + 2240, 0.0);
    ArtifactSettings s;
    s.min_severity = 1e30;
    s.min_global_severity = 1e30;
    EXPECT_EQ(mono_check(ref, dut, s).counted_event_count, 1u);
    s.min_silence_clip_run = 240;
    EXPECT_EQ(mono_check(ref, dut, s).counted_event_count, 1u);
    s.min_silence_clip_run = 241;
    const ArtifactChannelResult c = mono_check(ref, dut, s);
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.counted_event_count, 0u);
    EXPECT_EQ(c.minor_event_count, 1u);
}

// A triangle wave of period 64 in steps of 1/16 from -1 to 1: samples 15, 16, 17 of each period
// are 15/16, 1, 15/16 and samples 47, 48, 49 their negatives; 0 and 32 are 0.
std::vector<double> triangle(std::size_t frames) {
    std::vector<double> out(frames);
    for (std::size_t n = 0; n < frames; ++n) {
        const auto m = static_cast<long>(n % 64);
        const long step = m <= 16 ? m : (m <= 48 ? 32 - m : m - 64);
        out[n] = static_cast<double>(step) / 16.0;
    }
    return out;
}

TEST(ArtifactEvents, HardClippingAt09IsFoundByTheLocalTest) {
    const std::vector<double> ref = triangle(640);
    std::vector<double> dut = ref;
    for (double& v : dut)
        v = std::clamp(v, -0.9, 0.9);
    const ArtifactChannelResult c = mono_check(ref, dut);
    // Every clipped peak of three samples is an event; 0.9 is far from full scale, so the
    // silence/clip test plays no part and only the local deviation flags them. Most differences
    // are 0, so both spreads are raised to 1e-12 and every event counts.
    EXPECT_FALSE(c.passed);
    EXPECT_EQ(c.samples_checked, 640u);
    EXPECT_EQ(c.samples_excluded, 20u); // the zero crossings, silent in both files
    EXPECT_EQ(c.samples_flagged, 60u);
    EXPECT_EQ(c.event_count, 20u);
    EXPECT_EQ(c.counted_event_count, 20u);
    EXPECT_EQ(c.minor_event_count, 0u);
    EXPECT_EQ(c.first_event_start_frame, 15u);
    EXPECT_EQ(c.first_event_length, 3u);
    // All peaks clip by 1 - 0.9 exactly alike; the earliest is the worst.
    const double peak = std::fabs(0.9 - 1.0) / kLoneScale;
    EXPECT_EQ(c.worst_event_start_frame, 15u);
    EXPECT_EQ(c.worst_event_length, 3u);
    EXPECT_TRUE(c.worst_event_counted);
    EXPECT_EQ(c.worst_event_deviation_ratio, peak);
    EXPECT_EQ(c.worst_event_severity, peak / 6.0);
    EXPECT_EQ(c.worst_event_global_severity, peak / 6.0);
}

// A DUT of reference 0.5 plus noise of amplitude 2^-20 for most of the file that swells
// geometrically to 2^-7 between frames 5000 and 7000 and back down between 9000 and 11000, so
// that no window sees a sudden change of spread; a spike at frame 8000 stands out locally by
// about 10 robust standard deviations but by far more against the whole file.
struct BurstPair {
    std::vector<double> ref;
    std::vector<double> dut;
};

BurstPair burst_pair() {
    constexpr std::size_t kFrames = 16000;
    const std::vector<double> unit = signal_uniform(33, kFrames, -1.0, 1.0);
    BurstPair p{std::vector<double>(kFrames, 0.5), std::vector<double>(kFrames)};
    for (std::size_t i = 0; i < kFrames; ++i) {
        const double up = std::clamp((static_cast<double>(i) - 5000.0) / 2000.0, 0.0, 1.0);
        const double down = std::clamp((static_cast<double>(i) - 9000.0) / 2000.0, 0.0, 1.0);
        const double amplitude = std::exp2(-20.0 + 13.0 * (up - down));
        p.dut[i] = 0.5 + amplitude * unit[i];
    }
    p.dut[8000] = 0.5 + 0.06;
    return p;
}

TEST(ArtifactEvents, BurstCountedOnlyByTheWholeFileMeasure) {
    const BurstPair p = burst_pair();
    const std::vector<double> e = artifact_differences(p.ref, p.dut);
    const double local = artifact_local_deviation(e, 8000);
    const double global = artifact_global_deviation(e, 8000);
    // Above k but not above min_severity * k locally; far above min_global_severity * k.
    ASSERT_GT(local, 6.0);
    ASSERT_LE(local, 24.0);
    ASSERT_GT(global, 600.0);
    const ArtifactChannelResult c = mono_check(p.ref, p.dut);
    EXPECT_FALSE(c.passed);
    EXPECT_EQ(c.samples_flagged, 1u);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.counted_event_count, 1u);
    EXPECT_EQ(c.worst_event_start_frame, 8000u);
    EXPECT_EQ(c.worst_event_length, 1u);
    EXPECT_TRUE(c.worst_event_counted);
    EXPECT_EQ(c.worst_event_deviation_ratio, local);
    EXPECT_EQ(c.worst_event_severity, local / 6.0);
    EXPECT_EQ(c.worst_event_global_severity, global / 6.0);
}

TEST(ArtifactEvents, BurstIsMinorWithoutTheWholeFileRule) {
    const BurstPair p = burst_pair();
    ArtifactSettings s;
    s.min_global_severity = 1e30;
    const ArtifactChannelResult c = mono_check(p.ref, p.dut, s);
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.minor_event_count, 1u);
    EXPECT_FALSE(c.worst_event_counted);
    EXPECT_EQ(c.worst_event_start_frame, 8000u);
}

// Reference samples of (2.5 ... 30.5) / 8192 with random signs and a DUT of noise around them: a
// run of ten zeros there differs by no more than the noise does, while a spike of 0.05 stands out
// by about 14 robust standard deviations, locally and against the whole file alike.
struct QuietPair {
    std::vector<double> ref;
    std::vector<double> dut;
};

QuietPair quiet_pair(bool with_dropout) {
    SignalRng rng = signal_rng(35);
    QuietPair p;
    p.ref.resize(4000);
    for (double& v : p.ref) {
        const double magnitude = (static_cast<double>(signal_next_int(rng, 2, 30)) + 0.5) / 8192.0;
        v = signal_next_int(rng, 0, 1) == 0 ? magnitude : -magnitude;
    }
    p.dut = artifact_noisy_copy(p.ref, 36);
    if (with_dropout) std::fill(p.dut.begin() + 1000, p.dut.begin() + 1010, 0.0);
    p.dut[3000] = p.ref[3000] + 0.05;
    return p;
}

TEST(ArtifactEvents, WorstEventIsTheCountedOneEvenWhenAMinorOneIsLarger) {
    const QuietPair p = quiet_pair(true);
    const std::vector<double> e = artifact_differences(p.ref, p.dut);
    const double dropout_peak = run_local_peak(e, 1000, 10);
    const double spike = artifact_local_deviation(e, 3000);
    ASSERT_LT(dropout_peak, spike);
    ASSERT_LE(spike, 24.0);
    const ArtifactChannelResult c = mono_check(p.ref, p.dut);
    EXPECT_FALSE(c.passed);
    EXPECT_EQ(c.samples_flagged, 11u);
    EXPECT_EQ(c.event_count, 2u);
    EXPECT_EQ(c.counted_event_count, 1u);
    EXPECT_EQ(c.minor_event_count, 1u);
    EXPECT_EQ(c.first_event_start_frame, 1000u);
    EXPECT_EQ(c.first_event_length, 10u);
    EXPECT_EQ(c.worst_event_start_frame, 1000u);
    EXPECT_EQ(c.worst_event_length, 10u);
    EXPECT_TRUE(c.worst_event_counted);
    EXPECT_EQ(c.worst_event_deviation_ratio, dropout_peak);
    // No sample of the dropout exceeds k, so it has no whole-file peak.
    EXPECT_EQ(c.worst_event_global_severity, 0.0);
}

TEST(ArtifactEvents, WorstEventIsTheMinorOneWhenNothingCounts) {
    const QuietPair p = quiet_pair(false);
    const std::vector<double> e = artifact_differences(p.ref, p.dut);
    const ArtifactChannelResult c = mono_check(p.ref, p.dut);
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.minor_event_count, 1u);
    EXPECT_EQ(c.worst_event_start_frame, 3000u);
    EXPECT_FALSE(c.worst_event_counted);
    EXPECT_EQ(c.worst_event_deviation_ratio, artifact_local_deviation(e, 3000));
    EXPECT_EQ(c.worst_event_global_severity, artifact_global_deviation(e, 3000) / 6.0);
}

TEST(ArtifactEvents, EqualClicksLeaveTheEarliestWorst) {
    const std::vector<double> ref = artifact_program(37, 2000);
    std::vector<double> dut = ref;
    dut[400] += 0.125;
    dut[900] -= 0.125;
    const ArtifactChannelResult tie = mono_check(ref, dut);
    EXPECT_EQ(tie.counted_event_count, 2u);
    EXPECT_EQ(tie.worst_event_start_frame, 400u);
    // A strictly larger click later takes the slot.
    dut[1500] += 0.25;
    const ArtifactChannelResult larger = mono_check(ref, dut);
    EXPECT_EQ(larger.counted_event_count, 3u);
    EXPECT_EQ(larger.worst_event_start_frame, 1500u);
    EXPECT_EQ(larger.worst_event_deviation_ratio, 0.25 / kLoneScale);
}

// The event walk fed directly.
ArtifactEventWalk default_walk() {
    ArtifactEventWalk walk;
    walk.rules = {6.0, 1, 4.0, 100.0, 8};
    return walk;
}

TEST(ArtifactEventWalk, SlotsPreferCountedEventsAndKeepTheEarliestOfEqualOnes) {
    ArtifactEventWalk walk = default_walk();
    artifact_walk_flagged(walk, {10, 10.0, 10.0, false});  // minor
    artifact_walk_flagged(walk, {20, 10.0, 10.0, false});  // minor, equal
    artifact_walk_flagged(walk, {30, 30.0, 30.0, false});  // counted: 30 > 24
    artifact_walk_flagged(walk, {40, 30.0, 30.0, false});  // counted, equal
    artifact_walk_flagged(walk, {50, 20.0, 700.0, false}); // counted by the whole-file peak
    artifact_walk_flagged(walk, {60, 12.0, 12.0, false});  // minor, larger
    ArtifactChannelResult out;
    artifact_walk_finish(walk, out);
    EXPECT_FALSE(out.passed);
    EXPECT_EQ(out.event_count, 6u);
    EXPECT_EQ(out.counted_event_count, 3u);
    EXPECT_EQ(out.minor_event_count, 3u);
    EXPECT_EQ(out.samples_flagged, 6u);
    EXPECT_EQ(out.first_event_start_frame, 10u);
    EXPECT_EQ(out.worst_event_start_frame, 30u);
    EXPECT_EQ(out.worst_event_deviation_ratio, 30.0);
    EXPECT_EQ(out.worst_event_severity, 5.0);
    EXPECT_EQ(out.worst_event_global_severity, 5.0);
    EXPECT_EQ(walk.worst_minor.start, 60u);
    EXPECT_EQ(walk.worst_minor.local_peak, 12.0);
}

TEST(ArtifactEventWalk, RunsJoinConsecutiveFramesAndShortRunsAreDropped) {
    ArtifactEventWalk walk = default_walk();
    walk.rules.min_run = 3;
    for (std::uint64_t f : {5u, 6u, 8u, 9u, 10u, 11u, 20u})
        artifact_walk_flagged(walk, {f, 7.0 + static_cast<double>(f), 50.0, false});
    ArtifactChannelResult out;
    artifact_walk_finish(walk, out);
    // Only frames 8 to 11 make a run of at least 3.
    EXPECT_EQ(out.event_count, 1u);
    EXPECT_EQ(out.samples_flagged, 4u);
    EXPECT_EQ(out.first_event_start_frame, 8u);
    EXPECT_EQ(out.first_event_length, 4u);
    EXPECT_EQ(out.worst_event_deviation_ratio, 18.0);
    EXPECT_EQ(out.worst_event_global_severity, 50.0 / 6.0);
}

TEST(ArtifactEventWalk, SilenceClipRunIsTheLongestStretchInsideTheRun) {
    ArtifactEventWalk walk = default_walk();
    // One run of 12: 7 silence/clip samples, one outlier, 4 more: the longest stretch is 7.
    for (std::uint64_t f = 100; f < 112; ++f) {
        const bool silence = f != 107;
        artifact_walk_flagged(walk, {f, silence ? 1.0 : 8.0, 1.0, silence});
    }
    ArtifactChannelResult out;
    artifact_walk_finish(walk, out);
    EXPECT_EQ(out.event_count, 1u);
    EXPECT_EQ(out.counted_event_count, 0u);
    EXPECT_EQ(out.worst_event_length, 12u);
    // The outlier exceeds k, so its whole-file deviation is the run's global peak.
    EXPECT_EQ(out.worst_event_global_severity, 1.0 / 6.0);
    ArtifactEventWalk shorter = default_walk();
    shorter.rules.min_silence_clip_run = 7;
    for (std::uint64_t f = 100; f < 112; ++f)
        artifact_walk_flagged(shorter, {f, 1.0, 1.0, f != 107});
    ArtifactChannelResult counted;
    artifact_walk_finish(shorter, counted);
    EXPECT_EQ(counted.counted_event_count, 1u);
}

TEST(ArtifactEventWalk, NoSilenceClipSampleNeverCountsByTheRunRule) {
    ArtifactEventWalk walk = default_walk();
    walk.rules.min_silence_clip_run = 0;
    artifact_walk_flagged(walk, {3, 7.0, 7.0, false});
    ArtifactChannelResult out;
    artifact_walk_finish(walk, out);
    EXPECT_TRUE(out.passed);
    EXPECT_EQ(out.minor_event_count, 1u);
}

} // namespace
