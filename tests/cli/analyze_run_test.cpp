#include "analyze_fixture.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace {

constexpr std::uint32_t kRate = 48000;

struct AnalyzeRun {
    TempDir dir;
    std::string ref = dir.file("ref.wav");
    std::string dut = dir.file("dut.wav");
    std::string out = dir.file("report.html");
    std::string json = dir.file("report.json");

    ProcessOutput run(std::vector<std::string> extra = {}) const {
        std::vector<std::string> args{"analyze", "--ref", ref, "--dut", dut, "--out", out};
        args.insert(args.end(), extra.begin(), extra.end());
        return run_sonalyx(args);
    }
};

const char* const kStatusLines = "Aligning...\nAnalyzing...\nWriting report...\n";

std::string json_header(const AnalyzeRun& r, const char* verdict, int failures,
                        const char* failure_list, int channels, long frames) {
    char text[2048];
    std::snprintf(text, sizeof text,
                  "{\n"
                  "    \"sonalyx_phase\": 2,\n"
                  "    \"status\": \"analyzed\",\n"
                  "    \"overall_verdict\": \"%s\",\n"
                  "    \"gating_failure_count\": %d,\n"
                  "    \"gating_failures\": \"%s\",\n"
                  "    \"ref_file\": \"%s\",\n"
                  "    \"dut_file\": \"%s\",\n"
                  "    \"sample_rate\": 48000,\n"
                  "    \"ref_channels\": %d,\n"
                  "    \"dut_channels\": %d,\n"
                  "    \"ref_bit_depth\": 16,\n"
                  "    \"dut_bit_depth\": 16,\n"
                  "    \"ref_sample_format\": \"integer\",\n"
                  "    \"dut_sample_format\": \"integer\",\n"
                  "    \"ref_frame_count\": %ld,\n"
                  "    \"dut_frame_count\": %ld,\n",
                  verdict, failures, failure_list, r.ref.c_str(), r.dut.c_str(), channels, channels,
                  frames, frames);
    return text;
}

// |x| as the 16-bit file stores it, printed as the results JSON prints values.
std::string stored_amplitude(double x) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6f", std::fabs(std::round(x * 32767.0) / 32767.0));
    return text;
}

// Every aligned sample checked, none below the floor, no event.
std::string identical_artifact_keys(std::size_t channel, long compared) {
    const std::string p = "    \"artifact_channel_" + std::to_string(channel) + "_";
    return p + "samples_checked\": " + std::to_string(compared) + ",\n" + p +
           "samples_excluded\": 0,\n" + p + "samples_flagged\": 0,\n" + p + "event_count\": 0,\n" +
           p + "counted_event_count\": 0,\n" + p + "minor_event_count\": 0,\n" + p +
           "worst_event_start_frame\": 0,\n" + p + "worst_event_length\": 0,\n" + p +
           "worst_event_deviation_ratio\": 0.000000,\n" + p +
           "worst_event_severity\": 0.000000,\n" + p +
           "worst_event_global_severity\": 0.000000,\n" + p + "worst_event_counted\": 0,\n";
}

// One frame of noise with every one of its 4096 bins compared and every ratio 0; the worst bin is
// then the first one, bin 0.
std::string identical_spectral_keys(std::size_t channel) {
    const std::string p = "    \"spectral_channel_" + std::to_string(channel) + "_";
    return p + "frame_gated\": 0,\n" + p + "insufficient_samples\": 0,\n" + p +
           "frames_scanned\": 1,\n" + p + "edge_skipped_samples\": 0,\n" + p +
           "frames_gated\": 0,\n" + p + "bins_compared\": 4096,\n" + p + "bins_excluded\": 0,\n" +
           p + "bins_failed\": 0,\n" + p + "p50_ratio\": 0.000000,\n" + p +
           "p95_ratio\": 0.000000,\n" + p + "p99_ratio\": 0.000000,\n" + p +
           "worst_bin_freq_hz\": 0.000000,\n" + p + "worst_bin_ratio\": 0.000000,\n" + p +
           "worst_bin_diff_db\": 0.000000,\n" + p + "worst_bin_is_peak\": 0,\n";
}

