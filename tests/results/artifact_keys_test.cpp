// The artifact block of the results JSON, compared as complete text.
#include "results/artifact_keys.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

ArtifactChannelResult clicked_channel() {
    ArtifactChannelResult c;
    c.passed = false;
    c.samples_checked = 28800000;
    c.samples_excluded = 4294967296;
    c.samples_flagged = 243;
    c.event_count = 3;
    c.counted_event_count = 1;
    c.minor_event_count = 2;
    c.first_event_start_frame = 17;
    c.first_event_length = 2;
    c.worst_event_start_frame = 1234567;
    c.worst_event_length = 240;
    c.worst_event_counted = true;
    c.worst_event_global_severity = 2.5e5;
    c.worst_event_severity = 12.3456789;
    c.worst_event_deviation_ratio = 74.0740734;
    return c;
}

std::string written(const ArtifactResult& r) {
    FlatJson json;
    EXPECT_TRUE(json_open(json));
    EXPECT_TRUE(write_artifact_keys(json, r, 64, 4.0, 8, 100.0));
    return json.text;
}

const char* const kSettings = "    \"artifact_window_samples\": 64,\n"
                              "    \"artifact_min_severity\": 4.000000,\n"
                              "    \"artifact_min_silence_clip_run\": 8,\n"
                              "    \"artifact_min_global_severity\": 100.000000,\n";

const char* const kClickedChannel0 =
    "    \"artifact_channel_0_samples_checked\": 28800000,\n"
    "    \"artifact_channel_0_samples_excluded\": 4294967296,\n"
    "    \"artifact_channel_0_samples_flagged\": 243,\n"
    "    \"artifact_channel_0_event_count\": 3,\n"
    "    \"artifact_channel_0_counted_event_count\": 1,\n"
    "    \"artifact_channel_0_minor_event_count\": 2,\n"
    "    \"artifact_channel_0_worst_event_start_frame\": 1234567,\n"
    "    \"artifact_channel_0_worst_event_length\": 240,\n"
    "    \"artifact_channel_0_worst_event_deviation_ratio\": 74.074073,\n"
    "    \"artifact_channel_0_worst_event_severity\": 12.345679,\n"
    "    \"artifact_channel_0_worst_event_global_severity\": 250000.000000,\n"
    "    \"artifact_channel_0_worst_event_counted\": 1,\n";

TEST(ArtifactKeys, MonoPassWritesOnlyChannelZero) {
    ArtifactResult r;
    r.channels = 1;
    r.passed = true;
    r.channel[0].passed = true;
    r.channel[0].samples_checked = 48000;
    r.channel[0].samples_excluded = 120;
    r.channel[0].samples_flagged = 1;
    r.channel[0].event_count = 1;
    r.channel[0].minor_event_count = 1;
    r.channel[0].worst_event_start_frame = 4800;
    r.channel[0].worst_event_length = 1;
    r.channel[0].worst_event_deviation_ratio = 7.5;
    r.channel[0].worst_event_severity = 1.25;
    // Channel 1 holds data but a mono reference never writes it.
    r.channel[1] = clicked_channel();
    EXPECT_EQ(written(r), std::string("{\n    \"artifact_verdict\": \"PASS\",\n") + kSettings +
                              "    \"artifact_channel_0_samples_checked\": 48000,\n"
                              "    \"artifact_channel_0_samples_excluded\": 120,\n"
                              "    \"artifact_channel_0_samples_flagged\": 1,\n"
                              "    \"artifact_channel_0_event_count\": 1,\n"
                              "    \"artifact_channel_0_counted_event_count\": 0,\n"
                              "    \"artifact_channel_0_minor_event_count\": 1,\n"
                              "    \"artifact_channel_0_worst_event_start_frame\": 4800,\n"
                              "    \"artifact_channel_0_worst_event_length\": 1,\n"
                              "    \"artifact_channel_0_worst_event_deviation_ratio\": 7.500000,\n"
                              "    \"artifact_channel_0_worst_event_severity\": 1.250000,\n"
                              "    \"artifact_channel_0_worst_event_global_severity\": 0.000000,\n"
                              "    \"artifact_channel_0_worst_event_counted\": 0,\n");
}

