// How the impulse template check walks the files: frames and their sizes, the overlap under an
// offset, the examined channels, the guard width per sample rate, and which failure is the worst.
#include "checks/impulse_template.h"
#include "impulse_template_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace {

const double kClick = std::pow(10.0, -20.0 / 20.0);

WavFile silent_mono(std::size_t frames) {
    return impulse_mono(std::vector<double>(frames, 0.0));
}

TEST(ImpulseTemplateWalk, FrameSizeLargerThanTheOverlapMakesOneFrame) {
    const WavFile ref = silent_mono(30);
    const WavFile inner = impulse_mono(impulse_clicks(30, {10}, kClick));
    const WavFile near_end = impulse_mono(impulse_clicks(30, {27}, kClick));
    for (const std::size_t frame_size :
         {std::size_t{30}, std::size_t{8192}, std::numeric_limits<std::size_t>::max()}) {
        EXPECT_EQ(impulse_run(ref, inner, 0, frame_size).channel[0].total_fails, 1u);
        EXPECT_TRUE(impulse_run(ref, near_end, 0, frame_size).passed);
    }
    // Frames of 10: position 10 starts the second frame and lies in its edge guard.
    EXPECT_TRUE(impulse_run(ref, inner, 0, 10).passed);
}

TEST(ImpulseTemplateWalk, LastFrameIsShorter) {
    // Frames [0, 100), [100, 200), [200, 230): the short last frame is all edge guard but
    // positions 205 .. 224.
    const WavFile ref = silent_mono(230);
    EXPECT_TRUE(impulse_run(ref, impulse_mono(impulse_clicks(230, {204, 225, 229}, kClick)), 0, 100)
                    .passed);
    const ImpulseTemplateResult result =
        impulse_run(ref, impulse_mono(impulse_clicks(230, {205, 224}, kClick)), 0, 100);
    EXPECT_EQ(result.channel[0].total_fails, 2u);
    EXPECT_EQ(result.channel[0].worst_sample, 205u);
}

TEST(ImpulseTemplateWalk, FrameSizeOneMakesEveryPositionAnEdge) {
    const WavFile ref = silent_mono(50);
    EXPECT_TRUE(impulse_run(ref, impulse_mono(std::vector<double>(50, 0.31)), 0, 1).passed);
    EXPECT_EQ(
        impulse_run(ref, impulse_mono(std::vector<double>(50, 0.32)), 0, 1).channel[0].total_fails,
        50u);
}

TEST(ImpulseTemplateWalk, FrameSizeZeroWalksNothing) {
    const ImpulseTemplateResult result =
        impulse_run(silent_mono(50), impulse_mono(std::vector<double>(50, 0.9)), 0, 0);
    EXPECT_TRUE(result.passed);
    EXPECT_TRUE(result.channel[0].passed);
    EXPECT_EQ(result.channel[0].total_fails, 0u);
}

TEST(ImpulseTemplateWalk, TransientRunCutByAFrameBoundary) {
    // Frames of 50; the run 48 .. 52 becomes [48, 49] in the first frame (core 46 .. 49) and
    // [0, 2] in the second (core 50 .. 54).
    std::vector<double> ref(150, 0.0);
    for (std::size_t i = 48; i <= 52; ++i)
        ref[i] = 0.5;
    const WavFile ref_file = impulse_mono(ref);
    std::vector<double> dut(150, 0.0);
    for (std::size_t i = 46; i <= 54; ++i)
        dut[i] = 0.6;
    EXPECT_TRUE(impulse_run(ref_file, impulse_mono(dut), 0, 50).passed);
    dut[45] = 0.6; // last guard of the first frame: the peak level
    dut[55] = 0.6; // past the second frame's guard and the core: the floor
    const ImpulseTemplateResult result = impulse_run(ref_file, impulse_mono(dut), 0, 50);
    EXPECT_EQ(result.channel[0].total_fails, 2u);
    EXPECT_EQ(result.channel[0].worst_sample, 55u);
    EXPECT_EQ(result.channel[0].worst_diff, 0.6 - kImpulseFloor);
}

