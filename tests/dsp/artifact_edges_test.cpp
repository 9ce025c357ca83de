// The artifact check on its listed edge cases: identical files, a single-sample click with a
// minimum run of 1 and of 2, a dropout with a tiny difference, samples below the floor, the
// integer and float clip rules, and files that do not overlap.
#include "dsp/artifact.h"
#include "dsp/artifact_fixture.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// The deviation of a lone difference of `size` in a run of equal differences: both spreads are
// raised to 1e-12.
double lone_deviation(double size) {
    return size / (1.4826 * 1e-12);
}

void expect_no_event(const ArtifactChannelResult& c) {
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.samples_flagged, 0u);
    EXPECT_EQ(c.event_count, 0u);
    EXPECT_EQ(c.counted_event_count, 0u);
    EXPECT_EQ(c.minor_event_count, 0u);
    EXPECT_EQ(c.first_event_start_frame, 0u);
    EXPECT_EQ(c.first_event_length, 0u);
    EXPECT_EQ(c.worst_event_start_frame, 0u);
    EXPECT_EQ(c.worst_event_length, 0u);
    EXPECT_FALSE(c.worst_event_counted);
    EXPECT_EQ(c.worst_event_deviation_ratio, 0.0);
    EXPECT_EQ(c.worst_event_severity, 0.0);
    EXPECT_EQ(c.worst_event_global_severity, 0.0);
}

// One minor event of length 1 at `frame` with the given local deviation (below k, so it has no
// whole-file peak).
void expect_one_minor_sample(const ArtifactChannelResult& c, std::uint64_t frame, double z) {
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.samples_flagged, 1u);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.counted_event_count, 0u);
    EXPECT_EQ(c.minor_event_count, 1u);
    EXPECT_EQ(c.worst_event_start_frame, frame);
    EXPECT_EQ(c.worst_event_length, 1u);
    EXPECT_FALSE(c.worst_event_counted);
    EXPECT_EQ(c.worst_event_deviation_ratio, z);
    EXPECT_EQ(c.worst_event_severity, z / 6.0);
    EXPECT_EQ(c.worst_event_global_severity, 0.0);
}

TEST(ArtifactEdges, IdenticalFilesFlagNothingAndPass) {
    const WavFile ref = artifact_wav({artifact_program(1, 2000)});
    const ArtifactResult r = run_artifact(ref, ref);
    ASSERT_EQ(r.channels, 1u);
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(r.channel[0].samples_checked, 2000u);
    EXPECT_EQ(r.channel[0].samples_excluded, 0u);
    expect_no_event(r.channel[0]);
}

TEST(ArtifactEdges, SingleSampleClickIsOneEventWithMinRunOne) {
    const std::vector<double> ref = artifact_program(2, 1000);
    std::vector<double> dut = ref;
    dut[500] += 0.25;
    const ArtifactResult r = run_artifact(artifact_wav({ref}), artifact_wav({dut}));
    const ArtifactChannelResult& c = r.channel[0];
    EXPECT_FALSE(r.passed);
    EXPECT_FALSE(c.passed);
    EXPECT_EQ(c.samples_checked, 1000u);
    EXPECT_EQ(c.samples_flagged, 1u);
    EXPECT_EQ(c.event_count, 1u);
    EXPECT_EQ(c.counted_event_count, 1u);
    EXPECT_EQ(c.minor_event_count, 0u);
    EXPECT_EQ(c.first_event_start_frame, 500u);
    EXPECT_EQ(c.first_event_length, 1u);
    EXPECT_EQ(c.worst_event_start_frame, 500u);
    EXPECT_EQ(c.worst_event_length, 1u);
    EXPECT_TRUE(c.worst_event_counted);
    // Every other difference is 0, so both the neighbourhood's and the file's spread are 0.
    EXPECT_EQ(c.worst_event_deviation_ratio, lone_deviation(0.25));
    EXPECT_EQ(c.worst_event_severity, lone_deviation(0.25) / 6.0);
    EXPECT_EQ(c.worst_event_global_severity, lone_deviation(0.25) / 6.0);
}

TEST(ArtifactEdges, SingleSampleClickIsDroppedWithMinRunTwo) {
    const std::vector<double> ref = artifact_program(2, 1000);
    std::vector<double> dut = ref;
    dut[500] += 0.25;
    ArtifactSettings s;
    s.min_run = 2;
    const ArtifactResult r = run_artifact(artifact_wav({ref}), artifact_wav({dut}), s);
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(r.channel[0].samples_checked, 1000u);
    expect_no_event(r.channel[0]);
}

