// `sonalyx batch` end to end on short generated pairs: every kind of pair, the exit statuses, a
// killed analyze, the refusals before any work, analyze options passed on, and the progress line.
#include "analyze_fixture.h"
#include "batch_fixture.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

namespace {

std::vector<std::string> verdicts(const std::vector<BatchRow>& rows) {
    std::vector<std::string> out;
    for (const BatchRow& row : rows)
        out.push_back(row.id + " " + row.verdict);
    return out;
}

TEST(BatchCommand, RunsEveryKindOfPairAndWritesTheBatchOutputs) {
    const BatchFolder f;
    f.manifest(kFourPairs);
    const ProcessOutput run = f.batch({"--manifest", "pairs.tsv", "--out", "out/", "--jobs", "2"});
    EXPECT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "wrote out/index.html (4 pairs: 1 PASS, 1 FAIL, 2 ERROR)\n");
    for (const char* id : {"pass", "fail", "apart", "missing"}) {
        EXPECT_TRUE(path_exists(f.dir.file("out/" + std::string(id) + ".html"))) << id;
        EXPECT_TRUE(path_exists(f.dir.file("out/" + std::string(id) + ".json"))) << id;
    }
    const std::vector<BatchRow> rows = read_rows(f.dir.file("out/summary.json"));
    ASSERT_EQ(verdicts(rows),
              (std::vector<std::string>{"pass PASS", "fail FAIL", "apart ERROR", "missing ERROR"}));
    EXPECT_EQ(rows[0].report, "pass.html");
    EXPECT_EQ(rows[0].ref_path, "ref.wav");
    EXPECT_EQ(rows[0].offset, 3);
    EXPECT_TRUE(has(rows[1].failing_checks, "Length Mismatch")) << rows[1].failing_checks;
    EXPECT_TRUE(has(rows[2].error, "alignment failed -- no consistent match")) << rows[2].error;
    EXPECT_EQ(rows[3].error, "failed to read --dut 'absent.wav' (file not found or not readable)");
    const std::string junit = read_text_file(f.dir.file("out/junit.xml"));
    EXPECT_TRUE(has(junit, "classname=\"pairs.tsv\"")) << junit;
    EXPECT_TRUE(has(junit, "name=\"missing\"")) << junit;
    EXPECT_TRUE(has(read_text_file(f.dir.file("out/index.html")), "apart.html"));
}

TEST(BatchCommand, ExitCodeTurnsAFailOrAnErrorIntoStatus2) {
    const BatchFolder f;
    f.manifest("a,ref.wav,pass.wav\nb,ref.wav,short.wav\n");
    const ProcessOutput plain = f.batch({"--manifest", "pairs.tsv", "--out", "o", "--json"});
    EXPECT_EQ(plain.exit_status, 0);
    EXPECT_EQ(plain.out,
              "wrote o/index.html + o/summary.json (2 pairs: 1 PASS, 1 FAIL, 0 ERROR)\n");
    EXPECT_EQ(f.batch({"--manifest", "pairs.tsv", "--out", "o", "--exit-code"}).exit_status, 2);
    f.manifest("a,ref.wav,pass.wav\nb,ref.wav,other.wav\n");
    EXPECT_EQ(f.batch({"--manifest", "pairs.tsv", "--out", "o", "--exit-code"}).exit_status, 2);
    f.manifest("a,ref.wav,pass.wav\n");
    const ProcessOutput clean = f.batch({"--manifest", "pairs.tsv", "--out", "o", "--exit-code"});
    EXPECT_EQ(clean.exit_status, 0);
    EXPECT_EQ(clean.out, "wrote o/index.html (1 pair: 1 PASS, 0 FAIL, 0 ERROR)\n");
}

TEST(BatchCommand, AKilledAnalyzeIsAnErrorRowAndTheBatchGoesOn) {
    const BatchFolder f;
    f.manifest("a,ref.wav,pass.wav\nb,ref.wav,pass.wav\nc,ref.wav,pass.wav\n");
    ::setenv("SONALYX_BATCH_TEST_KILL", "b", 1);
    const ProcessOutput run = f.batch({"--manifest", "pairs.tsv", "--out", "o", "--jobs", "1"});
    ::unsetenv("SONALYX_BATCH_TEST_KILL");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "wrote o/index.html (3 pairs: 2 PASS, 0 FAIL, 1 ERROR)\n");
    const std::vector<BatchRow> rows = read_rows(f.dir.file("o/summary.json"));
    ASSERT_EQ(verdicts(rows), (std::vector<std::string>{"a PASS", "b ERROR", "c PASS"}));
    EXPECT_EQ(rows[1].error, "analysis process ended by signal 9");
    EXPECT_FALSE(path_exists(f.dir.file("o/b.json")));
}

