// The loudness comparison: deltas and verdict from two measures (the tolerance slack, the signed
// true-peak test, the ceiling switch), and loudness_compare on whole files: silence, a DUT 1 dB
// quieter or louder, DUT offsets and files that do not overlap.
#include "dsp/loudness.h"
#include "dsp/loudness_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

LoudnessMeasure measure_at(double integrated, double true_peak) {
    LoudnessMeasure m;
    m.integrated_lufs = integrated;
    m.range_lu = 4.0;
    m.true_peak_dbtp = true_peak;
    m.sample_peak_dbfs = true_peak - 0.5;
    m.max_momentary_lufs = integrated + 3.0;
    m.max_short_term_lufs = integrated + 2.0;
    return m;
}

LoudnessResult judged(const LoudnessMeasure& ref, const LoudnessMeasure& dut,
                      const LoudnessLimits& limits) {
    LoudnessResult r;
    r.ref = ref;
    r.dut = dut;
    loudness_judge(r, limits);
    return r;
}

std::vector<double> scaled(const std::vector<double>& x, double gain_db) {
    const double gain = std::pow(10.0, gain_db / 20.0);
    std::vector<double> out(x.size());
    for (std::size_t i = 0; i < x.size(); ++i)
        out[i] = x[i] * gain;
    return out;
}

std::vector<double> programme() {
    const std::vector<ToneSegment> segments = {{-18.0, 2.0}, {-26.0, 2.0}};
    return tone_programme(segments);
}

TEST(LoudnessCompare, WithinAllowsTheSlack) {
    EXPECT_TRUE(loudness_within(0.5 + 0.5 * 1e-5, 0.5));
    EXPECT_FALSE(loudness_within(std::nextafter(0.5 + 0.5 * 1e-5, kInf), 0.5));
    // A negative limit gets its slack from |t|.
    EXPECT_TRUE(loudness_within(-1.0 + 1.0 * 1e-5, -1.0));
    EXPECT_FALSE(loudness_within(std::nextafter(-1.0 + 1.0 * 1e-5, kInf), -1.0));
    EXPECT_TRUE(loudness_within(0.0, 0.0));
    EXPECT_FALSE(loudness_within(std::nextafter(0.0, kInf), 0.0));
}

TEST(LoudnessCompare, DeltasAreDutMinusReference) {
    LoudnessMeasure dut = measure_at(-22.0, -1.5);
    dut.range_lu = 6.5;
    const LoudnessResult r = judged(measure_at(-23.0, -1.0), dut, {false, 2.0, 1.0, 0.0});
    EXPECT_EQ(r.delta_integrated_lu, 1.0);
    EXPECT_EQ(r.delta_true_peak_db, -0.5);
    EXPECT_EQ(r.delta_range_lu, 2.5);
    EXPECT_EQ(r.delta_max_momentary_lu, 1.0);
    EXPECT_EQ(r.delta_max_short_term_lu, 1.0);
    EXPECT_EQ(r.delta_sample_peak_db, -0.5);
    EXPECT_TRUE(r.passed);
}

TEST(LoudnessCompare, IntegratedDeltaExactlyAtTheSlackPasses) {
    const double at = 0.5 + 0.5 * 1e-5;
    const LoudnessLimits limits{false, 0.5, 0.5, 0.0};
    EXPECT_TRUE(judged(measure_at(0.0, -3.0), measure_at(at, -3.0), limits).passed);
    EXPECT_TRUE(judged(measure_at(at, -3.0), measure_at(0.0, -3.0), limits).passed);
    const double beyond = std::nextafter(at, kInf);
    EXPECT_FALSE(judged(measure_at(0.0, -3.0), measure_at(beyond, -3.0), limits).passed);
    EXPECT_FALSE(judged(measure_at(beyond, -3.0), measure_at(0.0, -3.0), limits).passed);
}