TEST(ImpulseTemplateWalk, EmptyOverlapPasses) {
    const WavFile ref = impulse_mono(std::vector<double>(50, 0.5));
    const WavFile dut = impulse_mono(std::vector<double>(50, 0.9));
    for (const std::int64_t offset : {std::int64_t{50}, std::int64_t{100}, std::int64_t{-50}}) {
        const ImpulseTemplateResult result = impulse_run(ref, dut, offset);
        EXPECT_TRUE(result.passed);
        EXPECT_EQ(result.channels, 1u);
        EXPECT_TRUE(result.channel[0].passed);
        EXPECT_EQ(result.channel[0].total_fails, 0u);
    }
    EXPECT_TRUE(impulse_run(silent_mono(0), silent_mono(0)).passed);
}

TEST(ImpulseTemplateWalk, WorstSampleIsAReferenceFrameUnderAnOffset) {
    // DUT late by 7: reference frame 50 pairs with DUT frame 57.
    const WavFile ref = silent_mono(200);
    const ImpulseTemplateResult late =
        impulse_run(ref, impulse_mono(impulse_clicks(200, {57}, kClick)), 7);
    EXPECT_EQ(late.channel[0].total_fails, 1u);
    EXPECT_EQ(late.channel[0].worst_sample, 50u);
    // DUT early by 10: the overlap starts at reference frame 10, which is the first frame's edge.
    const ImpulseTemplateResult early =
        impulse_run(ref, impulse_mono(impulse_clicks(200, {40, 3}, kClick)), -10);
    EXPECT_EQ(early.channel[0].total_fails, 1u);
    EXPECT_EQ(early.channel[0].worst_sample, 50u);
}

TEST(ImpulseTemplateWalk, OffsetShiftsTheReferenceTemplateOntoTheDut) {
    std::vector<double> ref(100, 0.0);
    ref[40] = 0.5;
    std::vector<double> dut(100, 0.0);
    dut[43] = 0.6; // reference frame 40 under an offset of 3
    EXPECT_TRUE(impulse_run(impulse_mono(ref), impulse_mono(dut), 3).passed);
    EXPECT_FALSE(impulse_run(impulse_mono(ref), impulse_mono(dut), 0).passed);
}

TEST(ImpulseTemplateWalk, WorstIsTheLargestExcessFirstOfEqualOnesWithinAFrame) {
    const WavFile ref = silent_mono(1000);
    std::vector<double> dut(1000, 0.0);
    dut[100] = 0.1;
    dut[200] = -0.2;
    dut[300] = 0.2;
    const ImpulseTemplateResult result = impulse_run(ref, impulse_mono(dut));
    EXPECT_EQ(result.channel[0].total_fails, 3u);
    EXPECT_EQ(result.channel[0].worst_sample, 200u);
    EXPECT_EQ(result.channel[0].worst_diff, 0.2 - kImpulseFloor);
    EXPECT_EQ(result.channel[0].worst_dut_amp, 0.2);
}

TEST(ImpulseTemplateWalk, LaterFrameReplacesTheWorstOnlyWhenStrictlyGreater) {
    const WavFile ref = silent_mono(1000);
    const ImpulseTemplateResult equal =
        impulse_run(ref, impulse_mono(impulse_clicks(1000, {200, 700}, 0.2)), 0, 500);
    EXPECT_EQ(equal.channel[0].total_fails, 2u);
    EXPECT_EQ(equal.channel[0].worst_sample, 200u);
    std::vector<double> dut = impulse_clicks(1000, {200}, 0.2);
    dut[700] = 0.25;
    dut[800] = 0.25;
    const ImpulseTemplateResult greater = impulse_run(ref, impulse_mono(dut), 0, 500);
    EXPECT_EQ(greater.channel[0].total_fails, 3u);
    EXPECT_EQ(greater.channel[0].worst_sample, 700u);
    EXPECT_EQ(greater.channel[0].worst_diff, 0.25 - kImpulseFloor);
}