// The checks' keys for a DUT that equals the reference over `compared` aligned frames starting at
// reference frame 0: bit-exact, a level ratio of 0 dB on every sample and no spectral difference.
std::string identical_check_keys(long compared, const std::vector<std::vector<double>>& channels) {
    std::string keys = "    \"bitexact_verdict\": \"PASS\",\n"
                       "    \"bitexact_samples_compared\": " +
                       std::to_string(compared * static_cast<long>(channels.size())) +
                       ",\n"
                       "    \"bitexact_samples_differing\": 0,\n"
                       "    \"bitexact_max_error_db\": -999.000000,\n"
                       "    \"levelfidelity_verdict\": \"PASS\",\n";
    for (std::size_t k = 0; k < channels.size(); ++k) {
        const std::string p = "    \"levelfidelity_channel_" + std::to_string(k) + "_";
        const std::string amp = stored_amplitude(channels[k][0]);
        keys += p + "samples_included\": " + std::to_string(compared) + ",\n" + p +
                "samples_excluded\": 0,\n" + p + "median_db\": 0.000000,\n" + p +
                "mad_db\": 0.000000,\n" + p + "p99_abs_db\": 0.000000,\n" + p +
                "longest_sustained_run_ms\": 0.000000,\n" + p + "worst_sample\": 0,\n" + p +
                "worst_diff_db\": 0.000000,\n" + p + "worst_ref_amp\": " + amp + ",\n" + p +
                "worst_dut_amp\": " + amp + ",\n";
    }
    keys += "    \"artifact_verdict\": \"PASS\",\n"
            "    \"artifact_window_samples\": 64,\n"
            "    \"artifact_min_severity\": 4.000000,\n"
            "    \"artifact_min_silence_clip_run\": 8,\n"
            "    \"artifact_min_global_severity\": 100.000000,\n";
    for (std::size_t k = 0; k < channels.size(); ++k)
        keys += identical_artifact_keys(k, compared);
    keys += "    \"spectral_verdict\": \"PASS\",\n";
    for (std::size_t k = 0; k < channels.size(); ++k)
        keys += identical_spectral_keys(k);
    return keys;
}

// The results JSON ends its last entry without a comma.
std::string closing(std::string keys) {
    keys.erase(keys.size() - 2, 1);
    return keys + "}\n";
}

TEST(AnalyzeRun, MonoPairWritesTheCompleteResultsJson) {
    const AnalyzeRun r;
    const std::vector<double> ref = test_noise(1, kRate);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, delayed(ref, 100));
    // Distortion and loudness measure noise in figures not predictable here; both have tests of
    // their own.
    const ProcessOutput run = r.run({"--json", "--no-distortion", "--no-loudness"});
    ASSERT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.err, kStatusLines);
    EXPECT_EQ(run.out, "wrote " + r.out + " + " + r.json + " (overall: PASS)\n");
    EXPECT_EQ(read_text_file(r.json), json_header(r, "PASS", 0, "", 1, 48000) +
                                          "    \"align_file_offset\": 100,\n"
                                          "    \"align_disagreement_samples\": 0,\n"
                                          "    \"align_channel_0_confidence\": 1.000000,\n"
                                          "    \"align_channel_0_offset\": 100,\n"
                                          "    \"align_channel_0_state\": \"measured\",\n"
                                          "    \"align_channel_0_ref_silent\": 0,\n"
                                          "    \"align_channel_0_dut_silent\": 0,\n"
                                          "    \"length_mismatch_verdict\": \"PASS\",\n"
                                          "    \"length_mismatch_ref_uncovered_pct\": 0.208333,\n"
                                          "    \"length_mismatch_ref_uncovered_samples\": 100,\n" +
                                          closing(identical_check_keys(47900, {ref})));
    EXPECT_TRUE(read_text_file(r.out).starts_with("<!doctype html>"));
}

