#include "analyze_fixture.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace {

struct ErrorRun {
    TempDir dir;
    std::string ref = dir.file("ref.wav");
    std::string dut = dir.file("dut.wav");
    std::string out = dir.file("out/");
    std::string html = dir.file("out/ref.html");
    std::string json = dir.file("out/ref.json");

    ProcessOutput run(std::vector<std::string> extra = {"--json", "--quiet"}) const {
        std::vector<std::string> args{"analyze", "--ref", ref, "--dut", dut, "--out", out};
        args.insert(args.end(), extra.begin(), extra.end());
        return run_sonalyx(args);
    }

    std::string error_json(const std::string& error) const {
        return "{\n    \"sonalyx_phase\": 2,\n    \"status\": \"error\",\n"
               "    \"overall_verdict\": \"ERROR\",\n    \"error\": \"" +
               error + "\",\n    \"ref_file\": \"" + ref + "\",\n    \"dut_file\": \"" + dut +
               "\"\n}\n";
    }

    std::string wrote_line() const {
        return "wrote an error report to " + html + " (overall: ERROR)\n";
    }
};

TEST(AnalyzeErrors, UnreadableRefGivesTheErrorJson) {
    const ErrorRun r;
    write_wav(r.dut, 48000, 1, test_noise(1, 4800));
    const ProcessOutput run = r.run();
    const std::string message =
        "failed to read --ref '" + r.ref + "' (file not found or not readable)";
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "error: " + message + "\n" + r.wrote_line());
    EXPECT_EQ(read_text_file(r.json), r.error_json(message));
}

TEST(AnalyzeErrors, BothUnreadableFilesAreReportedTogether) {
    const ErrorRun r;
    ASSERT_TRUE(write_text_file(r.dut, "RIFF----WAVEjunk"));
    const ProcessOutput run = r.run();
    const std::string ref_message =
        "failed to read --ref '" + r.ref + "' (file not found or not readable)";
    const std::string dut_message = "failed to read --dut '" + r.dut +
                                    "' (not a supported 16/24/32-bit integer or 32/64-bit float "
                                    "PCM WAV file)";
    EXPECT_EQ(run.err, "error: " + ref_message + "\nerror: " + dut_message + "\n" + r.wrote_line());
    EXPECT_EQ(read_text_file(r.json), r.error_json(ref_message + "; " + dut_message));
}

TEST(AnalyzeErrors, OutOfRangeRatesAreBothReportedJoined) {
    const ErrorRun r;
    write_wav(r.ref, 16000, 1, test_noise(2, 1600));
    write_wav(r.dut, 200000, 1, test_noise(3, 20000));
    const ProcessOutput run = r.run();
    const std::string ref_message =
        "--ref sample rate 16000 Hz is outside the supported range [22050, 192000] Hz";
    const std::string dut_message =
        "--dut sample rate 200000 Hz is outside the supported range [22050, 192000] Hz";
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: " + ref_message + "\nerror: " + dut_message + "\n" + r.wrote_line());
    EXPECT_EQ(read_text_file(r.json), r.error_json(ref_message + "; " + dut_message));
}

TEST(AnalyzeErrors, ThreeChannelDutStopsBeforeTheChannelCountComparison) {
    const ErrorRun r;
    write_wav(r.ref, 48000, 1, test_noise(4, 4800));
    write_wav(r.dut, 48000, 3, test_noise(5, 3 * 4800));
    const ProcessOutput run = r.run();
    const std::string message =
        "--dut has 3 channel(s) -- sonalyx only accepts mono or stereo input";
    EXPECT_EQ(run.err, "error: " + message + "\n" + r.wrote_line());
    EXPECT_EQ(read_text_file(r.json), r.error_json(message));
}

TEST(AnalyzeErrors, ChannelCountMismatch) {
    const ErrorRun r;
    write_wav(r.ref, 48000, 1, test_noise(6, 4800));
    write_wav(r.dut, 48000, 2, test_noise(7, 2 * 4800));
    const ProcessOutput run = r.run();
    EXPECT_EQ(run.err, "error: --ref has 1 channel(s) but --dut has 2 -- ref and DUT must have "
                       "identical channel count\n" +
                           r.wrote_line());
}

TEST(AnalyzeErrors, SampleRateMismatch) {
    const ErrorRun r;
    write_wav(r.ref, 48000, 1, test_noise(8, 4800));
    write_wav(r.dut, 44100, 1, test_noise(9, 4410));
    const ProcessOutput run = r.run();
    EXPECT_EQ(run.err, "error: --ref is 48000 Hz but --dut is 44100 Hz -- ref and DUT must share "
                       "the same sample rate (sonalyx does no resampling of its own)\n" +
                           r.wrote_line());
}