TEST(BatchCommand, ABadManifestIsRefusedBeforeAnyWork) {
    const BatchFolder f;
    f.manifest("a,ref.wav,pass.wav\n# fine so far\na,ref.wav,short.wav\n");
    const ProcessOutput run = f.batch({"--manifest", "pairs.tsv", "--out", "o"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "error: pairs.tsv:3: duplicate id 'a' (first on line 1)\n");
    EXPECT_FALSE(path_exists(f.dir.file("o")));
    const ProcessOutput absent = f.batch({"--manifest", "nope.tsv", "--out", "o"});
    EXPECT_EQ(absent.exit_status, 1);
    EXPECT_EQ(absent.err, "error: could not read manifest 'nope.tsv'\n");
}

TEST(BatchCommand, AnalyzeOptionsArePassedOnToEveryPair) {
    const BatchFolder f;
    f.manifest("b,ref.wav,short.wav\n");
    ASSERT_TRUE(write_text_file(f.dir.file("loose.json"),
                                "{ \"general\": { \"length_mismatch_tolerance_pct\": 60.0 } }"));
    const ProcessOutput run =
        f.batch({"--manifest", "pairs.tsv", "--out", "o", "--config", "loose.json"});
    EXPECT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.out, "wrote o/index.html (1 pair: 1 PASS, 0 FAIL, 0 ERROR)\n");
}

TEST(BatchCommand, OptionErrorsAreRefusedBeforeAnyWork) {
    const BatchFolder f;
    f.manifest("a,ref.wav,pass.wav\n");
    const std::vector<std::string> base{"--manifest", "pairs.tsv", "--out", "o"};
    const auto refused = [&](std::vector<std::string> extra) {
        extra.insert(extra.begin(), base.begin(), base.end());
        const ProcessOutput run = f.batch(extra);
        EXPECT_EQ(run.exit_status, 1);
        EXPECT_EQ(run.out, "");
        return run.err;
    };
    EXPECT_EQ(refused({"--jobs", "0"}),
              "error: --jobs needs a whole number from 1 to 256, got '0'\n");
    EXPECT_EQ(refused({"--shard", "2/2"}), "error: --shard needs K/N with 0 <= K < N, got '2/2'\n");
    EXPECT_EQ(refused({"--bogus"}), "error: unrecognized argument '--bogus'\n\n" + usage_text());
    EXPECT_EQ(refused({"--ref", "x.wav"}),
              "error: unrecognized argument '--ref'\n\n" + usage_text());
    EXPECT_EQ(refused({"--junit", "j.xml"}),
              "error: unrecognized argument '--junit'\n\n" + usage_text());
    EXPECT_EQ(refused({"--ampsweep", "--freqsweep"}).rfind("error: --ampsweep and --freqsweep", 0),
              0u);
    EXPECT_EQ(refused({"--merge", "o"}), "error: --merge takes no --out, --shard or --resume\n");
    const ProcessOutput missing = f.batch({"--out", "o"});
    EXPECT_EQ(missing.err,
              "error: batch requires --manifest and --out, or --merge\n\n" + usage_text());
    EXPECT_FALSE(path_exists(f.dir.file("o")));
}

// What the terminal shows once every "\r\033[K" has wiped its line.
std::string settled(const std::string& received) {
    return std::regex_replace(received, std::regex("[^\n]*\r\033\\[K"), "");
}

TEST(BatchCommand, ATerminalShowsPairsDoneAndTheTimeLeftThenErasesIt) {
    const BatchFolder f;
    f.manifest("a,ref.wav,pass.wav\nb,ref.wav,pass.wav\n");
    const ProcessOutput run = run_process_on_terminal(
        {SONALYX_EXE, "batch", "--manifest", "pairs.tsv", "--out", "o", "--jobs", "1"},
        f.dir.path());
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_TRUE(has(run.out, "\r\033[K  0 / 2 pairs done")) << run.out;
    EXPECT_TRUE(std::regex_search(run.out, std::regex("\r\033\\[K  1 / 2 pairs done, ETA "
                                                      "[0-9]+:[0-9][0-9]")))
        << run.out;
    EXPECT_EQ(settled(run.out), "wrote o/index.html (2 pairs: 2 PASS, 0 FAIL, 0 ERROR)\r\n");
    const ProcessOutput quiet = run_process_on_terminal(
        {SONALYX_EXE, "batch", "--manifest", "pairs.tsv", "--out", "o", "--quiet"}, f.dir.path());
    EXPECT_EQ(quiet.out, "wrote o/index.html (2 pairs: 2 PASS, 0 FAIL, 0 ERROR)\r\n");
}

} // namespace
