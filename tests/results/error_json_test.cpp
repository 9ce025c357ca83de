#include "results/results_json.h"

#include "support/python_json.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

TEST(ErrorJson, LongErrorTextAndPathsAreWrittenWhole) {
    const std::string error(5000, 'e');
    // 5,000 characters each; the backslashes and quotes double when escaped.
    const std::string ref_path = std::string(4000, 'r') + std::string(1000, '\\');
    const std::string dut_path = std::string(4000, 'd') + std::string(1000, '"');
    std::string json;
    ASSERT_TRUE(build_error_json(error, ref_path.c_str(), dut_path.c_str(), json));
    std::string escaped_dut = std::string(4000, 'd');
    for (int i = 0; i < 1000; ++i)
        escaped_dut += "\\\"";
    EXPECT_EQ(json, "{\n    \"sonalyx_phase\": 2,\n    \"status\": \"error\",\n"
                    "    \"overall_verdict\": \"ERROR\",\n    \"error\": \"" +
                        error + "\",\n    \"ref_file\": \"" + std::string(4000, 'r') +
                        std::string(2000, '\\') + "\",\n    \"dut_file\": \"" + escaped_dut +
                        "\"\n}\n");
    EXPECT_EQ(json.size(), 139u + 5000u + 6000u + 6000u);
}

TEST(ErrorJson, ControlBytesBecomeUnicodeEscapes) {
    std::string json;
    ASSERT_TRUE(build_error_json("bad\x01pick\x1b", "r\x1f.wav", "d\x7f.wav", json));
    EXPECT_NE(json.find("    \"error\": \"bad\\u0001pick\\u001b\",\n"
                        "    \"ref_file\": \"r\\u001f.wav\",\n"
                        "    \"dut_file\": \"d\x7f.wav\"\n}\n"),
              std::string::npos);
}

// The text parses with a strict JSON parser and gives the error text and paths back.
TEST(ErrorJson, StrictParserReadsEveryTextBack) {
    const std::string error = "line one\nline\ttwo\r \x01\x1b\x7f \"q\" \\";
    const std::string ref_path = awkward_path(1000);
    const std::string dut_path = "\x01\x1b\x7f.wav";
    std::string json;
    ASSERT_TRUE(build_error_json(error, ref_path.c_str(), dut_path.c_str(), json));
    const PythonJson parsed = python_json(json, {"error", "ref_file", "dut_file"});
    ASSERT_TRUE(parsed.parsed) << parsed.error;
    EXPECT_EQ(parsed.values, (std::vector<std::string>{error, ref_path, dut_path}));
}

} // namespace
