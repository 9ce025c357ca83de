#include "results/results.h"

#include "support/junit_schema.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<BatchRow> rows() {
    BatchRow pass{"a", "a.wav", "ad.wav", "PASS", "", "", 0, 0.1, {}, {}, 0, 1.25, "a.html"};
    BatchRow fail{"b<&>", "b.wav", "bd.wav", "FAIL", "Level Fidelity", "", -3, 2.5,
                  {},     -70.0,   1,        2.0,    "b.html"};
    BatchRow error{"c", "c.wav", "cd.wav", "ERROR", "",      "bad \"file\"\n\x01here", {}, {},
                   {},  {},      {},       0.5,     "c.html"};
    return {pass, fail, error};
}

TEST(BatchJunit, OneSuiteOneCasePerPairWithCounts) {
    std::string xml;
    ASSERT_TRUE(write_batch_junit("pairs.tsv", rows(), 3.75, xml));
    EXPECT_NE(xml.find("<testsuite name=\"pairs.tsv\" tests=\"3\" failures=\"1\" errors=\"1\" "
                       "time=\"3.750\">"),
              std::string::npos);
    EXPECT_NE(xml.find("<testcase classname=\"pairs.tsv\" name=\"a\" time=\"1.250\"/>"),
              std::string::npos);
    EXPECT_NE(xml.find("<testcase classname=\"pairs.tsv\" name=\"b&lt;&amp;&gt;\" "
                       "time=\"2.000\">\n      <failure message=\"Level Fidelity\">"),
              std::string::npos);
    EXPECT_NE(xml.find("level p99 deviation: 2.500 dB&#10;"), std::string::npos);
    EXPECT_NE(xml.find("THD+N: -70.000 dB&#10;"), std::string::npos);
    EXPECT_EQ(xml.find("loudness delta"), std::string::npos);
    EXPECT_NE(xml.find("<error message=\"bad &quot;file&quot;&#10;?here\">"), std::string::npos);
}

TEST(BatchJunit, ValidatesAgainstTheJunitSchema) {
    std::string xml;
    ASSERT_TRUE(write_batch_junit("odd \"name\" & <suite>", rows(), 3.75, xml));
    const SchemaCheck check = validate_junit_text(xml);
    EXPECT_TRUE(check.valid) << check.messages << xml;
}

TEST(BatchJunit, SchemaRefusesABrokenFile) {
    std::string xml;
    ASSERT_TRUE(write_batch_junit("pairs", rows(), 1.0, xml));
    xml.replace(xml.find(" tests=\"3\""), 10, "");
    EXPECT_FALSE(validate_junit_text(xml).valid);
}

TEST(AnalyzeJunit, ErrorRunIsOneErrorCase) {
    std::string xml;
    ASSERT_TRUE(write_analyze_error_junit("cannot read --ref", "r.wav", "d.wav", xml));
    EXPECT_NE(xml.find("tests=\"1\" failures=\"0\" errors=\"1\""), std::string::npos);
    EXPECT_NE(xml.find("<testcase classname=\"d.wav\" name=\"analyze\" time=\"0.000\">\n"
                       "      <error message=\"cannot read --ref\">cannot read --ref&#10;ref: "
                       "r.wav&#10;dut: d.wav</error>"),
              std::string::npos);
    const SchemaCheck check = validate_junit_text(xml);
    EXPECT_TRUE(check.valid) << check.messages;
}

} // namespace