TEST(AnalyzeRun, StereoPairWritesTheCompleteResultsJson) {
    const AnalyzeRun r;
    const std::vector<double> left = test_noise(2, kRate);
    const std::vector<double> right = test_noise(3, kRate);
    write_wav(r.ref, kRate, 2, interleaved({left, right}));
    write_wav(r.dut, kRate, 2, interleaved({delayed(left, 7), delayed(right, 7)}));
    const ProcessOutput run = r.run({"--json", "--quiet", "--no-distortion", "--no-loudness"});
    ASSERT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(read_text_file(r.json), json_header(r, "PASS", 0, "", 2, 48000) +
                                          "    \"align_file_offset\": 7,\n"
                                          "    \"align_disagreement_samples\": 0,\n"
                                          "    \"align_channel_0_confidence\": 1.000000,\n"
                                          "    \"align_channel_0_offset\": 7,\n"
                                          "    \"align_channel_0_state\": \"measured\",\n"
                                          "    \"align_channel_0_ref_silent\": 0,\n"
                                          "    \"align_channel_0_dut_silent\": 0,\n"
                                          "    \"align_channel_1_confidence\": 1.000000,\n"
                                          "    \"align_channel_1_offset\": 7,\n"
                                          "    \"align_channel_1_state\": \"measured\",\n"
                                          "    \"align_channel_1_ref_silent\": 0,\n"
                                          "    \"align_channel_1_dut_silent\": 0,\n"
                                          "    \"length_mismatch_verdict\": \"PASS\",\n"
                                          "    \"length_mismatch_ref_uncovered_pct\": 0.014583,\n"
                                          "    \"length_mismatch_ref_uncovered_samples\": 7,\n" +
                                          closing(identical_check_keys(47993, {left, right})));
}

TEST(AnalyzeRun, QuietSilencesOnlyTheStatusLines) {
    const AnalyzeRun r;
    const std::vector<double> ref = test_noise(4, kRate / 2);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, ref);
    const ProcessOutput loud = r.run();
    EXPECT_EQ(loud.err, kStatusLines);
    EXPECT_EQ(loud.out, "wrote " + r.out + " (overall: PASS)\n");
    const ProcessOutput quiet = r.run({"--quiet"});
    EXPECT_EQ(quiet.exit_status, 0);
    EXPECT_EQ(quiet.err, "");
    EXPECT_EQ(quiet.out, "wrote " + r.out + " (overall: PASS)\n");
}

TEST(AnalyzeRun, LengthMismatchFailsTheVerdictAndExitCodeTurnsItIntoStatus2) {
    const AnalyzeRun r;
    const std::vector<double> ref = test_noise(5, kRate);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, std::vector<double>(ref.begin(), ref.begin() + kRate / 2));
    const ProcessOutput plain = r.run({"--quiet"});
    EXPECT_EQ(plain.exit_status, 0);
    EXPECT_EQ(plain.out, "wrote " + r.out + " (overall: FAIL -- Length Mismatch)\n");
    const ProcessOutput gated = r.run({"--quiet", "--exit-code", "--json"});
    EXPECT_EQ(gated.exit_status, 2);
    EXPECT_EQ(gated.out,
              "wrote " + r.out + " + " + r.json + " (overall: FAIL -- Length Mismatch)\n");
    const std::string json = read_text_file(r.json);
    EXPECT_NE(json.find("    \"overall_verdict\": \"FAIL\",\n    \"gating_failure_count\": 1,\n"
                        "    \"gating_failures\": \"length_mismatch\",\n"),
              std::string::npos)
        << json;
    EXPECT_NE(json.find("    \"length_mismatch_verdict\": \"FAIL\",\n"
                        "    \"length_mismatch_ref_uncovered_pct\": 50.000000,\n"
                        "    \"length_mismatch_ref_uncovered_samples\": 24000,\n"),
              std::string::npos)
        << json;
}

TEST(AnalyzeRun, LengthMismatchToleranceComesFromTheSettings) {
    const AnalyzeRun r;
    const std::vector<double> ref = test_noise(6, kRate);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, std::vector<double>(ref.begin(), ref.begin() + kRate / 2));
    const std::string config = r.dir.file("run.json");
    ASSERT_TRUE(write_text_file(
        config,
        "{ \"general\": { \"length_mismatch_tolerance_pct\": 50.0 } } // exactly 50 passes"));
    const ProcessOutput run = r.run({"--quiet", "--exit-code", "--config", config});
    EXPECT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.out, "wrote " + r.out + " (overall: PASS)\n");
}

TEST(AnalyzeRun, PathsWithQuoteAndBackslashAreEscapedInTheJson) {
    AnalyzeRun r;
    r.ref = r.dir.file("re\"f\\1.wav");
    const std::vector<double> ref = test_noise(7, kRate / 4);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, ref);
    const ProcessOutput run = r.run({"--quiet", "--json"});
    ASSERT_EQ(run.exit_status, 0) << run.err;
    EXPECT_NE(read_text_file(r.json).find("    \"ref_file\": \"" + r.dir.path() +
                                          "/re\\\"f\\\\1.wav\",\n"),
              std::string::npos);
}

