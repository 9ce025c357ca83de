// Channels that are silent in the reference or the DUT: the silence level, borrowing the
// partner's lag in a stereo pair, and the zero offset when there is nothing to borrow.
#include "align/alignment.h"
#include "alignment_signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

constexpr std::size_t kFrames = 48000;
constexpr std::size_t kMaxLag = 4800;
constexpr std::int64_t kTolerance = 2;
constexpr double kThreshold = 0.9;

AlignmentResult align(const WavFile& ref, const WavFile& dut, double silence_db = -70.0) {
    return align_channels(ref, dut, kMaxLag, kTolerance, kThreshold, silence_db);
}

const std::vector<double> kSilence(kFrames, 0.0);

void expect_silent_zero(const ChannelAlignment& channel) {
    EXPECT_EQ(channel.state, AlignmentState::silent_zero);
    EXPECT_EQ(channel.offset, 0);
    EXPECT_EQ(channel.confidence, 0.0);
    EXPECT_TRUE(channel.ok);
}

TEST(AlignSilence, RightChannelSilentInTheDutBorrowsTheLeftLag) {
    const DelayedPair left = delayed_pair(Material::music, 1, kFrames, 480);
    const std::vector<double> right = make_material(Material::noise, 2, kFrames);
    const AlignmentResult result =
        align(make_wav({left.ref, right}), make_wav({left.dut, kSilence}));
    const ChannelAlignment& borrowed = result.channel[1];
    EXPECT_EQ(borrowed.state, AlignmentState::silent_borrowed);
    EXPECT_EQ(borrowed.offset, 480);
    EXPECT_EQ(borrowed.confidence, result.channel[0].confidence);
    EXPECT_NEAR(borrowed.confidence, 1.0, 1e-9);
    EXPECT_TRUE(borrowed.ok);
    EXPECT_FALSE(borrowed.ref_silent);
    EXPECT_TRUE(borrowed.dut_silent);
    EXPECT_EQ(result.channel[0].state, AlignmentState::measured);
    EXPECT_EQ(result.disagreement, 0);
    EXPECT_EQ(result.file_offset, 480);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignSilence, RightChannelSilentInTheReferenceBorrowsTheLeftLag) {
    const DelayedPair left = delayed_pair(Material::transients, 3, kFrames, -1);
    const std::vector<double> right = make_material(Material::noise, 4, kFrames);
    const AlignmentResult result =
        align(make_wav({left.ref, kSilence}), make_wav({left.dut, right}));
    EXPECT_EQ(result.channel[1].state, AlignmentState::silent_borrowed);
    EXPECT_EQ(result.channel[1].offset, -1);
    EXPECT_TRUE(result.channel[1].ref_silent);
    EXPECT_FALSE(result.channel[1].dut_silent);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignSilence, SilentLeftChannelBorrowsAndSetsTheFileOffset) {
    const DelayedPair right = delayed_pair(Material::noise, 5, kFrames, -4800);
    const AlignmentResult result =
        align(make_wav({kSilence, right.ref}), make_wav({kSilence, right.dut}));
    EXPECT_EQ(result.channel[0].state, AlignmentState::silent_borrowed);
    EXPECT_EQ(result.channel[0].offset, -4800);
    EXPECT_EQ(result.channel[1].state, AlignmentState::measured);
    EXPECT_EQ(result.file_offset, -4800);
    EXPECT_EQ(result.disagreement, 0);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignSilence, BothChannelsSilentInOneFileAreBothZero) {
    const std::vector<double> left = make_material(Material::music, 6, kFrames);
    const std::vector<double> right = make_material(Material::noise, 7, kFrames);
    const AlignmentResult result = align(make_wav({left, right}), make_wav({kSilence, kSilence}));
    expect_silent_zero(result.channel[0]);
    expect_silent_zero(result.channel[1]);
    EXPECT_TRUE(result.channel[0].dut_silent);
    EXPECT_FALSE(result.channel[0].ref_silent);
    EXPECT_EQ(result.file_offset, 0);
    EXPECT_EQ(result.disagreement, 0);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignSilence, MonoSilentChannelHasNothingToBorrow) {
    const std::vector<double> ref = make_material(Material::music, 8, kFrames);
    const AlignmentResult result = align(make_wav({ref}), make_wav({kSilence}));
    expect_silent_zero(result.channel[0]);
    EXPECT_EQ(result.file_offset, 0);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignSilence, PartnerBelowTheThresholdLendsNothing) {
    // Left: unrelated noise, so its measurement is not confident; right: silent in the DUT.
    const std::vector<double> left_ref = make_material(Material::noise, 9, kFrames);
    const std::vector<double> left_dut = make_material(Material::noise, 10, kFrames);
    const std::vector<double> right = make_material(Material::music, 11, kFrames);
    const AlignmentResult result =
        align(make_wav({left_ref, right}), make_wav({left_dut, kSilence}));
    EXPECT_EQ(result.channel[0].state, AlignmentState::measured);
    EXPECT_FALSE(result.channel[0].ok);
    expect_silent_zero(result.channel[1]);
    EXPECT_EQ(result.disagreement, std::llabs(result.channel[0].offset));
    EXPECT_FALSE(result.aligned);
}

