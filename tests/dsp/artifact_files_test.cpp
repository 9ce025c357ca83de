// The artifact check across files: stereo pairs, DUT offsets both ways (event frames are
// reference frames), a reference without channels, a DUT lacking the second channel, and the
// first two channels of wider files.
#include "dsp/artifact.h"
#include "dsp/artifact_fixture.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr double kLoneScale = 1.4826 * 1e-12;

TEST(ArtifactFiles, StereoChecksEachChannelOnItsOwn) {
    const std::vector<double> left = artifact_program(41, 1500);
    const std::vector<double> right = artifact_program(42, 1500);
    std::vector<double> dut_left = left;
    dut_left[1200] -= 0.0625;
    const ArtifactResult r =
        run_artifact(artifact_wav({left, right}), artifact_wav({dut_left, right}));
    ASSERT_EQ(r.channels, 2u);
    EXPECT_FALSE(r.passed);
    EXPECT_FALSE(r.channel[0].passed);
    EXPECT_EQ(r.channel[0].samples_checked, 1500u);
    EXPECT_EQ(r.channel[0].counted_event_count, 1u);
    EXPECT_EQ(r.channel[0].worst_event_start_frame, 1200u);
    EXPECT_EQ(r.channel[0].worst_event_deviation_ratio, 0.0625 / kLoneScale);
    EXPECT_TRUE(r.channel[1].passed);
    EXPECT_EQ(r.channel[1].samples_checked, 1500u);
    EXPECT_EQ(r.channel[1].event_count, 0u);
}

TEST(ArtifactFiles, StereoPassesWhenBothChannelsPass) {
    const WavFile ref = artifact_wav({artifact_program(43, 800), artifact_program(44, 800)});
    const ArtifactResult r = run_artifact(ref, ref);
    EXPECT_TRUE(r.passed);
    EXPECT_TRUE(r.channel[0].passed);
    EXPECT_TRUE(r.channel[1].passed);
}

TEST(ArtifactFiles, LateDutReportsReferenceFrames) {
    // The DUT starts 5 frames late; the click at DUT frame 105 is reference frame 100.
    const std::vector<double> ref = artifact_program(45, 1000);
    std::vector<double> dut(5, 0.0);
    dut.insert(dut.end(), ref.begin(), ref.end());
    dut[105] += 0.125;
    ArtifactSettings s;
    s.offset = 5;
    const ArtifactChannelResult c =
        run_artifact(artifact_wav({ref}), artifact_wav({dut}), s).channel[0];
    EXPECT_EQ(c.samples_checked, 1000u);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.worst_event_start_frame, 100u);
    EXPECT_EQ(c.worst_event_deviation_ratio, 0.125 / kLoneScale);
}

TEST(ArtifactFiles, EarlyDutStartsTheOverlapInsideTheReference) {
    // Offset -3: reference frames 3 to 999 pair with DUT frames 0 to 996.
    const std::vector<double> ref = artifact_program(46, 1000);
    std::vector<double> dut(ref.begin() + 3, ref.end());
    dut[97] += 0.125;
    ArtifactSettings s;
    s.offset = -3;
    const ArtifactChannelResult c =
        run_artifact(artifact_wav({ref}), artifact_wav({dut}), s).channel[0];
    EXPECT_EQ(c.samples_checked, 997u);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.first_event_start_frame, 100u);
    EXPECT_EQ(c.worst_event_start_frame, 100u);
}

TEST(ArtifactFiles, ReferenceWithoutChannelsPasses) {
    WavFile empty;
    empty.sample_rate = 48000;
    empty.format = kWavFormatFloat64;
    const ArtifactResult r = run_artifact(empty, artifact_wav({artifact_program(47, 10)}));
    EXPECT_EQ(r.channels, 0u);
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(r.channel[0].samples_checked, 0u);
}

TEST(ArtifactFiles, DutLackingTheSecondChannelFailsThatChannel) {
    const std::vector<double> left = artifact_program(48, 300);
    const ArtifactResult r =
        run_artifact(artifact_wav({left, artifact_program(49, 300)}), artifact_wav({left}));
    EXPECT_FALSE(r.passed);
    EXPECT_TRUE(r.channel[0].passed);
    EXPECT_EQ(r.channel[0].samples_checked, 300u);
    EXPECT_FALSE(r.channel[1].passed);
    EXPECT_EQ(r.channel[1].samples_checked, 0u);
}

TEST(ArtifactFiles, OnlyTheFirstTwoChannelsAreExamined) {
    const std::vector<double> a = artifact_program(50, 400);
    std::vector<double> broken = a;
    broken[10] = 0.0;
    const ArtifactResult r = run_artifact(artifact_wav({a, a, a}), artifact_wav({a, a, broken}));
    EXPECT_EQ(r.channels, 3u);
    EXPECT_TRUE(r.passed);
}

TEST(ArtifactFiles, MonoLeavesTheSecondChannelUntouched) {
    const WavFile ref = artifact_wav({artifact_program(51, 100)});
    const ArtifactResult r = run_artifact(ref, ref);
    EXPECT_EQ(r.channels, 1u);
    EXPECT_FALSE(r.channel[1].passed);
    EXPECT_EQ(r.channel[1].samples_checked, 0u);
}

} // namespace
