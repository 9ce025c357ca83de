// The multi-snapshot spectral comparison: snapshot starts and times from a count and from a list
// of times (clamped at both ends), one record per snapshot and channel with its own percentiles,
// gated and failing snapshots, stereo and mono, short overlaps and allocation failure.
#include "dsp/spectral_snapshots.h"

#include "dsp/spectral_fixture.h"
#include "dsp/spectral_record_fixture.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr std::size_t kN = 1024;
// The reference has 21012 frames and the DUT starts at reference frame 1000 (offset -1000), so
// the overlap runs from 1000 to 21012: L = 20012.
constexpr std::size_t kRefFrames = 21012;
constexpr std::int64_t kOffset = -1000;

std::vector<double> multitone(std::size_t frames) {
    const std::vector<SpectralTone> tones{{440.0, 0.2}, {1000.0, 0.2}, {3150.0, 0.1}};
    return spectral_tones(tones, frames);
}

// Reference frames [from, to) of `samples` multiplied by `gain`.
std::vector<double> scaled_range(std::vector<double> samples, std::size_t from, std::size_t to,
                                 double gain) {
    for (std::size_t i = from; i < to; ++i) {
        samples[i] *= gain;
    }
    return samples;
}

// The DUT of a reference channel: reference frames from 1000 on, plus seeded noise of +-1e-4,
// low enough to stay within tolerance yet enough to give every snapshot ratios of its own.
std::vector<double> dut_channel(const std::vector<double>& ref, std::uint64_t seed) {
    std::vector<double> out(ref.begin() + 1000, ref.end());
    const std::vector<double> noise = signal_uniform(seed, out.size(), -1e-4, 1e-4);
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] += noise[i];
    }
    return out;
}

struct Pair {
    WavFile ref;
    WavFile dut;
};

Pair mono_pair(const std::vector<double>& ref, const std::vector<double>& dut_source) {
    return {spectral_wav({ref}), spectral_wav({dut_channel(dut_source, 41)})};
}

Pair plain_pair() {
    const std::vector<double> ref = multitone(kRefFrames);
    return mono_pair(ref, ref);
}

// Every record of `channel` equals the frame-by-frame computation at its snapshot's start.
void expect_records(const Pair& p, const SpectralSnapshotsResult& r, unsigned channel) {
    for (const SpectralSnapshot& snap : r.snapshots) {
        const std::vector<std::size_t> start{snap.start_frame};
        expect_record(snap.channel[channel],
                      spectral_expected_record(p.ref, p.dut, kOffset, spectral_test_settings(kN),
                                               start, channel),
                      1);
    }
}

std::vector<std::uint64_t> starts_of(const SpectralSnapshotsResult& r) {
    std::vector<std::uint64_t> out;
    for (const SpectralSnapshot& snap : r.snapshots) {
        out.push_back(snap.start_frame);
    }
    return out;
}

TEST(SpectralSnapshots, OneSnapshotSitsInTheMiddle) {
    // Centre (21012 + 1000) / 2 = 11006, start 11006 - 512.
    const Pair p = plain_pair();
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(p.ref, p.dut, kOffset), spectral_test_settings(kN), {}, 1);
    ASSERT_EQ(r.snapshots.size(), 1u);
    EXPECT_EQ(r.snapshots[0].start_frame, 10494u);
    EXPECT_EQ(r.snapshots[0].time_sec, 11006.0 / 48000.0);
    EXPECT_EQ(r.channels, 1u);
    EXPECT_FALSE(r.insufficient_samples);
    expect_records(p, r, 0);
}

TEST(SpectralSnapshots, CountSpreadsSnapshotsInsideTheMargins) {
    // m = round(1000.6) = 1001, span = 21012 - (1000 + 2002) = 18010; centres
    // round(i * 4502.5) + 2001 = 2001, 6504, 11006, 15509, 20011 (halves rounded up).
    const Pair p = plain_pair();
    // The continuous-scan settings play no part in snapshots.
    SpectralSettings s = spectral_test_settings(kN);
    s.continuous = true;
    s.overlap_fraction = 0.5;
    s.edge_handling = true;
    s.edge_skip_samples = 600;
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(p.ref, p.dut, kOffset), s, {}, 5);
    EXPECT_EQ(starts_of(r), (std::vector<std::uint64_t>{1489, 5992, 10494, 14997, 19499}));
    const std::vector<double> centres{2001.0, 6504.0, 11006.0, 15509.0, 20011.0};
    for (std::size_t i = 0; i < r.snapshots.size(); ++i) {
        EXPECT_EQ(r.snapshots[i].time_sec, centres[i] / 48000.0);
        EXPECT_EQ(r.snapshots[i].channel[0].edge_skipped_samples, 0u);
        EXPECT_GT(r.snapshots[i].channel[0].p99_ratio, 0.0);
    }
    expect_records(p, r, 0);
    EXPECT_TRUE(r.passed);
}

