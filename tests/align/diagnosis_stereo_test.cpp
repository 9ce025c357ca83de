// Stereo explanations from generated 48 kHz noise: channels that disagree, one sentence for two
// channels that fail alike, a silent partner, and a sentence per channel when they fail apart.
#include "diagnosis_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr std::size_t kOneSecond = kDiagRate;
constexpr std::size_t kTwoSeconds = 2 * kDiagRate;

TEST(DiagnosisStereo, DisagreementByToleranceAndOne) {
    const std::vector<double> left = diag_noise(50, kOneSecond);
    const std::vector<double> right = diag_noise(51, kOneSecond);
    // Right is 13 samples late, left 10: three apart, one more than the tolerance of 2. The
    // shorter left channel is padded at the end so both DUT channels are equally long.
    std::vector<double> dut_left = diag_delayed(left, 10);
    dut_left.resize(kOneSecond + 13, 0.0);
    const DiagRun run =
        diag_run(diag_stereo(left, right), diag_stereo(dut_left, diag_delayed(right, 13)));

    ASSERT_FALSE(run.alignment.aligned);
    EXPECT_TRUE(run.alignment.channel[0].ok);
    EXPECT_TRUE(run.alignment.channel[1].ok);
    EXPECT_EQ(run.alignment.disagreement, 3);
    EXPECT_FALSE(run.diagnosis[0].examined);
    EXPECT_FALSE(run.diagnosis[1].examined);
    EXPECT_EQ(run.text, "alignment failed -- the channels disagree by 3 samples (left lines up at "
                        "+10, right at +13), more than the 2 allowed. If the DUT really delays "
                        "one channel, raise alignment.fine_align_agreement_tolerance_samples in "
                        "sonalyx-defaults.cfg; otherwise check the capture.");
}

TEST(DiagnosisStereo, BothChannelsQuarterSecondLateGiveOneSentence) {
    const std::vector<double> left = diag_noise(52, kTwoSeconds);
    const std::vector<double> right = diag_noise(53, kTwoSeconds);
    const DiagRun run = diag_run(diag_stereo(left, right), diag_stereo(diag_delayed(left, 12000),
                                                                       diag_delayed(right, 12000)));

    ASSERT_FALSE(run.alignment.aligned);
    for (const AlignmentDiagnosis& d : run.diagnosis) {
        EXPECT_TRUE(d.examined);
        EXPECT_EQ(d.cause, AlignmentCause::outside_search_window);
        EXPECT_EQ(d.wide_lag, 12000);
    }
    EXPECT_EQ(run.text,
              "alignment failed -- both channels: the DUT matches the reference but 0.250 s "
              "(12000 samples) late, outside the +-0.100 s search window. Set "
              "alignment.fine_align_max_search_sec to at least 0.4 in sonalyx-defaults.cfg, or "
              "trim both files so they start together.");
}

TEST(DiagnosisStereo, UnmatchedLeftWithRightSilentInTheDut) {
    const std::vector<double> left = diag_noise(54, kOneSecond);
    const std::vector<double> right = diag_noise(55, kOneSecond);
    const std::vector<double> silence(kOneSecond, 0.0);
    const DiagRun run =
        diag_run(diag_stereo(left, right), diag_stereo(diag_noise(56, kOneSecond), silence));

    ASSERT_FALSE(run.alignment.aligned);
    EXPECT_EQ(run.alignment.channel[1].state, AlignmentState::silent_zero);
    EXPECT_TRUE(run.diagnosis[0].examined);
    EXPECT_FALSE(run.diagnosis[1].examined);
    EXPECT_EQ(run.diagnosis[0].cause, AlignmentCause::no_match);
    EXPECT_EQ(run.text, std::string(kDiagHead) + "left channel: no consistent match (correlation " +
                            diag_format("%.4f", run.alignment.channel[0].confidence) +
                            ", needs 0.9000)" + kNoMatchTail + kRightSilent);
}

TEST(DiagnosisStereo, UnmatchedRightWithLeftSilentInTheReference) {
    const std::vector<double> silence(kOneSecond, 0.0);
    const std::vector<double> right = diag_noise(57, kOneSecond);
    const DiagRun run =
        diag_run(diag_stereo(silence, right),
                 diag_stereo(diag_noise(58, kOneSecond), diag_noise(59, kOneSecond)));

    ASSERT_FALSE(run.alignment.aligned);
    EXPECT_EQ(run.alignment.channel[0].state, AlignmentState::silent_zero);
    EXPECT_FALSE(run.diagnosis[0].examined);
    EXPECT_EQ(run.diagnosis[1].cause, AlignmentCause::no_match);
    EXPECT_EQ(run.text, std::string(kDiagHead) +
                            "right channel: no consistent match (correlation " +
                            diag_format("%.4f", run.alignment.channel[1].confidence) +
                            ", needs 0.9000)" + kNoMatchTail + kLeftSilent);
}

TEST(DiagnosisStereo, DifferentCausesGetOneSentenceEach) {
    const std::vector<double> left = diag_noise(60, kOneSecond);
    const std::vector<double> right = diag_noise(61, kOneSecond);
    const DiagRun run = diag_run(diag_stereo(left, right),
                                 diag_stereo(diag_negated(left), diag_noise(62, kOneSecond)));

    ASSERT_FALSE(run.alignment.aligned);
    EXPECT_EQ(run.diagnosis[0].cause, AlignmentCause::polarity_inverted);
    EXPECT_EQ(run.diagnosis[1].cause, AlignmentCause::no_match);
    EXPECT_EQ(run.text,
              std::string(kDiagHead) +
                  "left channel: the DUT is polarity-inverted: it matches the reference with the "
                  "sign flipped (correlation -1.0000), so no offset lines it up. Invert it and "
                  "run again. right channel: no consistent match (correlation " +
                  diag_format("%.4f", run.alignment.channel[1].confidence) + ", needs 0.9000)" +
                  kNoMatchTail);
}

TEST(DiagnosisStereo, BothUnrelatedGiveTheJointNoMatchSentence) {
    const DiagRun run =
        diag_run(diag_stereo(diag_noise(63, kOneSecond), diag_noise(64, kOneSecond)),
                 diag_stereo(diag_noise(65, kOneSecond), diag_noise(66, kOneSecond)));

    ASSERT_FALSE(run.alignment.aligned);
    EXPECT_EQ(run.diagnosis[0].cause, AlignmentCause::no_match);
    EXPECT_EQ(run.diagnosis[1].cause, AlignmentCause::no_match);
    EXPECT_EQ(run.text, std::string(kDiagHead) + "no consistent match (correlation " +
                            diag_format("%.4f", run.alignment.channel[0].confidence) +
                            " on the left channel, " +
                            diag_format("%.4f", run.alignment.channel[1].confidence) +
                            " on the right, needs 0.9000)" + kNoMatchTail);
}

} // namespace
