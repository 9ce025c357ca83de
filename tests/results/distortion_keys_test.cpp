// The distortion block of the results JSON, compared as complete text.
#include "results/distortion_keys.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

DistortionChannelResult measured_channel() {
    DistortionChannelResult c;
    c.passed = true;
    c.frame_gated = false;
    c.insufficient_samples = false;
    c.frames_scanned = 3514;
    c.frames_gated = 12;
    c.worst_frame_start = 4294967296;
    c.fundamental_freq_hz = 996.09375;
    c.thdn_ratio = 0.0031622777;
    c.thdn_db = -50.0;
    c.p50_thdn_ratio = 0.0012345678;
    c.p95_thdn_ratio = 0.0025;
    return c;
}

std::string written(const DistortionResult& r) {
    FlatJson json;
    EXPECT_TRUE(json_open(json));
    EXPECT_TRUE(write_distortion_keys(json, r));
    return json.text;
}

const char* const kChannel0 = "    \"distortion_channel_0_frame_gated\": 0,\n"
                              "    \"distortion_channel_0_insufficient_samples\": 0,\n"
                              "    \"distortion_channel_0_frames_scanned\": 3514,\n"
                              "    \"distortion_channel_0_frames_gated\": 12,\n"
                              "    \"distortion_channel_0_fundamental_freq_hz\": 996.093750,\n"
                              "    \"distortion_channel_0_thdn_ratio\": 0.003162,\n"
                              "    \"distortion_channel_0_thdn_db\": -50.000000,\n"
                              "    \"distortion_channel_0_worst_frame_start\": 4294967296,\n"
                              "    \"distortion_channel_0_p50_thdn_ratio\": 0.001235,\n"
                              "    \"distortion_channel_0_p95_thdn_ratio\": 0.002500,\n";

TEST(DistortionKeys, MonoPassWritesOnlyChannelZero) {
    DistortionResult r;
    r.channels = 1;
    r.passed = true;
    r.channel[0] = measured_channel();
    // Channel 1 holds data but a mono reference never writes it.
    r.channel[1] = measured_channel();
    EXPECT_EQ(written(r), std::string("{\n    \"distortion_verdict\": \"PASS\",\n") + kChannel0);
}

TEST(DistortionKeys, StereoFailWithAGatedAndAnInsufficientChannel) {
    DistortionResult r;
    r.channels = 2;
    r.passed = false;
    r.channel[0] = measured_channel();
    r.channel[0].passed = false;
    r.channel[1].passed = true;
    r.channel[1].insufficient_samples = true;
    EXPECT_EQ(written(r), std::string("{\n    \"distortion_verdict\": \"FAIL\",\n") + kChannel0 +
                              "    \"distortion_channel_1_frame_gated\": 0,\n"
                              "    \"distortion_channel_1_insufficient_samples\": 1,\n"
                              "    \"distortion_channel_1_frames_scanned\": 0,\n"
                              "    \"distortion_channel_1_frames_gated\": 0,\n"
                              "    \"distortion_channel_1_fundamental_freq_hz\": 0.000000,\n"
                              "    \"distortion_channel_1_thdn_ratio\": 0.000000,\n"
                              "    \"distortion_channel_1_thdn_db\": 0.000000,\n"
                              "    \"distortion_channel_1_worst_frame_start\": 0,\n"
                              "    \"distortion_channel_1_p50_thdn_ratio\": 0.000000,\n"
                              "    \"distortion_channel_1_p95_thdn_ratio\": 0.000000,\n");
}

TEST(DistortionKeys, AllFramesGatedChannelWritesItsFlagAndCounts) {
    DistortionResult r;
    r.channels = 1;
    r.passed = true;
    r.channel[0].passed = true;
    r.channel[0].frame_gated = true;
    r.channel[0].frames_scanned = 1;
    r.channel[0].frames_gated = 1;
    EXPECT_EQ(written(r), "{\n    \"distortion_verdict\": \"PASS\",\n"
                          "    \"distortion_channel_0_frame_gated\": 1,\n"
                          "    \"distortion_channel_0_insufficient_samples\": 0,\n"
                          "    \"distortion_channel_0_frames_scanned\": 1,\n"
                          "    \"distortion_channel_0_frames_gated\": 1,\n"
                          "    \"distortion_channel_0_fundamental_freq_hz\": 0.000000,\n"
                          "    \"distortion_channel_0_thdn_ratio\": 0.000000,\n"
                          "    \"distortion_channel_0_thdn_db\": 0.000000,\n"
                          "    \"distortion_channel_0_worst_frame_start\": 0,\n"
                          "    \"distortion_channel_0_p50_thdn_ratio\": 0.000000,\n"
                          "    \"distortion_channel_0_p95_thdn_ratio\": 0.000000,\n");
}

TEST(DistortionKeys, IdenticalFilesWriteMinus200Db) {
    DistortionResult r;
    r.channels = 1;
    r.passed = true;
    r.channel[0].passed = true;
    r.channel[0].frames_scanned = 1;
    r.channel[0].thdn_db = -200.0;
    const std::string text = written(r);
    EXPECT_NE(text.find("    \"distortion_channel_0_thdn_db\": -200.000000,\n"), std::string::npos);
    EXPECT_EQ(text.find("_channel_1_"), std::string::npos);
}

TEST(DistortionKeys, StopsAtTheFirstEntryThatFails) {
    DistortionResult r;
    r.channels = 2;
    r.passed = true;
    // A NaN fundamental fails the fifth channel entry: the verdict and the four before it stay.
    r.channel[0].fundamental_freq_hz = std::numeric_limits<double>::quiet_NaN();
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_FALSE(write_distortion_keys(json, r));
    EXPECT_EQ(json.text, "{\n    \"distortion_verdict\": \"PASS\",\n"
                         "    \"distortion_channel_0_frame_gated\": 0,\n"
                         "    \"distortion_channel_0_insufficient_samples\": 0,\n"
                         "    \"distortion_channel_0_frames_scanned\": 0,\n"
                         "    \"distortion_channel_0_frames_gated\": 0,\n");
}

} // namespace
