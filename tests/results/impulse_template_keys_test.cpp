// The impulse template block of the results JSON, compared as complete text.
#include "results/impulse_template_keys.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

ImpulseTemplateChannel failed_channel(std::uint64_t fails, std::uint64_t sample, double diff,
                                      double ref_amp, double dut_amp) {
    ImpulseTemplateChannel channel;
    channel.total_fails = fails;
    channel.has_failures = true;
    channel.worst_sample = sample;
    channel.worst_diff = diff;
    channel.worst_ref_amp = ref_amp;
    channel.worst_dut_amp = dut_amp;
    return channel;
}

ImpulseTemplateChannel clean_channel() {
    ImpulseTemplateChannel channel;
    channel.passed = true;
    return channel;
}

std::string block_text(const ImpulseTemplateResult& result) {
    FlatJson json;
    EXPECT_TRUE(json_open(json));
    EXPECT_TRUE(write_impulse_template_keys(json, result));
    return json.text;
}

TEST(ImpulseTemplateKeys, MonoPass) {
    ImpulseTemplateResult result;
    result.channels = 1;
    result.passed = true;
    result.channel[0] = clean_channel();
    EXPECT_EQ(block_text(result), "{\n"
                                  "    \"impulse_template_verdict\": \"PASS\",\n"
                                  "    \"impulse_template_channel_0_total_fails\": 0,\n");
}

TEST(ImpulseTemplateKeys, MonoFailWritesTheWorstKeys) {
    ImpulseTemplateResult result;
    result.channels = 1;
    result.channel[0] = failed_channel(12345678901, 2880001, 0.0683772233983162, 0.0, 1.0000305185);
    EXPECT_EQ(block_text(result), "{\n"
                                  "    \"impulse_template_verdict\": \"FAIL\",\n"
                                  "    \"impulse_template_channel_0_total_fails\": 12345678901,\n"
                                  "    \"impulse_template_channel_0_worst_sample\": 2880001,\n"
                                  "    \"impulse_template_channel_0_worst_diff\": 0.068377,\n"
                                  "    \"impulse_template_channel_0_worst_ref_amp\": 0.000000,\n"
                                  "    \"impulse_template_channel_0_worst_dut_amp\": 1.000031,\n");
}

TEST(ImpulseTemplateKeys, StereoWithOneFailingChannel) {
    ImpulseTemplateResult result;
    result.channels = 2;
    result.channel[0] = clean_channel();
    result.channel[1] = failed_channel(2, 100, 0.25, 0.5, 0.875);
    EXPECT_EQ(block_text(result), "{\n"
                                  "    \"impulse_template_verdict\": \"FAIL\",\n"
                                  "    \"impulse_template_channel_0_total_fails\": 0,\n"
                                  "    \"impulse_template_channel_1_total_fails\": 2,\n"
                                  "    \"impulse_template_channel_1_worst_sample\": 100,\n"
                                  "    \"impulse_template_channel_1_worst_diff\": 0.250000,\n"
                                  "    \"impulse_template_channel_1_worst_ref_amp\": 0.500000,\n"
                                  "    \"impulse_template_channel_1_worst_dut_amp\": 0.875000,\n");
}

TEST(ImpulseTemplateKeys, StereoBothFailing) {
    ImpulseTemplateResult result;
    result.channels = 2;
    result.channel[0] = failed_channel(1, 7, 0.5, 0.0, 0.531622776601684);
    result.channel[1] = failed_channel(3, 9, 0.125, 0.1, 0.375);
    EXPECT_EQ(block_text(result), "{\n"
                                  "    \"impulse_template_verdict\": \"FAIL\",\n"
                                  "    \"impulse_template_channel_0_total_fails\": 1,\n"
                                  "    \"impulse_template_channel_0_worst_sample\": 7,\n"
                                  "    \"impulse_template_channel_0_worst_diff\": 0.500000,\n"
                                  "    \"impulse_template_channel_0_worst_ref_amp\": 0.000000,\n"
                                  "    \"impulse_template_channel_0_worst_dut_amp\": 0.531623,\n"
                                  "    \"impulse_template_channel_1_total_fails\": 3,\n"
                                  "    \"impulse_template_channel_1_worst_sample\": 9,\n"
                                  "    \"impulse_template_channel_1_worst_diff\": 0.125000,\n"
                                  "    \"impulse_template_channel_1_worst_ref_amp\": 0.100000,\n"
                                  "    \"impulse_template_channel_1_worst_dut_amp\": 0.375000,\n");
}

TEST(ImpulseTemplateKeys, StereoPassWritesOnlyTheCounts) {
    ImpulseTemplateResult result;
    result.channels = 2;
    result.passed = true;
    result.channel[0] = clean_channel();
    result.channel[1] = clean_channel();
    EXPECT_EQ(block_text(result), "{\n"
                                  "    \"impulse_template_verdict\": \"PASS\",\n"
                                  "    \"impulse_template_channel_0_total_fails\": 0,\n"
                                  "    \"impulse_template_channel_1_total_fails\": 0,\n");
}

TEST(ImpulseTemplateKeys, StopsAtTheFirstEntryThatFails) {
    ImpulseTemplateResult result;
    result.channels = 2;
    result.channel[1] = failed_channel(2, 100, 0.25, 0.5, 0.875);
    const std::string full = block_text(result);
    const std::size_t failing = full.find("    \"impulse_template_channel_1_worst_ref_amp\"");
    ASSERT_NE(failing, std::string::npos);
    // A NaN amplitude fails its entry; the entries before it stay and none after it is written.
    result.channel[1].worst_ref_amp = std::numeric_limits<double>::quiet_NaN();
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_FALSE(write_impulse_template_keys(json, result));
    EXPECT_EQ(json.text, full.substr(0, failing));
}

} // namespace