TEST(SpectralSnapshots, CountClampsStartsToTheOverlap) {
    // L = 1100: m = 55, span = 990, centres 55, 550, 1045; starts -457 -> 0, 38, 533 -> 1100 -
    // 1024.
    const WavFile file = spectral_wav({multitone(1100)});
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(file, file, 0), spectral_test_settings(kN), {}, 3);
    EXPECT_EQ(starts_of(r), (std::vector<std::uint64_t>{0, 38, 76}));
    EXPECT_EQ(r.snapshots[0].time_sec, 512.0 / 48000.0);
    EXPECT_EQ(r.snapshots[2].time_sec, 588.0 / 48000.0);
    EXPECT_TRUE(r.passed);
}

TEST(SpectralSnapshots, TimesAreClampedToTheOverlap) {
    // -1 s and NaN fall before the reference start (1000); 0.25 s centres on 12000; 1e300 s and
    // 0.4375 s (21000, start 20488) would run past the end and start at 21012 - 1024.
    const Pair p = plain_pair();
    const std::vector<double> times{
        -1.0, 0.25, 1e300, 0.4375, std::numeric_limits<double>::quiet_NaN(), -1e300};
    const SpectralSnapshotsResult r = spectral_snapshots(aligned_pair(p.ref, p.dut, kOffset),
                                                         spectral_test_settings(kN), times, 3);
    EXPECT_EQ(starts_of(r), (std::vector<std::uint64_t>{1000, 11488, 19988, 19988, 1000, 1000}));
    EXPECT_EQ(r.snapshots[0].time_sec, 1512.0 / 48000.0);
    EXPECT_EQ(r.snapshots[1].time_sec, 0.25);
    EXPECT_EQ(r.snapshots[2].time_sec, 20500.0 / 48000.0);
    expect_records(p, r, 0);
}

TEST(SpectralSnapshots, GatedSnapshotPassesOnItsOwn) {
    // Silence over reference frames 9000 .. 12499 holds the middle snapshot (10494 .. 11517).
    const std::vector<double> ref = scaled_range(multitone(kRefFrames), 9000, 12500, 0.0);
    const Pair p = mono_pair(ref, ref);
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(p.ref, p.dut, kOffset), spectral_test_settings(kN), {}, 5);
    ASSERT_EQ(r.snapshots.size(), 5u);
    const SpectralChannelResult& gated = r.snapshots[2].channel[0];
    EXPECT_TRUE(gated.frame_gated);
    EXPECT_EQ(gated.frames_scanned, 1u);
    EXPECT_EQ(gated.frames_gated, 1u);
    EXPECT_EQ(gated.bins_compared, 0u);
    EXPECT_EQ(gated.p99_ratio, 0.0);
    EXPECT_TRUE(gated.passed);
    EXPECT_EQ(gated.chart_frame_start, 10494u);
    EXPECT_FALSE(r.snapshots[1].channel[0].frame_gated);
    EXPECT_GT(r.snapshots[1].channel[0].bins_compared, 0u);
    expect_records(p, r, 0);
    EXPECT_TRUE(r.passed);
}

TEST(SpectralSnapshots, FailingSnapshotFailsTheCheck) {
    // The DUT is 3 dB louder over reference frames 14000 .. 16499, around the fourth snapshot
    // (14997 .. 16020) only.
    const std::vector<double> ref = multitone(kRefFrames);
    const Pair p = mono_pair(ref, scaled_range(ref, 14000, 16500, std::pow(10.0, 3.0 / 20.0)));
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(p.ref, p.dut, kOffset), spectral_test_settings(kN), {}, 5);
    ASSERT_EQ(r.snapshots.size(), 5u);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(r.snapshots[i].channel[0].passed, i != 3) << "snapshot " << i;
    }
    EXPECT_TRUE(r.snapshots[3].channel[0].worst_is_peak);
    EXPECT_FALSE(r.passed);
    expect_records(p, r, 0);
}

