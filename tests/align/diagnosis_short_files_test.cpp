// Files shorter than about one second have no stretches: only the inverted and the wide search
// can name a cause, and the wide search needs half the common length to exceed the window.
#include "diagnosis_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr std::size_t kHalfSecond = kDiagRate / 2;

void expect_no_stretches(const AlignmentDiagnosis& d) {
    EXPECT_EQ(d.stretch_len, 0U);
    EXPECT_EQ(d.last_start, 0U);
    EXPECT_EQ(d.first_corr, 0.0);
    EXPECT_EQ(d.last_corr, 0.0);
    EXPECT_EQ(d.first_lag, 0);
    EXPECT_EQ(d.last_lag, 0);
}

TEST(DiagnosisShortFiles, JustUnderASecondHasNoStretches) {
    // n / 4 = 11999 < rate / 4 = 12000.
    const std::vector<double> ref = diag_noise(30, kDiagRate - 4);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(diag_noise(31, kDiagRate - 4)));

    EXPECT_EQ(run.diagnosis[0].cause, AlignmentCause::no_match);
    expect_no_stretches(run.diagnosis[0]);
}

TEST(DiagnosisShortFiles, ExactlyASecondHasQuarterSecondStretches) {
    const std::vector<double> ref = diag_noise(32, kDiagRate);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(diag_noise(33, kDiagRate)));

    EXPECT_EQ(run.diagnosis[0].stretch_len, 12000U);
    EXPECT_EQ(run.diagnosis[0].last_start, 36000U);
}

TEST(DiagnosisShortFiles, WideSearchFindsALateDut) {
    const std::vector<double> ref = diag_noise(34, kHalfSecond);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(diag_delayed(ref, 6000)));

    ASSERT_FALSE(run.alignment.aligned);
    const AlignmentDiagnosis& d = run.diagnosis[0];
    EXPECT_EQ(d.cause, AlignmentCause::outside_search_window);
    EXPECT_EQ(d.wide_lag, 6000);
    expect_no_stretches(d);
    // 0.125 s: ceil(1.25 + 1) / 10 = 0.3.
    EXPECT_EQ(run.text,
              "alignment failed -- the DUT matches the reference but 0.125 s (6000 samples) "
              "late, outside the +-0.100 s search window. Set "
              "alignment.fine_align_max_search_sec to at least 0.3 in sonalyx-defaults.cfg, or "
              "trim both files so they start together.");
}

TEST(DiagnosisShortFiles, InvertedSearchStillNamesTheInversion) {
    const std::vector<double> ref = diag_noise(35, kHalfSecond);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(diag_negated(ref)));

    EXPECT_EQ(run.diagnosis[0].cause, AlignmentCause::polarity_inverted);
    expect_no_stretches(run.diagnosis[0]);
    EXPECT_EQ(run.text, "alignment failed -- the DUT is polarity-inverted: it matches the "
                        "reference with the sign flipped (correlation -1.0000), so no offset "
                        "lines it up. Invert it and run again.");
}

TEST(DiagnosisShortFiles, NoWideSearchWhenHalfTheLengthFitsTheWindow) {
    // n / 2 = 4800 is not above max_lag 4800.
    const std::vector<double> ref = diag_noise(36, 9600);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(diag_noise(37, 9600)));

    ASSERT_FALSE(run.alignment.aligned);
    const AlignmentDiagnosis& d = run.diagnosis[0];
    EXPECT_TRUE(d.examined);
    EXPECT_EQ(d.cause, AlignmentCause::no_match);
    EXPECT_NE(d.inverted_corr, 0.0);
    EXPECT_EQ(d.wide_lag, 0);
    EXPECT_EQ(d.wide_corr, 0.0);
    expect_no_stretches(d);
}

TEST(DiagnosisShortFiles, WideSearchRunsOneSampleLater) {
    const std::vector<double> ref = diag_noise(38, 9602);
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(diag_noise(39, 9602)));

    EXPECT_NE(run.diagnosis[0].wide_corr, 0.0);
}

} // namespace
