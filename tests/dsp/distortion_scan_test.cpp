// The distortion check's frame plan and channels: the continuous scan's frame count, starts and
// percentiles, the placement of the single frame, too short or empty overlaps, offsets, stereo
// and a reference without channels.
#include "dsp/distortion.h"
#include "dsp/distortion_fixture.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr std::size_t kN = 1024;

// A 1 kHz reference and a DUT with low seeded noise added, so every frame has its own ratio.
struct NoisyPair {
    std::vector<double> ref;
    std::vector<double> dut;
};

NoisyPair noisy_pair(std::size_t frames, std::uint64_t seed) {
    NoisyPair pair;
    pair.ref = distortion_tone(1000.0, 0.5, frames);
    pair.dut = distortion_mix(pair.ref, signal_uniform(seed, frames, -1e-3, 1e-3), 1.0);
    return pair;
}

DistortionResult scan(const WavFile& ref, const WavFile& dut, std::int64_t offset, double overlap) {
    return distortion_check(aligned_pair(ref, dut, offset), kN, 20, true, -100.0, 0.01, overlap);
}

// The ungated ratios of frames at first + i * hop measured directly, in scan order.
std::vector<double> direct_ratios(const WavFile& ref, const WavFile& dut, std::int64_t offset,
                                  std::size_t first, std::size_t hop, std::size_t count) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < count; ++i) {
        ratios.push_back(
            distortion_measure_frame(ref, dut, 0, first + i * hop, offset, kN, 20).figure.ratio);
    }
    return ratios;
}

// Element round(p * (m - 1)) of the ascending order, for the p50 / p95 expectations.
double sorted_at(std::vector<double> values, std::size_t index) {
    std::sort(values.begin(), values.end());
    return values[index];
}

TEST(DistortionScan, ContinuousHalfOverlapFramesStartsAndPercentiles) {
    // Reference frames 300 .. 5299 line up with DUT frames 0 .. 4999: L = 5000, hop 512,
    // (5000 - 1024) / 512 + 1 = 8 frames at 300, 812, ..., 3884.
    const NoisyPair pair = noisy_pair(5300, 7);
    const WavFile ref = distortion_wav({pair.ref});
    const WavFile dut =
        distortion_wav({std::vector<double>(pair.dut.begin() + 300, pair.dut.end())});
    const DistortionChannelResult c = scan(ref, dut, -300, 0.5).channel[0];
    EXPECT_EQ(c.frames_scanned, 8u);
    EXPECT_EQ(c.frames_gated, 0u);
    const std::vector<double> ratios = direct_ratios(ref, dut, -300, 300, 512, 8);
    const auto worst = std::max_element(ratios.begin(), ratios.end());
    EXPECT_EQ(c.thdn_ratio, *worst);
    EXPECT_EQ(c.worst_frame_start, 300u + 512u * static_cast<std::size_t>(worst - ratios.begin()));
    EXPECT_NEAR(c.thdn_db, 20.0 * std::log10(*worst), 1e-12);
    // m = 8: p50 is element round(3.5) = 4, p95 element round(6.65) = 7.
    EXPECT_EQ(c.p50_thdn_ratio, sorted_at(ratios, 4));
    EXPECT_EQ(c.p95_thdn_ratio, sorted_at(ratios, 7));
    EXPECT_LT(c.p50_thdn_ratio, c.p95_thdn_ratio);
    EXPECT_EQ(c.passed, *worst <= 0.01);
}

TEST(DistortionScan, ContinuousWithoutOverlapStepsByWholeFrames) {
    // Hop 1024 over 5000 frames: (5000 - 1024) / 1024 + 1 = 4 frames, no tail frame.
    const NoisyPair pair = noisy_pair(5000, 11);
    const WavFile ref = distortion_wav({pair.ref});
    const WavFile dut = distortion_wav({pair.dut});
    const DistortionChannelResult c = scan(ref, dut, 0, 0.0).channel[0];
    EXPECT_EQ(c.frames_scanned, 4u);
    const std::vector<double> ratios = direct_ratios(ref, dut, 0, 0, 1024, 4);
    EXPECT_EQ(c.thdn_ratio, *std::max_element(ratios.begin(), ratios.end()));
    // m = 4: p50 is element round(1.5) = 2, p95 element round(2.85) = 3.
    EXPECT_EQ(c.p50_thdn_ratio, sorted_at(ratios, 2));
    EXPECT_EQ(c.p95_thdn_ratio, sorted_at(ratios, 3));
}

