// The per-sample rules of the artifact check: dropouts, the floor, the integer and float clip
// rules at their boundaries, thresholds k of 0 and below, extreme sample values, one-frame and
// all-silent files.
#include "dsp/artifact.h"
#include "dsp/artifact_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

constexpr double kLoneScale = 1.4826 * 1e-12; // both spreads raised to 1e-12

ArtifactChannelResult mono_check(const std::vector<double>& ref, const std::vector<double>& dut,
                                 std::uint32_t dut_format = kWavFormatFloat64,
                                 const ArtifactSettings& s = {}) {
    return run_artifact(artifact_wav({ref}), artifact_wav({dut}, dut_format), s).channel[0];
}

// A noisy pair with one chosen sample pair at `at`; returns the flagged-sample count the check
// reports for it, after making sure the local deviation alone would not flag it.
std::uint64_t flagged_with(double r, double d, std::uint32_t dut_format) {
    std::vector<double> ref = artifact_program(21, 400);
    ref[200] = r;
    std::vector<double> dut = artifact_noisy_copy(ref, 22);
    dut[200] = d;
    EXPECT_LT(artifact_local_deviation(artifact_differences(ref, dut), 200), 6.0);
    const ArtifactChannelResult c = mono_check(ref, dut, dut_format);
    EXPECT_TRUE(c.passed); // a lone silence/clip sample is a minor event
    return c.samples_flagged;
}

TEST(ArtifactRules, OneZeroSampleInAnIdenticalDutIsACountedDropout) {
    std::vector<double> ref = artifact_program(23, 1000);
    ref[700] = 0.25;
    std::vector<double> dut = ref;
    dut[700] = 0.0;
    const ArtifactChannelResult c = mono_check(ref, dut);
    EXPECT_FALSE(c.passed);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.counted_event_count, 1u);
    EXPECT_EQ(c.worst_event_start_frame, 700u);
    EXPECT_EQ(c.worst_event_length, 1u);
    // Its silence run of 1 is short of 8: the event counts by its local deviation.
    EXPECT_EQ(c.worst_event_deviation_ratio, 0.25 / kLoneScale);
}

TEST(ArtifactRules, ReferenceExactlyAtTheFloorIsNotBelowIt) {
    std::vector<double> ref = artifact_program(24, 1000);
    std::vector<double> dut = ref;
    const double floor = std::pow(10.0, -80.0 / 20.0);
    ref[100] = floor;
    dut[100] = 0.0;
    ref[101] = floor * 0.5;
    dut[101] = 0.0;
    const ArtifactChannelResult c = mono_check(ref, dut);
    EXPECT_EQ(c.samples_excluded, 1u);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.worst_event_start_frame, 100u);
    EXPECT_EQ(c.worst_event_length, 1u);
    EXPECT_EQ(c.worst_event_deviation_ratio, floor / kLoneScale);
}

TEST(ArtifactRules, IntegerClipNeedsTheDutAtAndTheReferenceBelow0999) {
    EXPECT_EQ(flagged_with(0.998, 0.999, kWavFormatInt16), 1u);
    EXPECT_EQ(flagged_with(0.998, 0.9989, kWavFormatInt16), 0u);
    EXPECT_EQ(flagged_with(0.999, 1.0, kWavFormatInt16), 0u);
    EXPECT_EQ(flagged_with(-0.998, -1.0, kWavFormatInt24), 1u);
    // The most negative 16-bit code lies below -1.0.
    EXPECT_EQ(flagged_with(-0.998, -32768.0 / 32767.0, kWavFormatInt16), 1u);
    EXPECT_EQ(flagged_with(-32768.0 / 32767.0, -32768.0 / 32767.0, kWavFormatInt32), 0u);
}

TEST(ArtifactRules, FloatClipNeedsTheDutWithin1e9OfFullScaleAndTheReferenceNot) {
    EXPECT_EQ(flagged_with(-0.998, -1.0, kWavFormatFloat32), 1u);
    EXPECT_EQ(flagged_with(0.998, 1.0 + 5e-10, kWavFormatFloat64), 1u);
    EXPECT_EQ(flagged_with(0.998, 1.0 - 2e-9, kWavFormatFloat64), 0u);
    EXPECT_EQ(flagged_with(1.0 - 5e-10, 1.0, kWavFormatFloat64), 0u);
    // 0.999 is a clip only for an integer DUT.
    EXPECT_EQ(flagged_with(0.998, 0.999, kWavFormatFloat64), 0u);
}