TEST(AnalyzeRun, ALongPathIsWrittenWholeAndEscaped) {
    AnalyzeRun r;
    // Every backslash doubles when escaped: 300 of them make a value of more than 600 characters.
    const std::string folder = r.dir.file(std::string(200, '\\'));
    ASSERT_TRUE(std::filesystem::create_directory(folder));
    r.ref = folder + "/" + std::string(100, '\\') + ".wav";
    const std::vector<double> ref = test_noise(8, kRate / 4);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, ref);
    const ProcessOutput run = r.run({"--quiet", "--json"});
    EXPECT_EQ(run.exit_status, 0) << run.err;
    const std::string escaped =
        r.dir.path() + "/" + std::string(400, '\\') + "/" + std::string(200, '\\') + ".wav";
    EXPECT_TRUE(has(read_text_file(r.json), "    \"ref_file\": \"" + escaped + "\",\n"));
}

TEST(AnalyzeRun, ValidationErrorsExitWithoutAnyReport) {
    const AnalyzeRun r;
    const std::vector<double> ref = test_noise(9, kRate / 4);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, ref);
    const std::string config = r.dir.file("run.json");
    ASSERT_TRUE(write_text_file(config, "{ \"spectral_fidelity\": { \"fft_size\": 1000 } }"));
    const ProcessOutput run = r.run({"--json", "--config", config});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err,
              "Aligning...\nerror: spectral_fidelity.fft_size 1000 not supported -- must be "
              "one of 1024, 2048, 4096, 8192, 16384, 32768 (also used by Distortion, "
              "which reads this same field)\n");
    EXPECT_EQ(run.out, "");
    EXPECT_FALSE(path_exists(r.json));
}

TEST(AnalyzeRun, AnOutputDirectoryThatCannotBeMadeIsOneError) {
    AnalyzeRun r;
    const std::vector<double> ref = test_noise(10, kRate / 4);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, ref);
    // A missing parent, and a regular file where a folder should be: one line each time.
    for (const std::string& folder : {r.dir.file("missing/deeper"), r.ref + "/sub"}) {
        r.out = folder + "/";
        const ProcessOutput run = r.run({"--quiet", "--json"});
        EXPECT_EQ(run.exit_status, 1);
        EXPECT_EQ(run.err, "error: could not create output directory '" + folder + "'\n");
    }
    EXPECT_FALSE(path_exists(r.dir.file("missing")));
}

TEST(AnalyzeRun, DirectoryOutWritesJsonUnderTheRefStem) {
    AnalyzeRun r;
    r.out = r.dir.file("reports/");
    const std::vector<double> ref = test_noise(11, kRate / 4);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, ref);
    const ProcessOutput run = r.run({"--quiet", "--json"});
    ASSERT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.out, "wrote " + r.dir.file("reports/ref.html") + " + " +
                           r.dir.file("reports/ref.json") + " (overall: PASS)\n");
    EXPECT_TRUE(path_exists(r.dir.file("reports/ref.html")));
    EXPECT_TRUE(path_exists(r.dir.file("reports/ref.json")));
}

// Tiny files must run through alignment and the verdict without crashing.
ProcessOutput run_tiny_pair(const AnalyzeRun& r, std::size_t frames) {
    const std::vector<double> ref = test_noise(12, frames);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, ref);
    return r.run({"--quiet", "--json"});
}

TEST(AnalyzeRun, OneFrameFilesRun) {
    const AnalyzeRun r;
    const ProcessOutput run = run_tiny_pair(r, 1);
    ASSERT_EQ(run.exit_status, 0) << run.err;
    EXPECT_NE(read_text_file(r.json).find("    \"align_file_offset\": 0,\n"), std::string::npos);
}

TEST(AnalyzeRun, FilesShorterThanTheSearchWindowAlign) {
    const AnalyzeRun r;
    const ProcessOutput run = run_tiny_pair(r, 100); // the window reaches 4800 frames
    ASSERT_EQ(run.exit_status, 0) << run.err;
    EXPECT_NE(read_text_file(r.json).find("    \"align_channel_0_offset\": 0,\n"
                                          "    \"align_channel_0_state\": \"measured\",\n"),
              std::string::npos);
}

} // namespace
