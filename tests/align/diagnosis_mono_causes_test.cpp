// One failure cause per test, each built by editing generated 48 kHz noise and run through the
// alignment, the diagnosis and the explanation with the default settings (+-0.1 s search,
// tolerance 2, threshold 0.9).
#include "diagnosis_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

// Two seconds keep the correlations small (2^18 points) and give half-second stretches.
constexpr std::size_t kTwoSeconds = 2 * kDiagRate;

TEST(DiagnosisMonoCauses, InvertedDutIsNamedWithCorrelationMinusOne) {
    const std::vector<double> ref = diag_noise(11, kTwoSeconds);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(diag_negated(ref)));

    ASSERT_FALSE(run.alignment.aligned);
    const AlignmentDiagnosis& d = run.diagnosis[0];
    EXPECT_TRUE(d.examined);
    EXPECT_EQ(d.cause, AlignmentCause::polarity_inverted);
    EXPECT_LT(d.inverted_corr, -0.9999);
    EXPECT_EQ(d.stretch_len, 0U); // the channel is done before the stretch searches
    EXPECT_EQ(run.text, "alignment failed -- the DUT is polarity-inverted: it matches the "
                        "reference with the sign flipped (correlation -1.0000), so no offset "
                        "lines it up. Invert it and run again.");
}

TEST(DiagnosisMonoCauses, DutQuarterSecondLateIsOutsideTheWindow) {
    const std::vector<double> ref = diag_noise(12, kTwoSeconds);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(diag_delayed(ref, 12000)));

    ASSERT_FALSE(run.alignment.aligned);
    const AlignmentDiagnosis& d = run.diagnosis[0];
    EXPECT_EQ(d.cause, AlignmentCause::outside_search_window);
    EXPECT_EQ(d.wide_lag, 12000);
    EXPECT_GT(d.wide_corr, 0.9999);
    EXPECT_EQ(d.stretch_len, 24000U); // a quarter of 2 s
    EXPECT_EQ(d.last_start, 72000U);
    EXPECT_LT(d.first_corr, 0.5);
    EXPECT_LT(d.last_corr, 0.5);
    EXPECT_EQ(run.text,
              "alignment failed -- the DUT matches the reference but 0.250 s (12000 samples) "
              "late, outside the +-0.100 s search window. Set "
              "alignment.fine_align_max_search_sec to at least 0.4 in sonalyx-defaults.cfg, or "
              "trim both files so they start together.");
}

TEST(DiagnosisMonoCauses, DutQuarterSecondEarlyIsOutsideTheWindow) {
    const std::vector<double> ref = diag_noise(13, kTwoSeconds);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(diag_advanced(ref, 12000)));

    ASSERT_FALSE(run.alignment.aligned);
    EXPECT_EQ(run.diagnosis[0].cause, AlignmentCause::outside_search_window);
    EXPECT_EQ(run.diagnosis[0].wide_lag, -12000);
    EXPECT_EQ(run.text,
              "alignment failed -- the DUT matches the reference but 0.250 s (12000 samples) "
              "early, outside the +-0.100 s search window. Set "
              "alignment.fine_align_max_search_sec to at least 0.4 in sonalyx-defaults.cfg, or "
              "trim both files so they start together.");
}

TEST(DiagnosisMonoCauses, SpliceInTheMiddleLeavesBothStretchesAtOneOffset) {
    const std::vector<double> ref = diag_noise(14, kTwoSeconds);
    const std::vector<double> splice = diag_noise(15, kDiagRate / 2);
    const std::vector<double> dut = diag_delayed(diag_overwritten(ref, 36000, splice), 100);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(dut));

    ASSERT_FALSE(run.alignment.aligned);
    const double whole = run.alignment.channel[0].confidence;
    EXPECT_EQ(run.alignment.channel[0].offset, 100);
    EXPECT_NEAR(whole, 0.75, 0.02);
    const AlignmentDiagnosis& d = run.diagnosis[0];
    EXPECT_EQ(d.cause, AlignmentCause::middle_differs);
    EXPECT_EQ(d.first_lag, 100);
    EXPECT_EQ(d.last_lag, 100);
    EXPECT_EQ(d.stretch_len, 24000U);
    EXPECT_EQ(run.text, "alignment failed -- the first and the last 0.5 s both line up (offset "
                        "+100 samples) but the files as a whole do not (correlation " +
                            diag_format("%.2f", whole) +
                            ", needs 0.90): a stretch in between differs, for example a splice, "
                            "a long dropout or inserted audio.");
}