TEST(LoudnessCompare, TruePeakDeltaIsSigned) {
    const LoudnessLimits limits{false, 1.0, 0.5, 0.0};
    const double at = 0.5 + 0.5 * 1e-5;
    EXPECT_TRUE(judged(measure_at(-23.0, 0.0), measure_at(-23.0, at), limits).passed);
    EXPECT_FALSE(
        judged(measure_at(-23.0, 0.0), measure_at(-23.0, std::nextafter(at, kInf)), limits).passed);
    // A quieter DUT passes whatever the tolerance, even one of 0.
    EXPECT_TRUE(judged(measure_at(-23.0, 0.0), measure_at(-23.0, -12.0), limits).passed);
    EXPECT_TRUE(
        judged(measure_at(-23.0, 0.0), measure_at(-23.0, -12.0), {false, 1.0, 0.0, 0.0}).passed);
}

TEST(LoudnessCompare, CeilingOnlyWhenEnabled) {
    const LoudnessMeasure ref = measure_at(-23.0, -0.6);
    const LoudnessMeasure dut = measure_at(-23.0, -0.5);
    EXPECT_TRUE(judged(ref, dut, {false, 0.5, 0.5, -1.0}).passed);
    EXPECT_FALSE(judged(ref, dut, {true, 0.5, 0.5, -1.0}).passed);
    EXPECT_TRUE(judged(ref, dut, {true, 0.5, 0.5, -0.5}).passed);
    // The ceiling has the same slack: -1 + 1e-5 is within a ceiling of -1.
    const LoudnessMeasure at_ceiling = measure_at(-23.0, -1.0 + 1e-5);
    EXPECT_TRUE(judged(ref, at_ceiling, {true, 0.5, 0.5, -1.0}).passed);
    const LoudnessMeasure over = measure_at(-23.0, std::nextafter(-1.0 + 1e-5, kInf));
    EXPECT_FALSE(judged(ref, over, {true, 0.5, 0.5, -1.0}).passed);
}

TEST(LoudnessCompare, TwoSilentFilesPassWithZeroDeltas) {
    const WavFile silence = identical_stereo(std::vector<double>(loudness_frames(2.0)));
    const LoudnessResult r =
        loudness_compare(aligned_pair(silence, silence, 0), true, 0.5, 0.5, -1.0);
    EXPECT_EQ(r.ref.integrated_lufs, -200.0);
    EXPECT_EQ(r.dut.true_peak_dbtp, -200.0);
    EXPECT_EQ(r.delta_integrated_lu, 0.0);
    EXPECT_EQ(r.delta_true_peak_db, 0.0);
    EXPECT_EQ(r.delta_range_lu, 0.0);
    EXPECT_EQ(r.delta_max_momentary_lu, 0.0);
    EXPECT_EQ(r.delta_max_short_term_lu, 0.0);
    EXPECT_EQ(r.delta_sample_peak_db, 0.0);
    EXPECT_TRUE(r.passed);
}

TEST(LoudnessCompare, DutOneDbQuieterPassesTruePeak) {
    const std::vector<double> x = programme();
    const WavFile ref = identical_stereo(x);
    const WavFile dut = identical_stereo(scaled(x, -1.0));
    // The integrated tolerance is wide so that only the true-peak test can decide.
    const LoudnessResult r = loudness_compare(aligned_pair(ref, dut, 0), false, 2.0, 0.5, 0.0);
    EXPECT_NEAR(r.delta_true_peak_db, -1.0, 1e-9);
    EXPECT_NEAR(r.delta_integrated_lu, -1.0, 1e-9);
    EXPECT_NEAR(r.delta_sample_peak_db, -1.0, 1e-9);
    EXPECT_TRUE(r.passed);
    EXPECT_TRUE(loudness_compare(aligned_pair(ref, dut, 0), false, 2.0, 0.0, 0.0).passed);
}

TEST(LoudnessCompare, DutOneDbLouderFailsTruePeak) {
    const std::vector<double> x = programme();
    const WavFile ref = identical_stereo(x);
    const WavFile dut = identical_stereo(scaled(x, 1.0));
    const LoudnessResult r = loudness_compare(aligned_pair(ref, dut, 0), false, 2.0, 0.5, 0.0);
    EXPECT_NEAR(r.delta_true_peak_db, 1.0, 1e-9);
    EXPECT_NEAR(r.delta_max_momentary_lu, 1.0, 1e-9);
    EXPECT_FALSE(r.passed);
    // Only the true-peak test failed: a wider true-peak tolerance passes.
    EXPECT_TRUE(loudness_compare(aligned_pair(ref, dut, 0), false, 2.0, 1.5, 0.0).passed);
}