TEST(ArtifactEdges, ExactZeroIsADropoutEvenWithATinyDifference) {
    std::vector<double> ref = artifact_program(3, 1000);
    ref[300] = 1.0 / 4096.0; // above the -80 dB floor
    std::vector<double> dut = artifact_noisy_copy(ref, 4);
    dut[300] = 0.0;
    const double z = artifact_local_deviation(artifact_differences(ref, dut), 300);
    // The difference of -2/8192 sits well inside the noise of +-40/8192 around it.
    ASSERT_LT(z, 1.0);
    expect_one_minor_sample(run_artifact(artifact_wav({ref}), artifact_wav({dut})).channel[0], 300,
                            z);
}

TEST(ArtifactEdges, TinyNonZeroSampleIsNoDropout) {
    std::vector<double> ref = artifact_program(3, 1000);
    ref[300] = 1.0 / 4096.0;
    std::vector<double> dut = artifact_noisy_copy(ref, 4);
    dut[300] = 1.0 / 8192.0;
    expect_no_event(run_artifact(artifact_wav({ref}), artifact_wav({dut})).channel[0]);
}

TEST(ArtifactEdges, BothBelowTheFloorIsExcludedEvenWithAZeroDut) {
    std::vector<double> ref = artifact_program(5, 1000);
    std::vector<double> dut = ref;
    for (std::size_t i = 400; i < 420; ++i) {
        ref[i] = 5e-5; // -86 dB
        dut[i] = 0.0;
    }
    const ArtifactResult r = run_artifact(artifact_wav({ref}), artifact_wav({dut}));
    EXPECT_EQ(r.channel[0].samples_checked, 1000u);
    EXPECT_EQ(r.channel[0].samples_excluded, 20u);
    expect_no_event(r.channel[0]);
}

TEST(ArtifactEdges, IntegerDutAt09995OverReference0998IsAClip) {
    std::vector<double> ref = artifact_program(6, 1000);
    ref[600] = 0.998;
    std::vector<double> dut = artifact_noisy_copy(ref, 7);
    dut[600] = 0.9995;
    const double z = artifact_local_deviation(artifact_differences(ref, dut), 600);
    ASSERT_LT(z, 6.0);
    const ArtifactResult r =
        run_artifact(artifact_wav({ref}), artifact_wav({dut}, kWavFormatInt16));
    expect_one_minor_sample(r.channel[0], 600, z);
    // The same samples in a float DUT are 5e-4 short of full scale: no clip.
    expect_no_event(run_artifact(artifact_wav({ref}), artifact_wav({dut})).channel[0]);
}

TEST(ArtifactEdges, FloatDutMustSitWithin1e9OfFullScale) {
    std::vector<double> ref = artifact_program(6, 1000);
    ref[600] = 0.998;
    std::vector<double> dut = artifact_noisy_copy(ref, 7);
    dut[600] = 1.0 - 5e-10;
    const double z = artifact_local_deviation(artifact_differences(ref, dut), 600);
    expect_one_minor_sample(run_artifact(artifact_wav({ref}), artifact_wav({dut})).channel[0], 600,
                            z);
    dut[600] = 1.0 - 2e-9;
    expect_no_event(run_artifact(artifact_wav({ref}), artifact_wav({dut})).channel[0]);
}

TEST(ArtifactEdges, FilesThatDoNotOverlapFail) {
    const WavFile ref = artifact_wav({artifact_program(8, 500)});
    const WavFile dut = artifact_wav({artifact_program(9, 300)});
    for (std::int64_t offset : {300, 1000, -500, -2000}) {
        ArtifactSettings s;
        s.offset = offset;
        const ArtifactResult r = run_artifact(ref, dut, s);
        EXPECT_EQ(r.channels, 1u);
        EXPECT_FALSE(r.passed) << offset;
        const ArtifactChannelResult& c = r.channel[0];
        EXPECT_FALSE(c.passed);
        EXPECT_EQ(c.samples_checked, 0u);
        EXPECT_EQ(c.samples_excluded, 0u);
        EXPECT_EQ(c.samples_flagged, 0u);
        EXPECT_EQ(c.event_count, 0u);
        EXPECT_EQ(c.worst_event_deviation_ratio, 0.0);
    }
}

} // namespace
