// The level fidelity block of the results JSON, compared as complete text.
#include "results/level_fidelity_keys.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

LevelFidelityChannel measured_channel() {
    LevelFidelityChannel c;
    c.passed = true;
    c.samples_included = 28800000;
    c.samples_excluded = 1234;
    c.median_db = 0.0125;
    c.mad_db = 0.003;
    c.p99_abs_db = 0.9876543;
    c.has_data = true;
    c.worst_sample = 4294967296;
    c.worst_diff_db = -3.25;
    c.worst_ref_amp = 0.5;
    c.worst_dut_amp = 0.3346;
    c.longest_sustained_run_ms = 19.0;
    c.sustained_fail = false;
    return c;
}

std::string written(const LevelFidelityResult& r) {
    FlatJson json;
    EXPECT_TRUE(json_open(json));
    EXPECT_TRUE(write_level_fidelity_keys(json, r));
    return json.text;
}

const char* const kChannel0 =
    "    \"levelfidelity_channel_0_samples_included\": 28800000,\n"
    "    \"levelfidelity_channel_0_samples_excluded\": 1234,\n"
    "    \"levelfidelity_channel_0_median_db\": 0.012500,\n"
    "    \"levelfidelity_channel_0_mad_db\": 0.003000,\n"
    "    \"levelfidelity_channel_0_p99_abs_db\": 0.987654,\n"
    "    \"levelfidelity_channel_0_longest_sustained_run_ms\": 19.000000,\n"
    "    \"levelfidelity_channel_0_worst_sample\": 4294967296,\n"
    "    \"levelfidelity_channel_0_worst_diff_db\": -3.250000,\n"
    "    \"levelfidelity_channel_0_worst_ref_amp\": 0.500000,\n"
    "    \"levelfidelity_channel_0_worst_dut_amp\": 0.334600,\n";

TEST(LevelFidelityKeys, MonoPassWritesTenChannelKeys) {
    LevelFidelityResult r;
    r.channels = 1;
    r.passed = true;
    r.channel[0] = measured_channel();
    // Channel 1 holds data but a mono reference never writes it.
    r.channel[1] = measured_channel();
    EXPECT_EQ(written(r), std::string("{\n    \"levelfidelity_verdict\": \"PASS\",\n") + kChannel0);
}

TEST(LevelFidelityKeys, StereoFailWithAnEmptyChannelOmitsItsWorstSample) {
    LevelFidelityResult r;
    r.channels = 2;
    r.passed = false;
    r.channel[0] = measured_channel();
    r.channel[1].passed = false;
    r.channel[1].samples_excluded = 480000;
    r.channel[1].longest_sustained_run_ms = 20.0;
    EXPECT_EQ(written(r),
              std::string("{\n    \"levelfidelity_verdict\": \"FAIL\",\n") + kChannel0 +
                  "    \"levelfidelity_channel_1_samples_included\": 0,\n"
                  "    \"levelfidelity_channel_1_samples_excluded\": 480000,\n"
                  "    \"levelfidelity_channel_1_median_db\": 0.000000,\n"
                  "    \"levelfidelity_channel_1_mad_db\": 0.000000,\n"
                  "    \"levelfidelity_channel_1_p99_abs_db\": 0.000000,\n"
                  "    \"levelfidelity_channel_1_longest_sustained_run_ms\": 20.000000,\n");
}

TEST(LevelFidelityKeys, StereoWithDataInBothChannels) {
    LevelFidelityResult r;
    r.channels = 2;
    r.passed = true;
    r.channel[0] = measured_channel();
    r.channel[1] = measured_channel();
    std::string channel1 = kChannel0;
    for (std::size_t at = channel1.find("channel_0"); at != std::string::npos;
         at = channel1.find("channel_0", at))
        channel1.replace(at, 9, "channel_1");
    EXPECT_EQ(written(r),
              std::string("{\n    \"levelfidelity_verdict\": \"PASS\",\n") + kChannel0 + channel1);
}

TEST(LevelFidelityKeys, SilentMonoPassHasNoWorstSampleKeys) {
    LevelFidelityResult r;
    r.channels = 1;
    r.passed = true;
    r.channel[0].passed = true;
    r.channel[0].samples_excluded = 48000;
    EXPECT_EQ(written(r), "{\n"
                          "    \"levelfidelity_verdict\": \"PASS\",\n"
                          "    \"levelfidelity_channel_0_samples_included\": 0,\n"
                          "    \"levelfidelity_channel_0_samples_excluded\": 48000,\n"
                          "    \"levelfidelity_channel_0_median_db\": 0.000000,\n"
                          "    \"levelfidelity_channel_0_mad_db\": 0.000000,\n"
                          "    \"levelfidelity_channel_0_p99_abs_db\": 0.000000,\n"
                          "    \"levelfidelity_channel_0_longest_sustained_run_ms\": 0.000000,\n");
}

TEST(LevelFidelityKeys, StopsAtTheFirstEntryThatFails) {
    LevelFidelityResult r;
    r.channels = 2;
    r.channel[0] = measured_channel();
    r.channel[1] = measured_channel();
    const std::string full = written(r);
    const std::size_t failing = full.find("    \"levelfidelity_channel_1_mad_db\"");
    ASSERT_NE(failing, std::string::npos);
    // A NaN statistic fails its entry; the entries before it stay and none after it is written.
    r.channel[1].mad_db = std::numeric_limits<double>::quiet_NaN();
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_FALSE(write_level_fidelity_keys(json, r));
    EXPECT_EQ(json.text, full.substr(0, failing));
}

} // namespace