TEST(DistortionScan, GatedFramesAreCountedAndLeftOutOfThePercentiles) {
    // The reference falls silent from frame 2600: frames at 3072 and 3584 are gated.
    NoisyPair pair = noisy_pair(5000, 13);
    std::fill(pair.ref.begin() + 2600, pair.ref.end(), 0.0);
    const WavFile ref = distortion_wav({pair.ref});
    const WavFile dut = distortion_wav({pair.dut});
    const DistortionChannelResult c = scan(ref, dut, 0, 0.5).channel[0];
    EXPECT_EQ(c.frames_scanned, 8u);
    EXPECT_EQ(c.frames_gated, 2u);
    EXPECT_FALSE(c.frame_gated);
    const std::vector<double> ratios = direct_ratios(ref, dut, 0, 0, 512, 6);
    EXPECT_EQ(c.thdn_ratio, *std::max_element(ratios.begin(), ratios.end()));
    // m = 6: p50 is element round(2.5) = 3, p95 element round(4.75) = 5.
    EXPECT_EQ(c.p50_thdn_ratio, sorted_at(ratios, 3));
    EXPECT_EQ(c.p95_thdn_ratio, sorted_at(ratios, 5));
}

TEST(DistortionScan, WorstFrameIsTheFirstStrictlyGreater) {
    // Identical files: every frame's ratio is 0, so the first frame stays the worst.
    const WavFile ref = distortion_wav({distortion_tone(1000.0, 0.5, 5300)});
    const DistortionChannelResult c = scan(ref, ref, 0, 0.5).channel[0];
    EXPECT_EQ(c.frames_scanned, 9u);
    EXPECT_EQ(c.worst_frame_start, 0u);
    EXPECT_EQ(c.thdn_ratio, 0.0);
    EXPECT_EQ(c.thdn_db, -200.0);
    EXPECT_TRUE(c.passed);
}

TEST(DistortionScan, WorstFrameFollowsALocalBurst) {
    // A burst of extra tone in DUT frames 2100 .. 2299 touches only the frames at 1536 and 2048;
    // it sits at the middle of the earlier one, where the window is large, and at the start of
    // the later one, where the window is small.
    const NoisyPair pair = noisy_pair(5000, 17);
    std::vector<double> dut = pair.dut;
    const std::vector<double> burst = distortion_tone(7000.0, 0.05, 5000);
    for (std::size_t i = 2100; i < 2300; ++i) {
        dut[i] += burst[i];
    }
    const DistortionChannelResult c =
        scan(distortion_wav({pair.ref}), distortion_wav({dut}), 0, 0.5).channel[0];
    EXPECT_EQ(c.worst_frame_start, 1536u);
    EXPECT_GT(c.thdn_ratio, 0.01);
    EXPECT_FALSE(c.passed);
}

TEST(DistortionScan, SingleFrameIsCentredInTheOverlap) {
    // Offset 200: reference frames 0 .. 5000 line up with DUT frames 200 .. 5200, L = 5001;
    // the frame starts at 0 + 2500 - 512.
    const NoisyPair pair = noisy_pair(5201, 19);
    const WavFile ref =
        distortion_wav({std::vector<double>(pair.ref.begin(), pair.ref.begin() + 5001)});
    const WavFile dut = distortion_wav({pair.dut});
    const DistortionChannelResult c =
        distortion_check(aligned_pair(ref, dut, 200), kN, 20, false, -100.0, 0.01, 0.0).channel[0];
    EXPECT_EQ(c.frames_scanned, 1u);
    EXPECT_EQ(c.worst_frame_start, 1988u);
    EXPECT_EQ(c.thdn_ratio, distortion_measure_frame(ref, dut, 0, 1988, 200, kN, 20).figure.ratio);
    EXPECT_EQ(c.p50_thdn_ratio, c.thdn_ratio);
    EXPECT_EQ(c.p95_thdn_ratio, c.thdn_ratio);
}

TEST(DistortionScan, SingleFrameFillingTheOverlapEndsAtItsEnd) {
    // Offset -100 and L = N exactly: the frame starts at the reference start 100 and ends at
    // the overlap's end, the farthest it may reach.
    const NoisyPair pair = noisy_pair(1124, 23);
    const WavFile ref = distortion_wav({pair.ref});
    const WavFile dut =
        distortion_wav({std::vector<double>(pair.dut.begin() + 100, pair.dut.end())});
    const DistortionChannelResult c =
        distortion_check(aligned_pair(ref, dut, -100), kN, 20, false, -100.0, 0.01, 0.0).channel[0];
    EXPECT_FALSE(c.insufficient_samples);
    EXPECT_EQ(c.frames_scanned, 1u);
    EXPECT_EQ(c.worst_frame_start, 100u);
    EXPECT_EQ(c.thdn_ratio, distortion_measure_frame(ref, dut, 0, 100, -100, kN, 20).figure.ratio);
}