TEST(AnalyzeErrors, InvertedDutFailsAlignmentWithItsExplanation) {
    const ErrorRun r;
    const std::vector<double> ref = test_noise(10, 24000);
    std::vector<double> inverted = ref;
    for (double& x : inverted)
        x = -x;
    write_wav(r.ref, 48000, 1, ref);
    write_wav(r.dut, 48000, 1, inverted);
    const ProcessOutput run = r.run({"--json"});
    const std::string message =
        "alignment failed -- the DUT is polarity-inverted: it matches the reference with the sign "
        "flipped (correlation -1.0000), so no offset lines it up. Invert it and run again.";
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "Aligning...\nerror: " + message + "\n" + r.wrote_line());
    EXPECT_EQ(read_text_file(r.json), r.error_json(message));
}

// A file with a valid header and an empty data chunk has no level and nothing to line up: the
// alignment fails and the run ends with the ERROR report.
void expect_empty_input_error(std::size_t ref_frames, std::size_t dut_frames) {
    const ErrorRun r;
    write_wav(r.ref, 48000, 1, test_noise(13, ref_frames));
    write_wav(r.dut, 48000, 1, test_noise(14, dut_frames));
    const ProcessOutput run = r.run({"--json"});
    const std::string message =
        "alignment failed -- no consistent match (correlation 0.0000, needs 0.9000) in the whole "
        "file, its first and last stretch, or a wider search. The files may not contain the same "
        "audio, or the DUT is too heavily changed to line up. Check that you gave the right pair.";
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "Aligning...\nerror: " + message + "\n" + r.wrote_line());
    EXPECT_EQ(read_text_file(r.json), r.error_json(message));
    const std::string page = read_text_file(r.html);
    EXPECT_NE(page.find("<title>Run Error -- Sonalyx Report</title>"), std::string::npos);
    EXPECT_NE(page.find("<p class=\"run-error\">alignment failed -- no consistent match"),
              std::string::npos);
}

TEST(AnalyzeErrors, AnEmptyReferenceFailsTheAlignment) {
    expect_empty_input_error(0, 4800);
}

TEST(AnalyzeErrors, AnEmptyDutFailsTheAlignment) {
    expect_empty_input_error(4800, 0);
}

TEST(AnalyzeErrors, TwoEmptyFilesFailTheAlignment) {
    expect_empty_input_error(0, 0);
}

TEST(AnalyzeErrors, WithoutJsonOnlyTheErrorPageIsWritten) {
    const ErrorRun r;
    write_wav(r.dut, 48000, 1, test_noise(11, 4800));
    const ProcessOutput run = r.run({"--quiet"});
    EXPECT_EQ(run.exit_status, 1);
    const std::string message =
        "failed to read --ref '" + r.ref + "' (file not found or not readable)";
    EXPECT_EQ(run.err, "error: " + message + "\n" + r.wrote_line());
    EXPECT_FALSE(path_exists(r.json));
    const std::string page = read_text_file(r.html);
    EXPECT_TRUE(page.starts_with("<!doctype html>"));
    EXPECT_NE(page.find("<title>Run Error -- Sonalyx Report</title>"), std::string::npos);
    EXPECT_NE(page.find("<p class=\"run-error\">failed to read --ref &#39;"), std::string::npos)
        << page.substr(0, 200);
}

TEST(AnalyzeErrors, TheErrorPageEscapesTheMessage) {
    ErrorRun r;
    r.ref = r.dir.file("<b>.wav");
    r.html = r.dir.file("out/<b>.html");
    write_wav(r.dut, 48000, 1, test_noise(12, 4800));
    ASSERT_EQ(r.run({"--quiet"}).exit_status, 1);
    const std::string page = read_text_file(r.html);
    EXPECT_NE(page.find("failed to read --ref &#39;" + r.dir.file("&lt;b&gt;.wav")),
              std::string::npos);
    EXPECT_EQ(page.find("<b>.wav"), std::string::npos);
}

TEST(AnalyzeErrors, AnUnwritableErrorPageIsAWarning) {
    ErrorRun r;
    write_wav(r.dut, 48000, 1, test_noise(13, 4800));
    ASSERT_TRUE(write_text_file(r.dir.file("blocker"), "not a directory"));
    r.out = r.dir.file("blocker/x.html");
    const ProcessOutput run = r.run({"--quiet"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: failed to read --ref '" + r.ref +
                           "' (file not found or not readable)\nwarning: could not write the "
                           "error report '" +
                           r.out + "'\n");
}

TEST(AnalyzeErrors, ErrorsBeforeTheSettingsAreLoadedWriteNoReport) {
    const ErrorRun r;
    const ProcessOutput run = r.run({"--json", "--config", r.dir.file("missing.json")});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err,
              "error: failed to read or parse --config '" + r.dir.file("missing.json") + "'\n");
    EXPECT_FALSE(path_exists(r.dir.file("out")));
}

} // namespace
