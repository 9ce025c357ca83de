// analyze --junit: the JUnit file beside the report, one test case per check, written with the
// report and its JSON or not at all, and its ERROR form.
#include "analyze_fixture.h"
#include "cli_test_support.h"
#include "support/junit_schema.h"

#include "results/results.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;

struct JunitRun {
    TempDir dir;
    std::string ref = dir.file("ref.wav");
    std::string dut = dir.file("dut.wav");
    std::string out = dir.file("r.html");
    std::string json = dir.file("r.json");
    std::string junit = dir.file("r.xml");

    void write_pair(double dut_gain) const {
        const std::vector<double> samples = test_noise(5, kRate / 2);
        std::vector<double> scaled = samples;
        for (double& sample : scaled)
            sample *= dut_gain;
        write_wav(ref, kRate, 1, samples);
        write_wav(dut, kRate, 1, scaled);
    }

    ProcessOutput run(const std::string& junit_path) const {
        return run_sonalyx({"analyze", "--ref", ref, "--dut", dut, "--out", out, "--json",
                            "--quiet", "--exit-code", "--junit", junit_path});
    }
};

TEST(AnalyzeJunit, PassingPairHasOnePassingCasePerCheck) {
    const JunitRun r;
    r.write_pair(1.0);
    const ProcessOutput run = r.run(r.junit);
    ASSERT_EQ(run.exit_status, 0) << run.err;
    EXPECT_TRUE(
        has(run.out, "wrote " + r.out + " + " + r.json + " + " + r.junit + " (overall: PASS)\n"));
    const std::string xml = read_text_file(r.junit);
    const SchemaCheck check = validate_junit_file(r.junit);
    EXPECT_TRUE(check.valid) << check.messages << xml;
    EXPECT_TRUE(has(xml, "failures=\"0\" errors=\"0\""));
    EXPECT_TRUE(has(xml, "<testcase classname=\"" + r.dut + "\" name=\"Level Fidelity\""));
    EXPECT_TRUE(has(xml, "name=\"Length Mismatch\""));
    EXPECT_FALSE(has(xml, "name=\"Time Domain\"")); // did not run
    EXPECT_FALSE(has(xml, "<failure"));
}

TEST(AnalyzeJunit, GatingFailuresBecomeFailures) {
    const JunitRun r;
    r.write_pair(0.5);
    const ProcessOutput run = r.run(r.junit);
    ASSERT_EQ(run.exit_status, 2) << run.err;
    const std::string xml = read_text_file(r.junit);
    EXPECT_TRUE(validate_junit_file(r.junit).valid) << xml;
    const double failures = json_number(read_text_file(r.json), "gating_failure_count");
    ASSERT_GE(failures, 1.0);
    EXPECT_TRUE(has(xml, "failures=\"" + std::to_string(static_cast<int>(failures)) + "\""));
    EXPECT_TRUE(has(xml, "<failure message=\"Level Fidelity failed\">"));
}

TEST(AnalyzeJunit, TheResultsJsonGivesTheBatchRow) {
    const JunitRun r;
    r.write_pair(0.5);
    ASSERT_EQ(r.run(r.junit).exit_status, 2);
    BatchRow row;
    ASSERT_TRUE(batch_row_from_results_json(read_text_file(r.json), row));
    EXPECT_EQ(row.verdict, "FAIL");
    EXPECT_TRUE(has(row.failing_checks, "Level Fidelity"));
    EXPECT_EQ(row.offset, 0);
    ASSERT_TRUE(row.level_p99_db.has_value());
    EXPECT_NEAR(*row.level_p99_db, 6.02, 0.01);
    EXPECT_TRUE(row.loudness_delta_lu.has_value());
    EXPECT_TRUE(row.artifact_count.has_value());
}

TEST(AnalyzeJunit, ErrorRunWritesOneErrorCase) {
    const JunitRun r;
    write_wav(r.dut, kRate, 1, test_noise(1, 4800));
    const ProcessOutput run = r.run(r.junit);
    ASSERT_EQ(run.exit_status, 1);
    const std::string xml = read_text_file(r.junit);
    EXPECT_TRUE(validate_junit_file(r.junit).valid) << xml;
    EXPECT_TRUE(has(xml, "tests=\"1\" failures=\"0\" errors=\"1\""));
    EXPECT_TRUE(has(xml, "name=\"analyze\" time=\"0.000\">\n      <error message=\""));
    BatchRow row;
    ASSERT_TRUE(batch_row_from_results_json(read_text_file(r.json), row));
    EXPECT_EQ(row.verdict, "ERROR");
    EXPECT_TRUE(has(xml, row.error.substr(0, 20)));
}

TEST(AnalyzeJunit, UnwritableJunitLeavesNoReportBehind) {
    const JunitRun r;
    r.write_pair(1.0);
    const std::string junit = r.dir.file("missing/r.xml");
    const ProcessOutput run = r.run(junit);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_TRUE(has(run.err, "error: failed to write '" + junit + "'\n"));
    EXPECT_FALSE(path_exists(r.out));
    EXPECT_FALSE(path_exists(r.json));
}

TEST(AnalyzeJunit, RefusesToWriteOverAnInput) {
    const JunitRun r;
    r.write_pair(1.0);
    const ProcessOutput run = r.run(r.ref);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_TRUE(has(run.err, "--junit")) << run.err;
    EXPECT_FALSE(path_exists(r.out));
}

} // namespace