TEST(SpectralSnapshots, StereoRecordsAreJudgedPerChannel) {
    const std::vector<double> ref = multitone(kRefFrames);
    const std::vector<double> louder = scaled_range(ref, 0, 4000, std::pow(10.0, 3.0 / 20.0));
    const Pair p{spectral_wav({ref, ref}),
                 spectral_wav({dut_channel(ref, 41), dut_channel(louder, 43)})};
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(p.ref, p.dut, kOffset), spectral_test_settings(kN), {}, 5);
    EXPECT_EQ(r.channels, 2u);
    for (std::size_t i = 0; i < r.snapshots.size(); ++i) {
        EXPECT_TRUE(r.snapshots[i].channel[0].passed);
        EXPECT_EQ(r.snapshots[i].channel[1].passed, i > 0) << "snapshot " << i;
    }
    EXPECT_FALSE(r.passed);
    expect_records(p, r, 0);
    expect_records(p, r, 1);
}

TEST(SpectralSnapshots, MonoLeavesTheSecondChannelUntouched) {
    const Pair p = plain_pair();
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(p.ref, p.dut, kOffset), spectral_test_settings(kN), {}, 5);
    ASSERT_EQ(r.snapshots.size(), 5u);
    for (const SpectralSnapshot& snap : r.snapshots) {
        EXPECT_EQ(snap.channel[0].frames_scanned, 1u);
        EXPECT_EQ(snap.channel[1].frames_scanned, 0u);
        EXPECT_EQ(snap.channel[1].bins_compared, 0u);
        EXPECT_TRUE(snap.channel[1].passed);
    }
}

TEST(SpectralSnapshots, ShortOverlapGivesNoSnapshots) {
    const Pair p = plain_pair();
    // Offset 20500: the DUT's 20012 frames line up with no reference frame.
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(p.ref, p.dut, 20500), spectral_test_settings(kN), {}, 5);
    EXPECT_TRUE(r.insufficient_samples);
    EXPECT_TRUE(r.snapshots.empty());
    EXPECT_TRUE(r.passed);
    const WavFile short_file = spectral_wav({multitone(1000)});
    const std::vector<double> times{0.01};
    const SpectralSnapshotsResult s = spectral_snapshots(aligned_pair(short_file, short_file, 0),
                                                         spectral_test_settings(kN), times, 0);
    EXPECT_TRUE(s.insufficient_samples);
    EXPECT_TRUE(s.snapshots.empty());
    EXPECT_TRUE(s.passed);
}

TEST(SpectralSnapshots, ReferenceWithoutChannelsPasses) {
    const WavFile none = spectral_wav({});
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(none, none, 0), spectral_test_settings(kN), {}, 5);
    EXPECT_TRUE(r.snapshots.empty());
    EXPECT_FALSE(r.insufficient_samples);
    EXPECT_TRUE(r.passed);
}

TEST(SpectralSnapshots, FailedAllocationLeavesEmptyPassingRecords) {
    const std::vector<double> ref = multitone(kRefFrames);
    const Pair p = mono_pair(ref, scaled_range(ref, 0, kRefFrames, 2.0));
    spectral_fail_nothrow_arrays(true);
    const SpectralSnapshotsResult r =
        spectral_snapshots(aligned_pair(p.ref, p.dut, kOffset), spectral_test_settings(kN), {}, 2);
    spectral_fail_nothrow_arrays(false);
    ASSERT_EQ(r.snapshots.size(), 2u);
    EXPECT_EQ(r.snapshots[1].start_frame, 19499u);
    for (const SpectralSnapshot& snap : r.snapshots) {
        EXPECT_EQ(snap.channel[0].frames_scanned, 0u);
        EXPECT_TRUE(snap.channel[0].passed);
    }
    EXPECT_TRUE(r.passed);
    // With memory the doubled DUT fails.
    EXPECT_FALSE(
        spectral_snapshots(aligned_pair(p.ref, p.dut, kOffset), spectral_test_settings(kN), {}, 2)
            .passed);
}

} // namespace
