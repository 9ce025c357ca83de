// The spectral block of the results JSON in its two forms, compared as complete text.
#include "results/spectral_keys.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

SpectralChannelResult measured_channel() {
    SpectralChannelResult c;
    c.passed = true;
    c.frames_scanned = 7031;
    c.edge_skipped_samples = 4096;
    c.frames_gated = 3;
    c.bins_compared = 28000000;
    c.bins_excluded = 799;
    c.bins_failed = 2;
    c.p50_ratio = 0.0125;
    c.p95_ratio = 0.25;
    c.p99_ratio = 0.5;
    c.worst_ratio = 1.25;
    c.worst_diff_db = -0.625;
    c.worst_freq_hz = 5003.90625;
    c.worst_is_peak = true;
    return c;
}

std::string written(const SpectralOutcome& outcome) {
    FlatJson json;
    EXPECT_TRUE(json_open(json));
    EXPECT_TRUE(write_spectral_keys(json, outcome));
    return json.text;
}

const char* const kScanChannel0 = "    \"spectral_channel_0_frame_gated\": 0,\n"
                                  "    \"spectral_channel_0_insufficient_samples\": 0,\n"
                                  "    \"spectral_channel_0_frames_scanned\": 7031,\n"
                                  "    \"spectral_channel_0_edge_skipped_samples\": 4096,\n"
                                  "    \"spectral_channel_0_frames_gated\": 3,\n"
                                  "    \"spectral_channel_0_bins_compared\": 28000000,\n"
                                  "    \"spectral_channel_0_bins_excluded\": 799,\n"
                                  "    \"spectral_channel_0_bins_failed\": 2,\n"
                                  "    \"spectral_channel_0_p50_ratio\": 0.012500,\n"
                                  "    \"spectral_channel_0_p95_ratio\": 0.250000,\n"
                                  "    \"spectral_channel_0_p99_ratio\": 0.500000,\n"
                                  "    \"spectral_channel_0_worst_bin_freq_hz\": 5003.906250,\n"
                                  "    \"spectral_channel_0_worst_bin_ratio\": 1.250000,\n"
                                  "    \"spectral_channel_0_worst_bin_diff_db\": -0.625000,\n"
                                  "    \"spectral_channel_0_worst_bin_is_peak\": 1,\n";

const char* const kInsufficientChannel1 =
    "    \"spectral_channel_1_frame_gated\": 0,\n"
    "    \"spectral_channel_1_insufficient_samples\": 1,\n"
    "    \"spectral_channel_1_frames_scanned\": 0,\n"
    "    \"spectral_channel_1_edge_skipped_samples\": 0,\n"
    "    \"spectral_channel_1_frames_gated\": 0,\n"
    "    \"spectral_channel_1_bins_compared\": 0,\n"
    "    \"spectral_channel_1_bins_excluded\": 0,\n"
    "    \"spectral_channel_1_bins_failed\": 0,\n"
    "    \"spectral_channel_1_p50_ratio\": 0.000000,\n"
    "    \"spectral_channel_1_p95_ratio\": 0.000000,\n"
    "    \"spectral_channel_1_p99_ratio\": 0.000000,\n"
    "    \"spectral_channel_1_worst_bin_freq_hz\": 0.000000,\n"
    "    \"spectral_channel_1_worst_bin_ratio\": 0.000000,\n"
    "    \"spectral_channel_1_worst_bin_diff_db\": 0.000000,\n"
    "    \"spectral_channel_1_worst_bin_is_peak\": 0,\n";

TEST(SpectralKeys, MonoScanWritesOnlyChannelZero) {
    SpectralOutcome outcome;
    outcome.scan.channels = 1;
    outcome.scan.passed = false;
    outcome.scan.channel[0] = measured_channel();
    outcome.scan.channel[1] = measured_channel(); // never written for a mono reference
    EXPECT_EQ(written(outcome),
              std::string("{\n    \"spectral_verdict\": \"FAIL\",\n") + kScanChannel0);
}

TEST(SpectralKeys, StereoScanWritesBothChannels) {
    SpectralOutcome outcome;
    outcome.scan.channels = 2;
    outcome.scan.channel[0] = measured_channel();
    outcome.scan.channel[1].insufficient_samples = true;
    EXPECT_EQ(written(outcome), std::string("{\n    \"spectral_verdict\": \"PASS\",\n") +
                                    kScanChannel0 + kInsufficientChannel1);
}

SpectralSnapshot snapshot_at(double time_sec) {
    SpectralSnapshot s;
    s.time_sec = time_sec;
    s.channel[0] = measured_channel();
    s.channel[1] = measured_channel();
    return s;
}