TEST(DiagnosisMonoCauses, DifferentEndingLinesUpOnlyAtTheStart) {
    const std::vector<double> ref = diag_noise(16, kTwoSeconds);
    const std::vector<double> ending = diag_noise(17, kTwoSeconds / 2);
    const std::vector<double> dut =
        diag_delayed(diag_overwritten(ref, kTwoSeconds / 2, ending), 100);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(dut));

    ASSERT_FALSE(run.alignment.aligned);
    const AlignmentDiagnosis& d = run.diagnosis[0];
    EXPECT_EQ(d.cause, AlignmentCause::only_first_stretch);
    EXPECT_EQ(d.first_lag, 100);
    EXPECT_GT(d.first_corr, 0.9999);
    EXPECT_LT(std::fabs(d.last_corr), 0.1);
    EXPECT_EQ(run.text, "alignment failed -- the first 0.5 s lines up (offset +100 samples) but "
                        "the last 0.5 s does not (correlation " +
                            diag_format("%.2f", d.last_corr) +
                            "). Something changes partway through: for example a splice, a long "
                            "dropout, a slip larger than the search window, or a different or "
                            "truncated ending.");
}

TEST(DiagnosisMonoCauses, DifferentBeginningLinesUpOnlyAtTheEnd) {
    // The reference runs 40 samples longer so that the early DUT still lasts two seconds.
    const std::vector<double> ref = diag_noise(18, kTwoSeconds + 40);
    const std::vector<double> beginning = diag_noise(19, kTwoSeconds / 2);
    const std::vector<double> dut = diag_advanced(diag_overwritten(ref, 0, beginning), 40);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(dut));

    ASSERT_FALSE(run.alignment.aligned);
    const AlignmentDiagnosis& d = run.diagnosis[0];
    EXPECT_EQ(d.cause, AlignmentCause::only_last_stretch);
    EXPECT_EQ(d.last_lag, -40);
    EXPECT_EQ(d.stretch_len, 24000U);
    EXPECT_EQ(d.last_start, 72000U);
    EXPECT_LT(std::fabs(d.first_corr), 0.1);
    EXPECT_EQ(run.text, "alignment failed -- the last 0.5 s lines up (offset -40 samples) but "
                        "the first 0.5 s does not (correlation " +
                            diag_format("%.2f", d.first_corr) +
                            "). The beginning differs, or the content changes partway through.");
}

TEST(DiagnosisMonoCauses, UnrelatedAudioHasNoConsistentMatch) {
    const std::vector<double> ref = diag_noise(20, kTwoSeconds);
    const std::vector<double> dut = diag_noise(21, kTwoSeconds);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(dut));

    ASSERT_FALSE(run.alignment.aligned);
    const double whole = run.alignment.channel[0].confidence;
    const AlignmentDiagnosis& d = run.diagnosis[0];
    EXPECT_TRUE(d.examined);
    EXPECT_EQ(d.cause, AlignmentCause::no_match);
    EXPECT_LT(std::fabs(d.first_corr), 0.5);
    EXPECT_LT(std::fabs(d.last_corr), 0.5);
    EXPECT_NE(d.wide_corr, 0.0); // the wide search ran
    EXPECT_LT(d.wide_corr, 0.1);
    EXPECT_EQ(run.text, std::string(kDiagHead) + "no consistent match (correlation " +
                            diag_format("%.4f", whole) + ", needs 0.9000)" + kNoMatchTail);
}

} // namespace
