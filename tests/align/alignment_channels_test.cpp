// Whole-file alignment of measured channels: delays per channel, the file offset, polarity
// inversion, the confidence threshold, the agreement tolerance and degenerate files.
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
constexpr double kSilenceDb = -70.0;

AlignmentResult align(const WavFile& ref, const WavFile& dut, std::size_t max_lag = kMaxLag,
                      std::int64_t tolerance = kTolerance, double threshold = kThreshold) {
    return align_channels(ref, dut, max_lag, tolerance, threshold, kSilenceDb);
}

void expect_measured(const ChannelAlignment& channel, std::int64_t offset, bool ok) {
    EXPECT_EQ(channel.state, AlignmentState::measured);
    EXPECT_EQ(channel.offset, offset);
    EXPECT_EQ(channel.ok, ok);
    EXPECT_FALSE(channel.ref_silent);
    EXPECT_FALSE(channel.dut_silent);
}

TEST(AlignChannels, StereoDelayWithLeadingZerosIsFoundOnEveryChannel) {
    const std::vector<double> left = make_material(Material::music, 1, kFrames);
    const std::vector<double> right = make_material(Material::noise, 2, kFrames);
    const WavFile ref = make_wav({left, right});
    const WavFile dut = make_wav({delayed_with_zeros(left, 480), delayed_with_zeros(right, 480)});
    const AlignmentResult result = align(ref, dut);
    EXPECT_EQ(result.channels, 2u);
    for (const ChannelAlignment& channel : result.channel) {
        expect_measured(channel, 480, true);
        EXPECT_NEAR(channel.confidence, 1.0, 1e-9);
    }
    EXPECT_EQ(result.file_offset, 480);
    EXPECT_EQ(result.disagreement, 0);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignChannels, EveryMaterialAndDelayIsFoundInMono) {
    for (Material material : {Material::noise, Material::music, Material::transients}) {
        for (std::int64_t delay : {-4800, -480, -1, 0, 1, 480, 4800}) {
            const DelayedPair pair = delayed_pair(material, 5, kFrames, delay);
            const AlignmentResult result = align(make_wav({pair.ref}), make_wav({pair.dut}));
            expect_measured(result.channel[0], delay, true);
            EXPECT_EQ(result.file_offset, delay) << material_name(material);
            EXPECT_EQ(result.disagreement, 0);
            EXPECT_TRUE(result.aligned);
            // The second channel of a mono result stays zeroed.
            EXPECT_EQ(result.channel[1].offset, 0);
            EXPECT_FALSE(result.channel[1].ok);
        }
    }
}

TEST(AlignChannels, StereoChannelsWithDifferentContentShareTheDelay) {
    const DelayedPair left = delayed_pair(Material::music, 6, kFrames, -480);
    const DelayedPair right = delayed_pair(Material::transients, 7, kFrames, -480);
    const AlignmentResult result =
        align(make_wav({left.ref, right.ref}), make_wav({left.dut, right.dut}));
    expect_measured(result.channel[0], -480, true);
    expect_measured(result.channel[1], -480, true);
    EXPECT_EQ(result.file_offset, -480);
    EXPECT_EQ(result.disagreement, 0);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignChannels, FileOffsetIsChannelZerosOffsetNotAnAverage) {
    const DelayedPair left = delayed_pair(Material::noise, 8, kFrames, 100);
    const DelayedPair right = delayed_pair(Material::noise, 9, kFrames, 300);
    const AlignmentResult result =
        align(make_wav({left.ref, right.ref}), make_wav({left.dut, right.dut}));
    EXPECT_EQ(result.channel[0].offset, 100);
    EXPECT_EQ(result.channel[1].offset, 300);
    EXPECT_EQ(result.file_offset, 100);
    EXPECT_EQ(result.disagreement, 200);
    EXPECT_FALSE(result.aligned);
}

TEST(AlignChannels, DisagreementOfExactlyTheToleranceIsAligned) {
    for (const auto& delays : {std::pair<std::int64_t, std::int64_t>{480, 482}, {482, 480}}) {
        const DelayedPair left = delayed_pair(Material::music, 10, kFrames, delays.first);
        const DelayedPair right = delayed_pair(Material::noise, 11, kFrames, delays.second);
        const WavFile ref = make_wav({left.ref, right.ref});
        const WavFile dut = make_wav({left.dut, right.dut});
        const AlignmentResult at_tolerance = align(ref, dut, kMaxLag, 2);
        EXPECT_EQ(at_tolerance.disagreement, 2);
        EXPECT_EQ(at_tolerance.file_offset, delays.first);
        EXPECT_TRUE(at_tolerance.aligned);
        const AlignmentResult beyond = align(ref, dut, kMaxLag, 1);
        EXPECT_EQ(beyond.disagreement, 2);
        EXPECT_TRUE(beyond.channel[0].ok);
        EXPECT_TRUE(beyond.channel[1].ok);
        EXPECT_FALSE(beyond.aligned);
    }
}

TEST(AlignChannels, ConfidenceEqualToTheThresholdIsOk) {
    const DelayedPair pair = delayed_pair(Material::noise, 12, 5000, 30);
    std::vector<double> dut = pair.dut;
    const std::vector<double> hum = make_material(Material::noise, 13, dut.size());
    for (std::size_t i = 0; i < dut.size(); ++i) {
        dut[i] += 0.5 * hum[i];
    }
    const WavFile ref_file = make_wav({pair.ref});
    const WavFile dut_file = make_wav({dut});
    const double corr = align(ref_file, dut_file).channel[0].confidence;
    ASSERT_GT(corr, 0.5);
    ASSERT_LT(corr, 0.99);
    const AlignmentResult at = align(ref_file, dut_file, kMaxLag, kTolerance, corr);
    EXPECT_TRUE(at.channel[0].ok);
    EXPECT_TRUE(at.aligned);
    const AlignmentResult above =
        align(ref_file, dut_file, kMaxLag, kTolerance, std::nextafter(corr, 2.0));
    EXPECT_FALSE(above.channel[0].ok);
    EXPECT_EQ(above.channel[0].offset, 30);
    EXPECT_FALSE(above.aligned);
}