TEST(LoudnessCompare, IntegratedToleranceDecides) {
    const std::vector<double> x = programme();
    const WavFile ref = identical_stereo(x);
    const WavFile dut = identical_stereo(scaled(x, -1.0));
    EXPECT_FALSE(loudness_compare(aligned_pair(ref, dut, 0), false, 0.5, 0.5, 0.0).passed);
}

TEST(LoudnessCompare, OffsetsLineUpTheSameFrames) {
    const std::vector<double> x = programme();
    std::vector<double> late(480, 0.0);
    late.insert(late.end(), x.begin(), x.end());
    const WavFile ref = identical_stereo(x);
    const WavFile dut = identical_stereo(late);
    // DUT 480 frames late: the overlap holds exactly the same samples on both sides.
    const LoudnessResult r = loudness_compare(aligned_pair(ref, dut, 480), true, 0.5, 0.5, 0.0);
    EXPECT_EQ(r.delta_integrated_lu, 0.0);
    EXPECT_EQ(r.delta_true_peak_db, 0.0);
    EXPECT_EQ(r.delta_range_lu, 0.0);
    EXPECT_EQ(r.delta_sample_peak_db, 0.0);
    EXPECT_EQ(r.ref.integrated_lufs, measure_whole(ref).integrated_lufs);
    EXPECT_TRUE(r.passed);
    // Swapped roles, negative offset: the reference is read from frame 480.
    const LoudnessResult swapped =
        loudness_compare(aligned_pair(dut, ref, -480), false, 0.5, 0.5, 0.0);
    EXPECT_EQ(swapped.ref.integrated_lufs, r.ref.integrated_lufs);
    EXPECT_EQ(swapped.delta_integrated_lu, 0.0);
    EXPECT_TRUE(swapped.passed);
}

TEST(LoudnessCompare, NoOverlapKeepsInitialValues) {
    const WavFile file = identical_stereo(programme());
    const auto frames = static_cast<std::int64_t>(file.frames);
    for (const std::int64_t offset : {frames, -frames, frames + 10}) {
        const LoudnessResult r =
            loudness_compare(aligned_pair(file, file, offset), true, 0.5, 0.5, -1.0);
        EXPECT_EQ(r.ref.integrated_lufs, -200.0);
        EXPECT_EQ(r.ref.range_lu, 0.0);
        EXPECT_EQ(r.dut.true_peak_dbtp, -200.0);
        EXPECT_EQ(r.dut.max_short_term_lufs, -200.0);
        EXPECT_EQ(r.delta_integrated_lu, 0.0);
        EXPECT_EQ(r.delta_true_peak_db, 0.0);
        EXPECT_TRUE(r.passed);
    }
}

TEST(LoudnessCompare, MeasuresAtTheReferenceRateWithItsChannels) {
    const std::vector<double> x = programme();
    const WavFile ref = identical_stereo(x);
    WavFile mono_ref = ref;
    mono_ref.channels = 1;
    mono_ref.samples = x;
    // A mono reference measures one channel of the DUT too.
    const LoudnessResult r = loudness_compare(aligned_pair(mono_ref, ref, 0), false, 0.5, 0.5, 0.0);
    EXPECT_EQ(r.ref.integrated_lufs, r.dut.integrated_lufs);
    EXPECT_EQ(r.delta_integrated_lu, 0.0);
    EXPECT_NEAR(r.ref.integrated_lufs, measure_whole(ref).integrated_lufs - 10.0 * std::log10(2.0),
                1e-9);
    // The DUT's own rate plays no part: both files are filtered and blocked at the reference's.
    WavFile other_rate = ref;
    other_rate.sample_rate = 44100;
    const LoudnessResult same =
        loudness_compare(aligned_pair(ref, other_rate, 0), false, 0.5, 0.5, 0.0);
    EXPECT_EQ(same.dut.integrated_lufs, same.ref.integrated_lufs);
    EXPECT_EQ(same.dut.max_short_term_lufs, same.ref.max_short_term_lufs);
}

} // namespace
