#include "results/results_json.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ErrorJson, CompleteText) {
    std::string json;
    ASSERT_TRUE(build_error_json("--ref sample rate 16000 Hz is outside the supported range "
                                 "[22050, 192000] Hz; --dut has 3 channel(s)",
                                 "in/ref.wav", "in/\"dut\".wav", json));
    EXPECT_EQ(json, "{\n"
                    "    \"sonalyx_phase\": 2,\n"
                    "    \"status\": \"error\",\n"
                    "    \"overall_verdict\": \"ERROR\",\n"
                    "    \"error\": \"--ref sample rate 16000 Hz is outside the supported range "
                    "[22050, 192000] Hz; --dut has 3 channel(s)\",\n"
                    "    \"ref_file\": \"in/ref.wav\",\n"
                    "    \"dut_file\": \"in/\\\"dut\\\".wav\"\n"
                    "}\n");
}

TEST(ErrorJson, MultiLineErrorTextIsEscaped) {
    std::string json;
    ASSERT_TRUE(build_error_json("line one\nline\ttwo\r", "r.wav", "d.wav", json));
    EXPECT_NE(json.find("    \"error\": \"line one\\nline\\ttwo\\r\",\n"), std::string::npos);
}

TEST(ErrorJson, ErrorTextOver510EscapedCharactersFails) {
    // The run's error text may hold up to 1600 bytes, but an entry takes at most 510 escaped
    // characters, so a longer text cannot be written.
    std::string json = "stale";
    EXPECT_FALSE(build_error_json(std::string(511, 'e'), "r.wav", "d.wav", json));
    EXPECT_EQ(json, "");
    EXPECT_TRUE(build_error_json(std::string(510, 'e'), "r.wav", "d.wav", json));
}

TEST(ErrorJson, ThreeLongestValuesFitThe4096Bytes) {
    const std::string error(510, 'e');
    const std::string path(510, 'p');
    std::string json;
    ASSERT_TRUE(build_error_json(error, path.c_str(), path.c_str(), json));
    EXPECT_EQ(json, "{\n    \"sonalyx_phase\": 2,\n    \"status\": \"error\",\n"
                    "    \"overall_verdict\": \"ERROR\",\n    \"error\": \"" +
                        error + "\",\n    \"ref_file\": \"" + path + "\",\n    \"dut_file\": \"" +
                        path + "\"\n}\n");
    EXPECT_EQ(json.size(), 1669u);
}

} // namespace