TEST(AlignChannels, InvertedPolarityIsNotAligned) {
    const DelayedPair pair = delayed_pair(Material::music, 14, kFrames, 0);
    const AlignmentResult result = align(make_wav({pair.ref}), make_wav({negated(pair.dut)}));
    EXPECT_EQ(result.channel[0].state, AlignmentState::measured);
    EXPECT_FALSE(result.channel[0].ok);
    EXPECT_LT(result.channel[0].confidence, 0.5);
    EXPECT_FALSE(result.aligned);
    // At the true lag the match is the exact negative, which only the sign-flipped search reports.
    const CorrelationPeak inverted = cross_correlate(pair.ref, negated(pair.dut), kMaxLag, true);
    EXPECT_EQ(inverted.lag, 0);
    EXPECT_NEAR(inverted.corr, -1.0, 1e-9);
}

TEST(AlignChannels, DelayBeyondTheWindowIsNotAligned) {
    const DelayedPair left = delayed_pair(Material::noise, 15, kFrames, 5500);
    const DelayedPair right = delayed_pair(Material::noise, 16, kFrames, 5500);
    const AlignmentResult result =
        align(make_wav({left.ref, right.ref}), make_wav({left.dut, right.dut}));
    for (const ChannelAlignment& channel : result.channel) {
        EXPECT_EQ(channel.state, AlignmentState::measured);
        EXPECT_LE(std::llabs(channel.offset), static_cast<long long>(kMaxLag));
        EXPECT_LT(channel.confidence, 0.1);
        EXPECT_FALSE(channel.ok);
    }
    EXPECT_FALSE(result.aligned);
}

TEST(AlignChannels, EqualCorrelationAtTwoLagsGoesToTheLargerDutLag) {
    const AlignmentResult result = align(make_wav({{1.0}}), make_wav({{1.0, 1.0}}), 1);
    expect_measured(result.channel[0], 1, true);
    EXPECT_DOUBLE_EQ(result.channel[0].confidence, 1.0);
    EXPECT_EQ(result.file_offset, 1);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignChannels, NoChannelsIsNotAligned) {
    const AlignmentResult result = align(WavFile{}, WavFile{});
    EXPECT_EQ(result.channels, 0u);
    EXPECT_EQ(result.file_offset, 0);
    EXPECT_EQ(result.disagreement, 0);
    EXPECT_FALSE(result.aligned);
    EXPECT_FALSE(result.channel[0].ok);
}

TEST(AlignChannels, ZeroLengthFilesAreNotSilentAndFailToAlign) {
    for (std::size_t channels : {1u, 2u}) {
        const std::vector<std::vector<double>> empty(channels);
        const AlignmentResult result = align(make_wav(empty), make_wav(empty));
        EXPECT_EQ(result.channels, channels);
        for (std::size_t k = 0; k < channels; ++k) {
            expect_measured(result.channel[k], 0, false);
            EXPECT_EQ(result.channel[k].confidence, 0.0);
        }
        EXPECT_EQ(result.file_offset, 0);
        EXPECT_FALSE(result.aligned);
    }
}

TEST(AlignChannels, OneFrameAgainstAnEmptyDutFailsToAlign) {
    const AlignmentResult result =
        align(make_wav({{0.5}}), make_wav(std::vector<std::vector<double>>(1)));
    expect_measured(result.channel[0], 0, false);
    EXPECT_FALSE(result.channel[0].ref_silent);
    EXPECT_FALSE(result.channel[0].dut_silent);
    EXPECT_FALSE(result.aligned);
}

TEST(AlignChannels, FilesShorterThanTheWindowStillAlign) {
    const DelayedPair left = delayed_pair(Material::noise, 17, 300, -7);
    const DelayedPair right = delayed_pair(Material::noise, 18, 300, -7);
    const AlignmentResult result =
        align(make_wav({left.ref, right.ref}), make_wav({left.dut, right.dut}));
    expect_measured(result.channel[0], -7, true);
    expect_measured(result.channel[1], -7, true);
    EXPECT_TRUE(result.aligned);
}

TEST(AlignChannels, DutOfADifferentLengthAligns) {
    const DelayedPair pair = delayed_pair(Material::music, 19, kFrames, 960);
    const std::vector<double> dut(pair.dut.begin(), pair.dut.begin() + 30000);
    const AlignmentResult result = align(make_wav({pair.ref}), make_wav({dut}));
    expect_measured(result.channel[0], 960, true);
    EXPECT_NEAR(result.channel[0].confidence, 1.0, 1e-9);
}

TEST(AlignmentStateName, GivesTheThreeTexts) {
    EXPECT_STREQ(alignment_state_name(AlignmentState::measured), "measured");
    EXPECT_STREQ(alignment_state_name(AlignmentState::silent_borrowed), "silent_borrowed");
    EXPECT_STREQ(alignment_state_name(AlignmentState::silent_zero), "silent_zero");
    EXPECT_STREQ(alignment_state_name(static_cast<AlignmentState>(7)), "measured");
}

} // namespace