TEST(DistortionScan, OverlapShorterThanAFrameIsInsufficient) {
    const NoisyPair pair = noisy_pair(1124, 29);
    const WavFile ref = distortion_wav({pair.ref});
    const WavFile dut = distortion_wav({pair.dut});
    // Offset 101 leaves 1023 frames; continuous or not, the channel is insufficient.
    for (const bool continuous : {false, true}) {
        const DistortionResult r =
            distortion_check(aligned_pair(ref, dut, 101), kN, 20, continuous, -100.0, 0.01, 0.0);
        EXPECT_TRUE(r.passed);
        const DistortionChannelResult& c = r.channel[0];
        EXPECT_TRUE(c.passed);
        EXPECT_TRUE(c.insufficient_samples);
        EXPECT_FALSE(c.frame_gated);
        EXPECT_EQ(c.frames_scanned, 0u);
        EXPECT_EQ(c.frames_gated, 0u);
        EXPECT_EQ(c.thdn_ratio, 0.0);
        EXPECT_EQ(c.thdn_db, 0.0);
    }
}

TEST(DistortionScan, NoOverlapAtAllIsInsufficient) {
    const NoisyPair pair = noisy_pair(2048, 31);
    const WavFile ref = distortion_wav({pair.ref});
    const WavFile dut = distortion_wav({pair.dut});
    EXPECT_TRUE(scan(ref, dut, 5000, 0.0).channel[0].insufficient_samples);
    EXPECT_TRUE(scan(ref, dut, -5000, 0.0).channel[0].insufficient_samples);
}

TEST(DistortionScan, StereoChannelsAreMeasuredApart) {
    // Channel 0 is clean; channel 1 gains a 5 % fourth harmonic (2 kHz, 22 bins above the
    // notch's edge) and fails, and with it the check.
    const std::vector<double> left = distortion_tone(1000.0, 0.5, 3000);
    const std::vector<double> right = distortion_tone(500.0, 0.4, 3000);
    const WavFile ref = distortion_wav({left, right});
    const WavFile dut =
        distortion_wav({left, distortion_mix(right, distortion_tone(2000.0, 0.02, 3000), 1.0)});
    const DistortionResult r =
        distortion_check(aligned_pair(ref, dut, 0), kN, 20, false, -100.0, 0.01, 0.0);
    ASSERT_EQ(r.channels, 2u);
    EXPECT_FALSE(r.passed);
    EXPECT_TRUE(r.channel[0].passed);
    EXPECT_EQ(r.channel[0].thdn_ratio, 0.0);
    EXPECT_FALSE(r.channel[1].passed);
    EXPECT_NEAR(r.channel[1].thdn_ratio, 0.05, 5e-4);
    EXPECT_EQ(r.channel[1].thdn_ratio,
              distortion_measure_frame(ref, dut, 1, 988, 0, kN, 20).figure.ratio);
    // 500 Hz lies at bin 10.67 of 1024 points; the largest bin is 11.
    EXPECT_DOUBLE_EQ(r.channel[1].fundamental_freq_hz, 11.0 * 48000.0 / 1024.0);
}

TEST(DistortionScan, MissingDutChannelIsInsufficient) {
    const std::vector<double> tone = distortion_tone(1000.0, 0.5, 3000);
    const DistortionResult r =
        distortion_check(aligned_pair(distortion_wav({tone, tone}), distortion_wav({tone}), 0), kN,
                         20, false, -100.0, 0.01, 0.0);
    EXPECT_TRUE(r.passed);
    EXPECT_FALSE(r.channel[0].insufficient_samples);
    EXPECT_EQ(r.channel[0].thdn_ratio, 0.0);
    EXPECT_TRUE(r.channel[1].insufficient_samples);
}

TEST(DistortionScan, OnlyTheFirstTwoChannelsAreExamined) {
    const std::vector<double> tone = distortion_tone(1000.0, 0.5, 3000);
    const WavFile ref = distortion_wav({tone, tone, std::vector<double>(3000, 0.0)});
    const WavFile dut = distortion_wav({tone, tone, distortion_tone(2000.0, 0.5, 3000)});
    const DistortionResult r =
        distortion_check(aligned_pair(ref, dut, 0), kN, 20, false, -100.0, 0.01, 0.0);
    EXPECT_EQ(r.channels, 3u);
    EXPECT_TRUE(r.passed);
}

TEST(DistortionScan, ReferenceWithoutChannelsPassesWithNothingElse) {
    const WavFile empty;
    const DistortionResult r =
        distortion_check(aligned_pair(empty, empty, 0), kN, 20, true, -100.0, 0.01, 0.5);
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(r.channels, 0u);
    for (const DistortionChannelResult& c : r.channel) {
        EXPECT_FALSE(c.passed);
        EXPECT_FALSE(c.insufficient_samples);
        EXPECT_EQ(c.frames_scanned, 0u);
    }
}

} // namespace
