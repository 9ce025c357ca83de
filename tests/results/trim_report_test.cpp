// The trim report: key order and formats with and without repetition checks, long paths, escaped
// control bytes and a strict parse of the result.
#include "results/trim_report.h"

#include "support/python_json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

TrimPoints found_points() {
    TrimPoints points;
    points.leading = {true, 4800, 1, 41.25, 0.9995, 4, {30.5, 31.0, 29.75, 33.125}};
    points.trailing = {true, 1234567, 0, 38.0, 1.0, 4, {28.0, 27.5, 26.25, 25.0}};
    points.sync_point = 4800 + 36000;
    points.trim_point = 1234567;
    return points;
}

TEST(TrimReport, KeysInOrderWithRepetitionPsrs) {
    std::string json;
    ASSERT_TRUE(build_trim_report_json("in \"take\".wav", found_points(), json));
    EXPECT_EQ(json, "{\n"
                    "    \"input_file\": \"in \\\"take\\\".wav\",\n"
                    "    \"leading_sample_offset\": 4800,\n"
                    "    \"leading_channel\": 1,\n"
                    "    \"leading_psr\": 41.250000,\n"
                    "    \"leading_similarity\": 0.999500,\n"
                    "    \"leading_rep_psr_0\": 30.500000,\n"
                    "    \"leading_rep_psr_1\": 31.000000,\n"
                    "    \"leading_rep_psr_2\": 29.750000,\n"
                    "    \"leading_rep_psr_3\": 33.125000,\n"
                    "    \"trailing_sample_offset\": 1234567,\n"
                    "    \"trailing_channel\": 0,\n"
                    "    \"trailing_psr\": 38.000000,\n"
                    "    \"trailing_similarity\": 1.000000,\n"
                    "    \"trailing_rep_psr_0\": 28.000000,\n"
                    "    \"trailing_rep_psr_1\": 27.500000,\n"
                    "    \"trailing_rep_psr_2\": 26.250000,\n"
                    "    \"trailing_rep_psr_3\": 25.000000,\n"
                    "    \"sync_point\": 40800,\n"
                    "    \"trim_point\": 1234567\n"
                    "}\n");
}

TEST(TrimReport, RepetitionKeysOnlyWhenChecksWereMade) {
    TrimPoints points = found_points();
    points.trailing.rep_count = 0;
    std::string json;
    ASSERT_TRUE(build_trim_report_json("a.wav", points, json));
    EXPECT_EQ(json.find("trailing_rep_psr"), std::string::npos);
    EXPECT_NE(json.find("    \"trailing_similarity\": 1.000000,\n    \"sync_point\": 40800,\n"),
              std::string::npos);
}

TEST(TrimReport, LongPathIsWrittenWhole) {
    const std::string path = std::string(4000, 'a') + std::string(1000, '\\');
    std::string json;
    ASSERT_TRUE(build_trim_report_json(path.c_str(), found_points(), json));
    EXPECT_TRUE(json.starts_with("{\n    \"input_file\": \"" + std::string(4000, 'a') +
                                 std::string(2000, '\\') + "\",\n    \"leading_sample_offset\""));
    EXPECT_TRUE(json.ends_with("    \"trim_point\": 1234567\n}\n"));
}

TEST(TrimReport, ControlBytesInThePathBecomeUnicodeEscapes) {
    std::string json;
    ASSERT_TRUE(build_trim_report_json("cap\x01\x1b\x1f\x7f.wav", found_points(), json));
    EXPECT_TRUE(json.starts_with("{\n    \"input_file\": \"cap\\u0001\\u001b\\u001f\x7f.wav\",\n"));
}

TEST(TrimReport, NonFiniteMeasurementFailsTheReport) {
    TrimPoints points = found_points();
    points.trailing.psr = std::numeric_limits<double>::infinity();
    std::string json = "old";
    EXPECT_FALSE(build_trim_report_json("a.wav", points, json));
    EXPECT_EQ(json, "");
}

// The report parses with a strict JSON parser and gives the path back byte for byte.
TEST(TrimReport, StrictParserReadsThePathBack) {
    const std::string path = awkward_path(1000);
    std::string json;
    ASSERT_TRUE(build_trim_report_json(path.c_str(), found_points(), json));
    const PythonJson parsed = python_json(json, {"input_file"});
    ASSERT_TRUE(parsed.parsed) << parsed.error;
    EXPECT_EQ(parsed.values, std::vector<std::string>{path});
}

} // namespace
