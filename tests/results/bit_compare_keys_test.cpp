#include "results/bit_compare_keys.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

FlatJson opened() {
    FlatJson json;
    EXPECT_TRUE(json_open(json));
    return json;
}

BitCompareResult identical_mono() {
    BitCompareResult r;
    r.passed = true;
    r.samples_compared = 480000;
    return r;
}

// A stereo pair whose first difference is in channel 1 and whose worst is the most negative code
// against positive full scale in channel 0.
BitCompareResult differing_stereo() {
    BitCompareResult r;
    r.samples_compared = 9600000;
    r.samples_differing = 3;
    r.first_diff_frame = 12;
    r.first_diff_channel = 1;
    r.first_diff_ref_value = 0.25;
    r.first_diff_dut_value = -0.125;
    r.max_error_db = 95.99986791631642;
    r.worst_diff_frame = 4800001;
    r.worst_diff_channel = 0;
    r.worst_diff_ref_value = -32768.0 / 32767.0;
    r.worst_diff_dut_value = 1.0;
    return r;
}

TEST(BitCompareKeys, BitexactPassWritesFourKeys) {
    FlatJson json = opened();
    ASSERT_TRUE(write_bitexact_keys(json, identical_mono()));
    EXPECT_EQ(json.text, "{\n"
                         "    \"bitexact_verdict\": \"PASS\",\n"
                         "    \"bitexact_samples_compared\": 480000,\n"
                         "    \"bitexact_samples_differing\": 0,\n"
                         "    \"bitexact_max_error_db\": -999.000000,\n");
}

TEST(BitCompareKeys, BitexactFailMonoWritesFirstAndWorst) {
    BitCompareResult r;
    r.samples_compared = 2;
    r.samples_differing = 1;
    r.first_diff_frame = 1;
    r.first_diff_ref_value = 100.0 / 32767.0;
    r.first_diff_dut_value = 101.0 / 32767.0;
    r.max_error_db = 0.0;
    r.worst_diff_frame = 1;
    r.worst_diff_ref_value = 100.0 / 32767.0;
    r.worst_diff_dut_value = 101.0 / 32767.0;
    FlatJson json = opened();
    ASSERT_TRUE(write_bitexact_keys(json, r));
    EXPECT_EQ(json.text, "{\n"
                         "    \"bitexact_verdict\": \"FAIL\",\n"
                         "    \"bitexact_samples_compared\": 2,\n"
                         "    \"bitexact_samples_differing\": 1,\n"
                         "    \"bitexact_max_error_db\": 0.000000,\n"
                         "    \"bitexact_first_diff_frame\": 1,\n"
                         "    \"bitexact_first_diff_channel\": 0,\n"
                         "    \"bitexact_first_diff_ref_value\": 0.003052,\n"
                         "    \"bitexact_first_diff_dut_value\": 0.003082,\n"
                         "    \"bitexact_worst_diff_frame\": 1,\n"
                         "    \"bitexact_worst_diff_channel\": 0,\n"
                         "    \"bitexact_worst_diff_ref_value\": 0.003052,\n"
                         "    \"bitexact_worst_diff_dut_value\": 0.003082,\n");
}

TEST(BitCompareKeys, BitexactFailStereoWritesFirstAndWorst) {
    FlatJson json = opened();
    ASSERT_TRUE(write_bitexact_keys(json, differing_stereo()));
    EXPECT_EQ(json.text, "{\n"
                         "    \"bitexact_verdict\": \"FAIL\",\n"
                         "    \"bitexact_samples_compared\": 9600000,\n"
                         "    \"bitexact_samples_differing\": 3,\n"
                         "    \"bitexact_max_error_db\": 95.999868,\n"
                         "    \"bitexact_first_diff_frame\": 12,\n"
                         "    \"bitexact_first_diff_channel\": 1,\n"
                         "    \"bitexact_first_diff_ref_value\": 0.250000,\n"
                         "    \"bitexact_first_diff_dut_value\": -0.125000,\n"
                         "    \"bitexact_worst_diff_frame\": 4800001,\n"
                         "    \"bitexact_worst_diff_channel\": 0,\n"
                         "    \"bitexact_worst_diff_ref_value\": -1.000031,\n"
                         "    \"bitexact_worst_diff_dut_value\": 1.000000,\n");
}

TEST(BitCompareKeys, BitAccuracyPassWritesVerdictAndTolerance) {
    FlatJson json = opened();
    ASSERT_TRUE(write_bit_accuracy_keys(json, identical_mono(), 108.0));
    EXPECT_EQ(json.text, "{\n"
                         "    \"bit_accuracy_verdict\": \"PASS\",\n"
                         "    \"bit_accuracy_tolerance_db\": 108.000000,\n");
}

TEST(BitCompareKeys, BitAccuracyFailStereoWritesTheWorstDifference) {
    FlatJson json = opened();
    ASSERT_TRUE(write_bit_accuracy_keys(json, differing_stereo(), 90.5));
    EXPECT_EQ(json.text, "{\n"
                         "    \"bit_accuracy_verdict\": \"FAIL\",\n"
                         "    \"bit_accuracy_tolerance_db\": 90.500000,\n"
                         "    \"bit_accuracy_worst_diff_frame\": 4800001,\n"
                         "    \"bit_accuracy_worst_diff_channel\": 0,\n"
                         "    \"bit_accuracy_worst_diff_ref_value\": -1.000031,\n"
                         "    \"bit_accuracy_worst_diff_dut_value\": 1.000000,\n");
}

TEST(BitCompareKeys, BitAccuracyFailOnEmptyOverlapWritesZeroedWorst) {
    BitCompareResult empty;
    FlatJson json = opened();
    ASSERT_TRUE(write_bit_accuracy_keys(json, empty, 108.0));
    EXPECT_EQ(json.text, "{\n"
                         "    \"bit_accuracy_verdict\": \"FAIL\",\n"
                         "    \"bit_accuracy_tolerance_db\": 108.000000,\n"
                         "    \"bit_accuracy_worst_diff_frame\": 0,\n"
                         "    \"bit_accuracy_worst_diff_channel\": 0,\n"
                         "    \"bit_accuracy_worst_diff_ref_value\": 0.000000,\n"
                         "    \"bit_accuracy_worst_diff_dut_value\": 0.000000,\n");
}

TEST(BitCompareKeys, StopsAtTheFirstEntryThatFails) {
    // A NaN error fails the fourth entry: the verdict and the two counts stay.
    BitCompareResult r = differing_stereo();
    r.max_error_db = std::numeric_limits<double>::quiet_NaN();
    FlatJson json = opened();
    EXPECT_FALSE(write_bitexact_keys(json, r));
    EXPECT_EQ(json.text, "{\n"
                         "    \"bitexact_verdict\": \"FAIL\",\n"
                         "    \"bitexact_samples_compared\": 9600000,\n"
                         "    \"bitexact_samples_differing\": 3,\n");
    FlatJson accuracy = opened();
    EXPECT_FALSE(write_bit_accuracy_keys(accuracy, differing_stereo(),
                                         std::numeric_limits<double>::infinity()));
    EXPECT_EQ(accuracy.text, "{\n    \"bit_accuracy_verdict\": \"FAIL\",\n");
}

} // namespace