TEST(SpectralKeys, SnapshotsGoChannelOuterAndAGatedSnapshotStopsAfterItsCounts) {
    SpectralOutcome outcome;
    outcome.snapshot_mode = true;
    outcome.snapshots.channels = 2;
    outcome.snapshots.passed = false;
    outcome.snapshots.snapshots = {snapshot_at(1.5), snapshot_at(12.25)};
    SpectralChannelResult& gated = outcome.snapshots.snapshots[1].channel[0];
    gated = SpectralChannelResult{};
    gated.frame_gated = true;
    outcome.snapshots.snapshots[0].channel[1].passed = false;
    const std::string text = written(outcome);
    const std::string expected =
        "{\n    \"spectral_verdict\": \"FAIL\",\n"
        "    \"spectral_insufficient_samples\": 0,\n"
        "    \"spectral_snapshot_count\": 2,\n"
        "    \"spectral_channel_0_snapshot_0_time_sec\": 1.500000,\n"
        "    \"spectral_channel_0_snapshot_0_verdict\": \"PASS\",\n"
        "    \"spectral_channel_0_snapshot_0_frame_gated\": 0,\n"
        "    \"spectral_channel_0_snapshot_0_bins_compared\": 28000000,\n"
        "    \"spectral_channel_0_snapshot_0_bins_excluded\": 799,\n"
        "    \"spectral_channel_0_snapshot_0_bins_failed\": 2,\n"
        "    \"spectral_channel_0_snapshot_0_p50_ratio\": 0.012500,\n"
        "    \"spectral_channel_0_snapshot_0_p95_ratio\": 0.250000,\n"
        "    \"spectral_channel_0_snapshot_0_p99_ratio\": 0.500000,\n"
        "    \"spectral_channel_0_snapshot_0_worst_bin_freq_hz\": 5003.906250,\n"
        "    \"spectral_channel_0_snapshot_0_worst_bin_ratio\": 1.250000,\n"
        "    \"spectral_channel_0_snapshot_0_worst_bin_diff_db\": -0.625000,\n"
        "    \"spectral_channel_0_snapshot_0_worst_bin_is_peak\": 1,\n"
        "    \"spectral_channel_0_snapshot_1_time_sec\": 12.250000,\n"
        "    \"spectral_channel_0_snapshot_1_verdict\": \"PASS\",\n"
        "    \"spectral_channel_0_snapshot_1_frame_gated\": 1,\n"
        "    \"spectral_channel_0_snapshot_1_bins_compared\": 0,\n"
        "    \"spectral_channel_0_snapshot_1_bins_excluded\": 0,\n"
        "    \"spectral_channel_0_snapshot_1_bins_failed\": 0,\n"
        "    \"spectral_channel_1_snapshot_0_time_sec\": 1.500000,\n"
        "    \"spectral_channel_1_snapshot_0_verdict\": \"FAIL\",\n";
    ASSERT_GE(text.size(), expected.size());
    EXPECT_EQ(text.substr(0, expected.size()), expected);
    EXPECT_NE(text.find("\"spectral_channel_1_snapshot_1_worst_bin_is_peak\": 1,\n"),
              std::string::npos);
    EXPECT_EQ(text.find("spectral_channel_0_frames_scanned"), std::string::npos);
}

TEST(SpectralKeys, InsufficientSnapshotRunHasNoSnapshotKeys) {
    SpectralOutcome outcome;
    outcome.snapshot_mode = true;
    outcome.snapshots.channels = 1;
    outcome.snapshots.insufficient_samples = true;
    EXPECT_EQ(written(outcome), "{\n    \"spectral_verdict\": \"PASS\",\n"
                                "    \"spectral_insufficient_samples\": 1,\n"
                                "    \"spectral_snapshot_count\": 0,\n");
}

TEST(SpectralKeys, StopsAtTheFirstEntryThatFails) {
    SpectralOutcome outcome;
    outcome.scan.channels = 2;
    outcome.scan.channel[0] = measured_channel();
    outcome.scan.channel[1] = measured_channel();
    const std::string full = written(outcome);
    const std::size_t failing = full.find("    \"spectral_channel_1_p95_ratio\"");
    ASSERT_NE(failing, std::string::npos);
    // A NaN percentile fails its entry; the entries before it stay and none after it is written.
    outcome.scan.channel[1].p95_ratio = std::numeric_limits<double>::quiet_NaN();
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_FALSE(write_spectral_keys(json, outcome));
    EXPECT_EQ(json.text, full.substr(0, failing));
}

} // namespace
