#include "results/results.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const char* const kStereoFail = R"({
    "sonalyx_phase": 2,
    "status": "analyzed",
    "overall_verdict": "FAIL",
    "gating_failure_count": 2,
    "gating_failures": "levelfidelity,spectral",
    "align_file_offset": -480,
    "levelfidelity_channel_0_p99_abs_db": 0.250000,
    "levelfidelity_channel_1_p99_abs_db": 1.500000,
    "artifact_channel_0_counted_event_count": 2,
    "artifact_channel_1_counted_event_count": 3,
    "distortion_channel_0_frame_gated": 0,
    "distortion_channel_0_insufficient_samples": 0,
    "distortion_channel_0_thdn_db": -80.500000,
    "distortion_channel_1_frame_gated": 0,
    "distortion_channel_1_insufficient_samples": 0,
    "distortion_channel_1_thdn_db": -60.250000,
    "loudness_delta_integrated_lu": -0.750000
}
)";

TEST(BatchRowFromJson, FailingStereoPairTakesWorstChannelsAndSums) {
    BatchRow row;
    row.id = "kept";
    ASSERT_TRUE(batch_row_from_results_json(kStereoFail, row));
    EXPECT_EQ(row.id, "kept");
    EXPECT_EQ(row.verdict, "FAIL");
    EXPECT_EQ(row.failing_checks, "Level Fidelity, Spectral Fidelity");
    EXPECT_EQ(row.error, "");
    EXPECT_EQ(row.offset, -480);
    EXPECT_EQ(row.level_p99_db, 1.5);
    EXPECT_EQ(row.artifact_count, 5);
    EXPECT_EQ(row.thdn_db, -60.25);
    EXPECT_EQ(row.loudness_delta_lu, -0.75);
}

TEST(BatchRowFromJson, GatedDistortionChannelAndSkippedChecksLeaveFiguresUnset) {
    BatchRow row;
    ASSERT_TRUE(batch_row_from_results_json(R"({
    "overall_verdict": "PASS",
    "gating_failures": "",
    "align_file_offset": 0,
    "distortion_channel_0_frame_gated": 1,
    "distortion_channel_0_insufficient_samples": 0,
    "distortion_channel_0_thdn_db": 0.000000
}
)",
                                            row));
    EXPECT_EQ(row.verdict, "PASS");
    EXPECT_EQ(row.failing_checks, "");
    EXPECT_EQ(row.offset, 0);
    EXPECT_FALSE(row.thdn_db.has_value());
    EXPECT_FALSE(row.level_p99_db.has_value());
    EXPECT_FALSE(row.loudness_delta_lu.has_value());
    EXPECT_FALSE(row.artifact_count.has_value());
}

TEST(BatchRowFromJson, ErrorJsonGivesErrorText) {
    std::string json;
    ASSERT_TRUE(build_error_json("could not align\n\"ref\"", "r.wav", "d.wav", json));
    BatchRow row;
    ASSERT_TRUE(batch_row_from_results_json(json, row));
    EXPECT_EQ(row.verdict, "ERROR");
    EXPECT_EQ(row.error, "could not align\n\"ref\"");
    EXPECT_FALSE(row.offset.has_value());
}

TEST(BatchRowFromJson, RefusesWhatIsNotAResultsJson) {
    BatchRow row;
    EXPECT_FALSE(batch_row_from_results_json("", row));
    EXPECT_FALSE(batch_row_from_results_json("{\"overall_verdict\": \"MAYBE\"}", row));
    EXPECT_FALSE(batch_row_from_results_json("{\"overall_verdict\": \"PASS\",}", row));
    EXPECT_FALSE(batch_row_from_results_json("{\"overall_verdict\": \"PASS\"} x", row));
    EXPECT_FALSE(batch_row_from_results_json(
        "{\"overall_verdict\": \"PASS\", \"overall_verdict\": \"FAIL\"}", row));
}

TEST(FlatJsonReader, ReadsTextsAndNumbersWithEscapes) {
    FlatObject json;
    std::string error;
    ASSERT_TRUE(read_flat_json("{\n    \"a\": \"x\\\"\\\\\\t\\n\\r\\u001f/\",\n    \"b\": -12,\n"
                               "    \"c\": 0.500000\n}\n",
                               json, error))
        << error;
    EXPECT_EQ(flat_text(json, "a"), "x\"\\\t\n\r\x1f/");
    EXPECT_EQ(flat_integer(json, "b"), -12);
    EXPECT_EQ(flat_real(json, "c"), 0.5);
    EXPECT_FALSE(flat_integer(json, "c").has_value());
    EXPECT_FALSE(flat_text(json, "b").has_value());
    EXPECT_FALSE(flat_real(json, "a").has_value());
}

TEST(FlatJsonReader, ExplainsAMalformedText) {
    FlatObject json;
    std::string error;
    EXPECT_FALSE(read_flat_json("{\"a\": \"open", json, error));
    EXPECT_NE(error.find("malformed entry"), std::string::npos);
    EXPECT_FALSE(read_flat_json("[1]", json, error));
    EXPECT_EQ(error, "not a JSON object");
    EXPECT_FALSE(read_flat_json("{\"a\": 1, \"a\": 2}", json, error));
    EXPECT_EQ(error, "key written twice: a");
    EXPECT_TRUE(json.empty());
}

} // namespace
