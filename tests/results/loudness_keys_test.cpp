// The loudness block of the results JSON, compared as complete text.
#include "results/loudness_keys.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

LoudnessResult measured_result() {
    LoudnessResult r;
    r.ref = {-23.0412346, 7.25, -1.0000004, -1.5, -19.875, -20.5};
    r.dut = {-22.5, 7.0, -0.25, -0.75, -19.0, -20.0};
    r.delta_integrated_lu = 0.5412345;
    r.delta_true_peak_db = 0.7500004;
    r.delta_range_lu = -0.25;
    r.delta_max_momentary_lu = 0.875;
    r.delta_max_short_term_lu = 0.5;
    r.delta_sample_peak_db = 0.75;
    return r;
}

std::string written(const LoudnessResult& r) {
    FlatJson json;
    EXPECT_TRUE(json_open(json));
    EXPECT_TRUE(write_loudness_keys(json, r));
    return json.text;
}

TEST(LoudnessKeys, FailWritesEveryFigureInOrder) {
    LoudnessResult r = measured_result();
    r.passed = false;
    EXPECT_EQ(written(r), "{\n"
                          "    \"loudness_verdict\": \"FAIL\",\n"
                          "    \"loudness_ref_integrated_lufs\": -23.041235,\n"
                          "    \"loudness_dut_integrated_lufs\": -22.500000,\n"
                          "    \"loudness_delta_integrated_lu\": 0.541234,\n"
                          "    \"loudness_ref_lra_lu\": 7.250000,\n"
                          "    \"loudness_dut_lra_lu\": 7.000000,\n"
                          "    \"loudness_delta_lra_lu\": -0.250000,\n"
                          "    \"loudness_ref_true_peak_dbtp\": -1.000000,\n"
                          "    \"loudness_dut_true_peak_dbtp\": -0.250000,\n"
                          "    \"loudness_delta_true_peak_db\": 0.750000,\n"
                          "    \"loudness_ref_sample_peak_dbfs\": -1.500000,\n"
                          "    \"loudness_dut_sample_peak_dbfs\": -0.750000,\n"
                          "    \"loudness_delta_sample_peak_db\": 0.750000,\n"
                          "    \"loudness_ref_max_momentary_lufs\": -19.875000,\n"
                          "    \"loudness_dut_max_momentary_lufs\": -19.000000,\n"
                          "    \"loudness_delta_max_momentary_lu\": 0.875000,\n"
                          "    \"loudness_ref_max_short_term_lufs\": -20.500000,\n"
                          "    \"loudness_dut_max_short_term_lufs\": -20.000000,\n"
                          "    \"loudness_delta_max_short_term_lu\": 0.500000,\n");
}

TEST(LoudnessKeys, SilentPassWritesTheInitialValues) {
    // Two silent files (mono or stereo alike: the block has no per-channel keys).
    LoudnessResult r;
    r.passed = true;
    EXPECT_EQ(written(r), "{\n"
                          "    \"loudness_verdict\": \"PASS\",\n"
                          "    \"loudness_ref_integrated_lufs\": -200.000000,\n"
                          "    \"loudness_dut_integrated_lufs\": -200.000000,\n"
                          "    \"loudness_delta_integrated_lu\": 0.000000,\n"
                          "    \"loudness_ref_lra_lu\": 0.000000,\n"
                          "    \"loudness_dut_lra_lu\": 0.000000,\n"
                          "    \"loudness_delta_lra_lu\": 0.000000,\n"
                          "    \"loudness_ref_true_peak_dbtp\": -200.000000,\n"
                          "    \"loudness_dut_true_peak_dbtp\": -200.000000,\n"
                          "    \"loudness_delta_true_peak_db\": 0.000000,\n"
                          "    \"loudness_ref_sample_peak_dbfs\": -200.000000,\n"
                          "    \"loudness_dut_sample_peak_dbfs\": -200.000000,\n"
                          "    \"loudness_delta_sample_peak_db\": 0.000000,\n"
                          "    \"loudness_ref_max_momentary_lufs\": -200.000000,\n"
                          "    \"loudness_dut_max_momentary_lufs\": -200.000000,\n"
                          "    \"loudness_delta_max_momentary_lu\": 0.000000,\n"
                          "    \"loudness_ref_max_short_term_lufs\": -200.000000,\n"
                          "    \"loudness_dut_max_short_term_lufs\": -200.000000,\n"
                          "    \"loudness_delta_max_short_term_lu\": 0.000000,\n");
}

TEST(LoudnessKeys, StopsAtTheFirstEntryThatFails) {
    LoudnessResult r = measured_result();
    r.passed = true;
    // A NaN delta fails the third entry: the verdict and the first two figures stay.
    r.delta_integrated_lu = std::numeric_limits<double>::quiet_NaN();
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_FALSE(write_loudness_keys(json, r));
    EXPECT_EQ(json.text, "{\n    \"loudness_verdict\": \"PASS\",\n"
                         "    \"loudness_ref_integrated_lufs\": -23.041235,\n"
                         "    \"loudness_dut_integrated_lufs\": -22.500000,\n");
}

TEST(LoudnessKeys, InfiniteFirstFigureLeavesOnlyTheVerdict) {
    LoudnessResult r = measured_result();
    r.ref.integrated_lufs = -std::numeric_limits<double>::infinity();
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_FALSE(write_loudness_keys(json, r));
    EXPECT_EQ(json.text, "{\n    \"loudness_verdict\": \"FAIL\",\n");
}

} // namespace
