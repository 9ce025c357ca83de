// A 60-second file with 48 samples inserted half-way: the first second lines up at 0 and the last
// second (from 59 s) at +48, which reads as about 17 ppm. Mono keeps the 2^23-point
// correlations to two (alignment and inverted search).
#include "diagnosis_fixture.h"

#include <gtest/gtest.h>

namespace {

TEST(DiagnosisDrift, InsertedSamplesHalfWayGiveCauseThreeWithPpm) {
    constexpr std::size_t kMinute = 60 * kDiagRate;
    const std::vector<double> ref = diag_noise(40, kMinute);
    const std::vector<double> dut = diag_inserted(ref, kMinute / 2, diag_noise(41, 48));
    const DiagRun run = diag_run(diag_mono(ref), diag_mono(dut));

    ASSERT_FALSE(run.alignment.aligned);
    const AlignmentDiagnosis& d = run.diagnosis[0];
    EXPECT_EQ(d.cause, AlignmentCause::drift);
    EXPECT_EQ(d.stretch_len, 48000U);
    EXPECT_EQ(d.last_start, 2832000U); // 59 s
    EXPECT_EQ(d.first_lag, 0);
    EXPECT_EQ(d.last_lag, 48);
    EXPECT_GT(d.first_corr, 0.9999);
    EXPECT_GT(d.last_corr, 0.9999);
    EXPECT_EQ(d.wide_corr, 0.0); // the stretches explained it; no wide search
    // 48 * 1e6 / 2832000 = 16.95 ppm.
    EXPECT_EQ(run.text,
              "alignment failed -- the start of the files lines up (offset +0 samples) but the "
              "end lines up 48 samples later (offset +48, 59.0 s further on). That fits samples "
              "skipped or repeated in between, or a clock-speed difference of about 17 ppm. One "
              "fixed offset cannot line up the whole file, so no comparison was made.");
}

} // namespace