TEST(AlignSilence, PartnerSilentItselfLendsNothing) {
    const std::vector<double> left = make_material(Material::music, 12, kFrames);
    const std::vector<double> right = make_material(Material::noise, 13, kFrames);
    // Left silent in the reference only, right silent in the DUT only.
    const AlignmentResult result = align(make_wav({kSilence, right}), make_wav({left, kSilence}));
    expect_silent_zero(result.channel[0]);
    expect_silent_zero(result.channel[1]);
    EXPECT_TRUE(result.channel[0].ref_silent);
    EXPECT_FALSE(result.channel[0].dut_silent);
    EXPECT_FALSE(result.channel[1].ref_silent);
    EXPECT_TRUE(result.channel[1].dut_silent);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignSilence, RmsEqualToTheLevelCountsAsSilent) {
    // At 0 dB the level is exactly 1.0, and a constant 1.0 has an RMS of exactly 1.0.
    const std::vector<double> at_level(1000, 1.0);
    const std::vector<double> above_level(1000, 1.000001);
    const AlignmentResult at = align(make_wav({at_level}), make_wav({above_level}), 0.0);
    EXPECT_TRUE(at.channel[0].ref_silent);
    EXPECT_FALSE(at.channel[0].dut_silent);
    EXPECT_EQ(at.channel[0].state, AlignmentState::silent_zero);
}

TEST(AlignSilence, QuietButAudibleChannelIsMeasured) {
    // Noise in [-0.5, 0.5) scaled by 1e-3 has an RMS near 2.9e-4, just above -80 dB (1e-4) and
    // just below -70 dB (3.16e-4).
    const DelayedPair pair = delayed_pair(Material::noise, 14, kFrames, 12);
    std::vector<double> ref = pair.ref;
    std::vector<double> dut = pair.dut;
    for (std::size_t i = 0; i < kFrames; ++i) {
        ref[i] *= 1e-3;
        dut[i] *= 1e-3;
    }
    const AlignmentResult measured = align(make_wav({ref}), make_wav({dut}), -80.0);
    EXPECT_EQ(measured.channel[0].state, AlignmentState::measured);
    EXPECT_EQ(measured.channel[0].offset, 12);
    const AlignmentResult silent = align(make_wav({ref}), make_wav({dut}), -70.0);
    EXPECT_EQ(silent.channel[0].state, AlignmentState::silent_zero);
    EXPECT_TRUE(silent.channel[0].ref_silent);
    EXPECT_TRUE(silent.channel[0].dut_silent);
}

} // namespace