TEST(ArtifactKeys, StereoFailWithAChannelThatDidNotOverlap) {
    ArtifactResult r;
    r.channels = 2;
    r.passed = false;
    r.channel[0] = clicked_channel();
    EXPECT_EQ(written(r), std::string("{\n    \"artifact_verdict\": \"FAIL\",\n") + kSettings +
                              kClickedChannel0 +
                              "    \"artifact_channel_1_samples_checked\": 0,\n"
                              "    \"artifact_channel_1_samples_excluded\": 0,\n"
                              "    \"artifact_channel_1_samples_flagged\": 0,\n"
                              "    \"artifact_channel_1_event_count\": 0,\n"
                              "    \"artifact_channel_1_counted_event_count\": 0,\n"
                              "    \"artifact_channel_1_minor_event_count\": 0,\n"
                              "    \"artifact_channel_1_worst_event_start_frame\": 0,\n"
                              "    \"artifact_channel_1_worst_event_length\": 0,\n"
                              "    \"artifact_channel_1_worst_event_deviation_ratio\": 0.000000,\n"
                              "    \"artifact_channel_1_worst_event_severity\": 0.000000,\n"
                              "    \"artifact_channel_1_worst_event_global_severity\": 0.000000,\n"
                              "    \"artifact_channel_1_worst_event_counted\": 0,\n");
}

TEST(ArtifactKeys, SettingsAreWrittenAsGiven) {
    ArtifactResult r;
    r.channels = 0;
    r.passed = true;
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    ASSERT_TRUE(write_artifact_keys(json, r, 128, 2.5, 16, 1e6));
    EXPECT_EQ(json.text.substr(0, json.text.find("    \"artifact_channel_0_")),
              "{\n    \"artifact_verdict\": \"PASS\",\n"
              "    \"artifact_window_samples\": 128,\n"
              "    \"artifact_min_severity\": 2.500000,\n"
              "    \"artifact_min_silence_clip_run\": 16,\n"
              "    \"artifact_min_global_severity\": 1000000.000000,\n");
    EXPECT_EQ(json.text.find("_channel_1_"), std::string::npos);
}

TEST(ArtifactKeys, StopsAtTheFirstEntryThatFails) {
    ArtifactResult r;
    r.channels = 2;
    r.passed = true;
    // A NaN ratio fails its entry: the verdict, the settings and the counts before it stay.
    r.channel[0].worst_event_deviation_ratio = std::numeric_limits<double>::quiet_NaN();
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_FALSE(write_artifact_keys(json, r, 64, 4.0, 8, 100.0));
    EXPECT_EQ(json.text, std::string("{\n    \"artifact_verdict\": \"PASS\",\n") + kSettings +
                             "    \"artifact_channel_0_samples_checked\": 0,\n"
                             "    \"artifact_channel_0_samples_excluded\": 0,\n"
                             "    \"artifact_channel_0_samples_flagged\": 0,\n"
                             "    \"artifact_channel_0_event_count\": 0,\n"
                             "    \"artifact_channel_0_counted_event_count\": 0,\n"
                             "    \"artifact_channel_0_minor_event_count\": 0,\n"
                             "    \"artifact_channel_0_worst_event_start_frame\": 0,\n"
                             "    \"artifact_channel_0_worst_event_length\": 0,\n");
}

TEST(ArtifactKeys, InfiniteSettingStopsTheBlock) {
    ArtifactResult r;
    r.passed = true;
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_FALSE(
        write_artifact_keys(json, r, 64, std::numeric_limits<double>::infinity(), 8, 100.0));
    EXPECT_EQ(json.text, "{\n    \"artifact_verdict\": \"PASS\",\n"
                         "    \"artifact_window_samples\": 64,\n");
}

} // namespace