TEST(ImpulseTemplateWalk, WorstKeepsTheReferenceMagnitude) {
    std::vector<double> ref(100, 0.0);
    ref[50] = -0.2;
    const ImpulseTemplateResult result =
        impulse_run(impulse_mono(ref), impulse_mono(impulse_clicks(100, {50}, -0.3)));
    EXPECT_EQ(result.channel[0].worst_sample, 50u);
    EXPECT_EQ(result.channel[0].worst_diff, 0.3 - 0.2 * 1.25);
    EXPECT_EQ(result.channel[0].worst_ref_amp, 0.2);
    EXPECT_EQ(result.channel[0].worst_dut_amp, 0.3);
}

TEST(ImpulseTemplateWalk, StereoChannelsAreJudgedSeparately) {
    const std::vector<double> silence(400, 0.0);
    const WavFile ref = impulse_stereo(silence, silence);
    const WavFile dut = impulse_stereo(silence, impulse_clicks(400, {100, 150}, kClick));
    const ImpulseTemplateResult result = impulse_run(ref, dut);
    EXPECT_FALSE(result.passed);
    EXPECT_EQ(result.channels, 2u);
    EXPECT_TRUE(result.channel[0].passed);
    EXPECT_EQ(result.channel[0].total_fails, 0u);
    EXPECT_FALSE(result.channel[1].passed);
    EXPECT_TRUE(result.channel[1].has_failures);
    EXPECT_EQ(result.channel[1].total_fails, 2u);
    EXPECT_EQ(result.channel[1].worst_sample, 100u);
}

TEST(ImpulseTemplateWalk, OnlyTheFirstTwoChannelsAreExamined) {
    WavFile ref;
    ref.sample_rate = kImpulseRate;
    ref.channels = 3;
    ref.format = kWavFormatFloat64;
    ref.frames = 100;
    ref.samples.assign(300, 0.0);
    WavFile dut = ref;
    dut.samples[50 * 3 + 2] = 0.9;
    const ImpulseTemplateResult result = impulse_run(ref, dut);
    EXPECT_TRUE(result.passed);
    EXPECT_EQ(result.channels, 3u);
    dut.samples[50 * 3 + 1] = 0.9;
    EXPECT_FALSE(impulse_run(ref, dut).passed);
}

TEST(ImpulseTemplateWalk, ReferenceWithoutChannelsPasses) {
    WavFile empty;
    empty.sample_rate = kImpulseRate;
    const ImpulseTemplateResult result = impulse_run(empty, empty);
    EXPECT_TRUE(result.passed);
    EXPECT_EQ(result.channels, 0u);
    EXPECT_EQ(result.channel[0].total_fails, 0u);
}

TEST(ImpulseTemplateWalk, ChannelTheDutLacksIsLeftWithoutFailures) {
    const std::vector<double> silence(100, 0.0);
    const ImpulseTemplateResult result =
        impulse_run(impulse_stereo(silence, silence), impulse_mono(std::vector<double>(100, 0.9)));
    EXPECT_EQ(result.channel[0].total_fails, 100u);
    EXPECT_TRUE(result.channel[1].passed);
    EXPECT_EQ(result.channel[1].total_fails, 0u);
}

// The guard is the integer part of 0.005 x sample rate.
void expect_guard(std::uint32_t rate, std::size_t guard) {
    WavFile ref = silent_mono(2 * guard + 10);
    ref.sample_rate = rate;
    WavFile inside = impulse_mono(impulse_clicks(ref.frames, {guard - 1}, kClick));
    inside.sample_rate = rate;
    WavFile outside = impulse_mono(impulse_clicks(ref.frames, {guard}, kClick));
    outside.sample_rate = rate;
    EXPECT_TRUE(impulse_run(ref, inside).passed) << rate;
    EXPECT_FALSE(impulse_run(ref, outside).passed) << rate;
}

TEST(ImpulseTemplateWalk, GuardIsFiveMillisecondsTruncated) {
    expect_guard(48000, 240);
    expect_guard(44100, 220); // 220.5
    expect_guard(22050, 110); // 110.25
    expect_guard(192000, 960);
}

} // namespace
