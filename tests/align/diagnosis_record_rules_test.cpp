// The diagnosis follows the alignment record it is given: which channels it examines, and the
// inverted search only wins over a weaker whole-file correlation.
#include "diagnosis_fixture.h"

#include <gtest/gtest.h>

namespace {

constexpr std::size_t kHalfSecond = kDiagRate / 2;

AlignmentResult failed_record(std::uint64_t channels, double confidence) {
    AlignmentResult alignment;
    alignment.channels = channels;
    for (ChannelAlignment& channel : alignment.channel) {
        channel.ok = false;
        channel.confidence = confidence;
        channel.state = AlignmentState::measured;
    }
    return alignment;
}

ChannelDiagnoses diagnose(const WavFile& ref, const WavFile& dut, const AlignmentResult& record) {
    return diagnose_alignment(ref, dut, record, kDiagMaxLag, kDiagThreshold);
}

TEST(DiagnosisRecordRules, InversionMustBeatTheWholeFileCorrelation) {
    const std::vector<double> ref = diag_noise(70, kHalfSecond);
    const WavFile ref_file = diag_mono(ref);
    const WavFile dut_file = diag_mono(diag_negated(ref));

    const ChannelDiagnoses weaker = diagnose(ref_file, dut_file, failed_record(1, 0.2));
    EXPECT_EQ(weaker[0].cause, AlignmentCause::polarity_inverted);

    // A record claiming a whole-file correlation above 1 is not beaten by the flipped -1.
    const ChannelDiagnoses stronger = diagnose(ref_file, dut_file, failed_record(1, 1.01));
    EXPECT_TRUE(stronger[0].examined);
    EXPECT_LT(stronger[0].inverted_corr, -0.9999);
    EXPECT_EQ(stronger[0].cause, AlignmentCause::no_match);
    EXPECT_NE(stronger[0].wide_corr, 0.0); // it went on to the wide search
}

TEST(DiagnosisRecordRules, OnlyMeasuredChannelsThatFailedAreExamined) {
    const std::vector<double> noise = diag_noise(71, kHalfSecond);
    const WavFile ref = diag_stereo(noise, noise);
    const WavFile dut = diag_stereo(diag_negated(noise), diag_negated(noise));

    AlignmentResult record = failed_record(2, 0.1);
    record.channel[0].ok = true;
    record.channel[1].state = AlignmentState::silent_borrowed;
    const ChannelDiagnoses skipped = diagnose(ref, dut, record);
    EXPECT_FALSE(skipped[0].examined);
    EXPECT_FALSE(skipped[1].examined);
    EXPECT_EQ(skipped[0].inverted_corr, 0.0);
    EXPECT_EQ(skipped[1].inverted_corr, 0.0);

    const ChannelDiagnoses both = diagnose(ref, dut, failed_record(2, 0.1));
    EXPECT_EQ(both[0].cause, AlignmentCause::polarity_inverted);
    EXPECT_EQ(both[1].cause, AlignmentCause::polarity_inverted);
}

TEST(DiagnosisRecordRules, ChannelCountComesFromTheRecord) {
    const std::vector<double> noise = diag_noise(72, kHalfSecond);
    const WavFile ref = diag_stereo(noise, noise);
    const WavFile dut = diag_stereo(diag_negated(noise), diag_negated(noise));

    const ChannelDiagnoses first_only = diagnose(ref, dut, failed_record(1, 0.1));
    EXPECT_TRUE(first_only[0].examined);
    EXPECT_FALSE(first_only[1].examined);
}

} // namespace
