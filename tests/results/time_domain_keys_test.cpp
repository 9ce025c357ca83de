// The Time Domain block of the results JSON, compared as complete text.
#include "results/time_domain_keys.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

TimeDomainChannel passing_channel() {
    TimeDomainChannel c;
    c.passed = true;
    c.samples_included = 28799000;
    c.samples_excluded = 1000;
    return c;
}

TimeDomainChannel failing_channel() {
    TimeDomainChannel c;
    c.samples_included = 480000;
    c.samples_excluded = 12;
    c.total_fails = 7;
    c.has_failures = true;
    c.worst_sample = 123456;
    c.worst_diff_pct = 99.98;
    c.worst_ref_amp = 0.5;
    c.worst_dut_amp = -0.00005;
    c.worst_tolerance_pct = 10.0;
    c.fails_low_level_signal_tier = 1;
    c.fails_signal_tier = 2;
    c.fails_peak_tier = 4;
    return c;
}

std::string written(const TimeDomainResult& r) {
    FlatJson json;
    EXPECT_TRUE(json_open(json));
    EXPECT_TRUE(write_time_domain_keys(json, r));
    return json.text;
}

const char* const kPassingChannel0 =
    "    \"time_domain_channel_0_samples_included\": 28799000,\n"
    "    \"time_domain_channel_0_samples_excluded\": 1000,\n"
    "    \"time_domain_channel_0_total_fails\": 0,\n"
    "    \"time_domain_channel_0_fails_low_level_signal_tier\": 0,\n"
    "    \"time_domain_channel_0_fails_signal_tier\": 0,\n"
    "    \"time_domain_channel_0_fails_peak_tier\": 0,\n";

TEST(TimeDomainKeys, MonoPassHasNoWorstKeysAndNoSecondChannel) {
    TimeDomainResult r;
    r.channels = 1;
    r.passed = true;
    r.channel[0] = passing_channel();
    r.channel[1] = failing_channel(); // never written for a mono file
    EXPECT_EQ(written(r),
              std::string("{\n    \"time_domain_verdict\": \"PASS\",\n") + kPassingChannel0);
}

TEST(TimeDomainKeys, MonoFailAddsTheWorstKeys) {
    TimeDomainResult r;
    r.channels = 1;
    r.channel[0] = failing_channel();
    EXPECT_EQ(written(r), "{\n"
                          "    \"time_domain_verdict\": \"FAIL\",\n"
                          "    \"time_domain_channel_0_samples_included\": 480000,\n"
                          "    \"time_domain_channel_0_samples_excluded\": 12,\n"
                          "    \"time_domain_channel_0_total_fails\": 7,\n"
                          "    \"time_domain_channel_0_fails_low_level_signal_tier\": 1,\n"
                          "    \"time_domain_channel_0_fails_signal_tier\": 2,\n"
                          "    \"time_domain_channel_0_fails_peak_tier\": 4,\n"
                          "    \"time_domain_channel_0_worst_sample\": 123456,\n"
                          "    \"time_domain_channel_0_worst_diff_pct\": 99.980000,\n"
                          "    \"time_domain_channel_0_worst_ref_amp\": 0.500000,\n"
                          "    \"time_domain_channel_0_worst_dut_amp\": -0.000050,\n"
                          "    \"time_domain_channel_0_worst_tolerance_pct\": 10.000000,\n");
}

TEST(TimeDomainKeys, StereoWritesBothChannelsInOrder) {
    TimeDomainResult r;
    r.channels = 2;
    r.channel[0] = passing_channel();
    r.channel[1] = failing_channel();
    EXPECT_EQ(written(r), std::string("{\n    \"time_domain_verdict\": \"FAIL\",\n") +
                              kPassingChannel0 +
                              "    \"time_domain_channel_1_samples_included\": 480000,\n"
                              "    \"time_domain_channel_1_samples_excluded\": 12,\n"
                              "    \"time_domain_channel_1_total_fails\": 7,\n"
                              "    \"time_domain_channel_1_fails_low_level_signal_tier\": 1,\n"
                              "    \"time_domain_channel_1_fails_signal_tier\": 2,\n"
                              "    \"time_domain_channel_1_fails_peak_tier\": 4,\n"
                              "    \"time_domain_channel_1_worst_sample\": 123456,\n"
                              "    \"time_domain_channel_1_worst_diff_pct\": 99.980000,\n"
                              "    \"time_domain_channel_1_worst_ref_amp\": 0.500000,\n"
                              "    \"time_domain_channel_1_worst_dut_amp\": -0.000050,\n"
                              "    \"time_domain_channel_1_worst_tolerance_pct\": 10.000000,\n");
}

TEST(TimeDomainKeys, StopsAtTheFirstEntryThatFails) {
    TimeDomainResult r;
    r.channels = 2;
    r.channel[0] = failing_channel();
    r.channel[1] = failing_channel();
    const std::string full = written(r);
    const std::size_t failing = full.find("    \"time_domain_channel_0_worst_ref_amp\"");
    ASSERT_NE(failing, std::string::npos);
    // A NaN amplitude fails its entry; the entries before it stay and none after it is written.
    r.channel[0].worst_ref_amp = std::numeric_limits<double>::quiet_NaN();
    FlatJson json;
    ASSERT_TRUE(json_open(json));
    EXPECT_FALSE(write_time_domain_keys(json, r));
    EXPECT_EQ(json.text, full.substr(0, failing));
}

} // namespace