TEST(ArtifactRules, KOfZeroFlagsEveryNonZeroDeviationWithSeverityZero) {
    const std::vector<double> ref = artifact_program(25, 1000);
    std::vector<double> dut = ref;
    dut[250] += 0.125;
    ArtifactSettings s;
    s.k = 0.0;
    const ArtifactChannelResult c = mono_check(ref, dut, kWavFormatFloat64, s);
    EXPECT_FALSE(c.passed);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.counted_event_count, 1u);
    EXPECT_EQ(c.worst_event_start_frame, 250u);
    EXPECT_EQ(c.worst_event_deviation_ratio, 0.125 / kLoneScale);
    EXPECT_EQ(c.worst_event_severity, 0.0);
    EXPECT_EQ(c.worst_event_global_severity, 0.0);
}

TEST(ArtifactRules, NegativeKFlagsEverySampleAsOneEvent) {
    const std::vector<double> ref = artifact_program(26, 1000);
    std::vector<double> dut = ref;
    dut[250] += 0.125;
    ArtifactSettings s;
    s.k = -1.0;
    const ArtifactChannelResult c = mono_check(ref, dut, kWavFormatFloat64, s);
    EXPECT_FALSE(c.passed);
    EXPECT_EQ(c.samples_flagged, 1000u);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.counted_event_count, 1u);
    EXPECT_EQ(c.first_event_start_frame, 0u);
    EXPECT_EQ(c.first_event_length, 1000u);
    EXPECT_EQ(c.worst_event_length, 1000u);
    EXPECT_EQ(c.worst_event_deviation_ratio, 0.125 / kLoneScale);
    EXPECT_EQ(c.worst_event_severity, 0.0);
    EXPECT_EQ(c.worst_event_global_severity, 0.0);
}

TEST(ArtifactRules, FullScaleAndTheMostNegativeCodeInIdenticalFilesPass) {
    std::vector<double> ref = artifact_program(27, 500);
    for (std::size_t i = 0; i < 500; i += 7)
        ref[i] = i % 2 == 0 ? 1.0 : -32768.0 / 32767.0;
    const ArtifactChannelResult c = mono_check(ref, ref, kWavFormatInt16);
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.samples_flagged, 0u);
    EXPECT_EQ(c.event_count, 0u);
}

TEST(ArtifactRules, OneFrameFiles) {
    const ArtifactChannelResult same = mono_check({0.5}, {0.5});
    EXPECT_TRUE(same.passed);
    EXPECT_EQ(same.samples_checked, 1u);
    EXPECT_EQ(same.event_count, 0u);
    // An empty neighbourhood has median 0 and spread 1e-12; the whole file's spread is 0 too.
    const ArtifactChannelResult differing = mono_check({0.5}, {0.25});
    EXPECT_FALSE(differing.passed);
    EXPECT_EQ(differing.samples_checked, 1u);
    EXPECT_EQ(differing.event_count, 1u);
    EXPECT_EQ(differing.worst_event_start_frame, 0u);
    EXPECT_EQ(differing.worst_event_length, 1u);
    EXPECT_EQ(differing.worst_event_deviation_ratio, 0.25 / kLoneScale);
    EXPECT_EQ(differing.worst_event_global_severity, 0.25 / kLoneScale / 6.0);
}

TEST(ArtifactRules, AllSilentFilesAreExcludedAndPass) {
    const std::vector<double> silence(1000, 0.0);
    const ArtifactChannelResult c = mono_check(silence, silence);
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.samples_checked, 1000u);
    EXPECT_EQ(c.samples_excluded, 1000u);
    EXPECT_EQ(c.samples_flagged, 0u);
    EXPECT_EQ(c.event_count, 0u);
    EXPECT_EQ(c.worst_event_deviation_ratio, 0.0);
}

} // namespace
