#include "results/results_json.h"

#include "support/python_json.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

FileFacts file_facts(const char* path, std::uint32_t bit_depth, bool is_float,
                     std::uint32_t channels, std::size_t frames) {
    FileFacts file;
    file.path = path;
    file.sample_rate = 48000;
    file.channels = channels;
    file.bit_depth = bit_depth;
    file.is_float = is_float;
    file.frames = frames;
    return file;
}

RunResults mono_results() {
    RunResults results;
    results.ref = file_facts("ref.wav", 24, false, 1, 48000);
    results.dut = file_facts("out/dut.wav", 32, true, 1, 48100);
    results.sample_rate = 48000;
    results.alignment.channels = 1;
    results.alignment.file_offset = 100;
    results.alignment.aligned = true;
    results.alignment.channel[0] = {true, 100, 0.987654321, false, false, AlignmentState::measured};
    results.length_mismatch = {false, 0.0, 0, 48000};
    return results;
}

RunResults stereo_results() {
    RunResults results;
    results.ref = file_facts("a/ref.wav", 16, false, 2, 1000);
    results.dut = file_facts("b/dut.wav", 16, false, 2, 900);
    results.sample_rate = 44100;
    results.alignment.channels = 2;
    results.alignment.file_offset = -5;
    results.alignment.disagreement = 2;
    results.alignment.aligned = true;
    results.alignment.channel[0] = {true, -5, -0.95, false, false, AlignmentState::measured};
    results.alignment.channel[1] = {true, -5, 0.0, true, true, AlignmentState::silent_borrowed};
    results.length_mismatch = {true, 10.0, 100, 900};
    results.overall.passed = false;
    results.overall.gating_failure_count = 2;
    results.overall.machine_list = "length_mismatch,spectral";
    results.overall.readable_list = "Length Mismatch, Spectral Fidelity";
    return results;
}

// `results` with every check marked as run (their measurements left at zero) and `snapshots`
// spectral snapshots, one a second.
RunResults every_check_ran(RunResults results, std::size_t snapshots) {
    results.bit_exact.ran = true;
    results.bit_accuracy.ran = true;
    results.level_fidelity.ran = true;
    results.artifact.ran = true;
    results.spectral.ran = true;
    results.distortion.ran = true;
    results.loudness.ran = true;
    results.time_domain.ran = true;
    results.impulse_template.ran = true;
    const std::uint32_t channels = results.ref.channels;
    results.level_fidelity.result.channels = channels;
    results.artifact.result.channels = channels;
    results.distortion.result.channels = channels;
    results.time_domain.result.channels = channels;
    results.impulse_template.result.channels = channels;
    SpectralOutcome& spectral = results.spectral.result;
    spectral.snapshot_mode = true;
    spectral.snapshots.channels = channels;
    for (std::size_t i = 0; i < snapshots; ++i) {
        SpectralSnapshot snapshot;
        snapshot.time_sec = static_cast<double>(i) + 0.5;
        snapshot.channel[0].bins_compared = 4096;
        snapshot.channel[1].bins_compared = 4096;
        spectral.snapshots.snapshots.push_back(snapshot);
    }
    return results;
}

TEST(ResultsJson, CompleteMonoText) {
    std::string json;
    ASSERT_TRUE(build_results_json(mono_results(), json));
    EXPECT_EQ(json, "{\n"
                    "    \"sonalyx_phase\": 2,\n"
                    "    \"status\": \"analyzed\",\n"
                    "    \"overall_verdict\": \"PASS\",\n"
                    "    \"gating_failure_count\": 0,\n"
                    "    \"gating_failures\": \"\",\n"
                    "    \"ref_file\": \"ref.wav\",\n"
                    "    \"dut_file\": \"out/dut.wav\",\n"
                    "    \"sample_rate\": 48000,\n"
                    "    \"ref_channels\": 1,\n"
                    "    \"dut_channels\": 1,\n"
                    "    \"ref_bit_depth\": 24,\n"
                    "    \"dut_bit_depth\": 32,\n"
                    "    \"ref_sample_format\": \"integer\",\n"
                    "    \"dut_sample_format\": \"float\",\n"
                    "    \"ref_frame_count\": 48000,\n"
                    "    \"dut_frame_count\": 48100,\n"
                    "    \"align_file_offset\": 100,\n"
                    "    \"align_disagreement_samples\": 0,\n"
                    "    \"align_channel_0_confidence\": 0.987654,\n"
                    "    \"align_channel_0_offset\": 100,\n"
                    "    \"align_channel_0_state\": \"measured\",\n"
                    "    \"align_channel_0_ref_silent\": 0,\n"
                    "    \"align_channel_0_dut_silent\": 0,\n"
                    "    \"length_mismatch_verdict\": \"PASS\",\n"
                    "    \"length_mismatch_ref_uncovered_pct\": 0.000000,\n"
                    "    \"length_mismatch_ref_uncovered_samples\": 0\n"
                    "}\n");
}

TEST(ResultsJson, CompleteStereoText) {
    std::string json;
    ASSERT_TRUE(build_results_json(stereo_results(), json));
    EXPECT_EQ(json, "{\n"
                    "    \"sonalyx_phase\": 2,\n"
                    "    \"status\": \"analyzed\",\n"
                    "    \"overall_verdict\": \"FAIL\",\n"
                    "    \"gating_failure_count\": 2,\n"
                    "    \"gating_failures\": \"length_mismatch,spectral\",\n"
                    "    \"ref_file\": \"a/ref.wav\",\n"
                    "    \"dut_file\": \"b/dut.wav\",\n"
                    "    \"sample_rate\": 44100,\n"
                    "    \"ref_channels\": 2,\n"
                    "    \"dut_channels\": 2,\n"
                    "    \"ref_bit_depth\": 16,\n"
                    "    \"dut_bit_depth\": 16,\n"
                    "    \"ref_sample_format\": \"integer\",\n"
                    "    \"dut_sample_format\": \"integer\",\n"
                    "    \"ref_frame_count\": 1000,\n"
                    "    \"dut_frame_count\": 900,\n"
                    "    \"align_file_offset\": -5,\n"
                    "    \"align_disagreement_samples\": 2,\n"
                    "    \"align_channel_0_confidence\": -0.950000,\n"
                    "    \"align_channel_0_offset\": -5,\n"
                    "    \"align_channel_0_state\": \"measured\",\n"
                    "    \"align_channel_0_ref_silent\": 0,\n"
                    "    \"align_channel_0_dut_silent\": 0,\n"
                    "    \"align_channel_1_confidence\": 0.000000,\n"
                    "    \"align_channel_1_offset\": -5,\n"
                    "    \"align_channel_1_state\": \"silent_borrowed\",\n"
                    "    \"align_channel_1_ref_silent\": 1,\n"
                    "    \"align_channel_1_dut_silent\": 1,\n"
                    "    \"length_mismatch_verdict\": \"FAIL\",\n"
                    "    \"length_mismatch_ref_uncovered_pct\": 10.000000,\n"
                    "    \"length_mismatch_ref_uncovered_samples\": 100\n"
                    "}\n");
}

TEST(ResultsJson, MonoHasNoChannelOneKeys) {
    RunResults results = mono_results();
    // Even a filled second channel record is not written for a mono reference.
    results.alignment.channel[1] = {true, 7, 0.5, true, false, AlignmentState::silent_zero};
    std::string json;
    ASSERT_TRUE(build_results_json(results, json));
    EXPECT_EQ(json.find("_channel_1_"), std::string::npos);
    EXPECT_NE(json.find("_channel_0_"), std::string::npos);
}

TEST(ResultsJson, SilentZeroStateIsNamed) {
    RunResults results = mono_results();
    results.alignment.channel[0] = {true, 0, 0.0, true, false, AlignmentState::silent_zero};
    std::string json;
    ASSERT_TRUE(build_results_json(results, json));
    EXPECT_NE(json.find("    \"align_channel_0_state\": \"silent_zero\",\n"
                        "    \"align_channel_0_ref_silent\": 1,\n"
                        "    \"align_channel_0_dut_silent\": 0,\n"),
              std::string::npos);
}

TEST(ResultsJson, PathsWithQuoteAndBackslashAreEscaped) {
    RunResults results = mono_results();
    results.ref.path = "C:\\takes\\\"loud\" mix.wav";
    results.dut.path = "tab\there";
    std::string json;
    ASSERT_TRUE(build_results_json(results, json));
    EXPECT_NE(json.find("    \"ref_file\": \"C:\\\\takes\\\\\\\"loud\\\" mix.wav\",\n"),
              std::string::npos);
    EXPECT_NE(json.find("    \"dut_file\": \"tab\\there\",\n"), std::string::npos);
}

TEST(ResultsJson, LongPathsAreWrittenWholeAndEscaped) {
    RunResults results = mono_results();
    // 5,000 characters, 2,000 of them backslashes that double when escaped.
    results.ref.path = std::string(3000, 'r') + std::string(2000, '\\');
    results.dut.path = std::string(5000, 'd');
    std::string json;
    ASSERT_TRUE(build_results_json(results, json));
    EXPECT_NE(json.find("    \"ref_file\": \"" + std::string(3000, 'r') + std::string(4000, '\\') +
                        "\",\n    \"dut_file\": \"" + results.dut.path + "\",\n"),
              std::string::npos);
}

TEST(ResultsJson, ControlBytesInPathsBecomeUnicodeEscapes) {
    RunResults results = mono_results();
    results.ref.path = "in/\x01take\x1b[0m\x1f.wav";
    results.dut.path = "out/\x7f caf\xc3\xa9\t.wav";
    std::string json;
    ASSERT_TRUE(build_results_json(results, json));
    EXPECT_NE(json.find("    \"ref_file\": \"in/\\u0001take\\u001b[0m\\u001f.wav\",\n"),
              std::string::npos);
    EXPECT_NE(json.find("    \"dut_file\": \"out/\x7f caf\xc3\xa9\\t.wav\",\n"), std::string::npos);
}

// Every check's block, with a spectral snapshot form of 300 snapshots per channel: far more than
// the 64 KiB the text was once limited to.
TEST(ResultsJson, TextWellOver64KiBIsBuilt) {
    RunResults results = every_check_ran(stereo_results(), 300);
    std::string json;
    ASSERT_TRUE(build_results_json(results, json));
    EXPECT_GT(json.size(), 200000u);
    EXPECT_TRUE(json.ends_with("    \"impulse_template_channel_1_total_fails\": 0\n}\n"));
    EXPECT_NE(json.find("    \"spectral_channel_1_snapshot_299_time_sec\": 299.500000,\n"),
              std::string::npos);
}

// The text parses with a strict JSON parser, which refuses raw control bytes and trailing commas,
// and gives every path back byte for byte.
TEST(ResultsJson, StrictParserReadsEveryPathBack) {
    RunResults results = every_check_ran(stereo_results(), 3);
    results.ref.path = awkward_path(1000);
    results.dut.path = "\x01\x1b\x7f";
    std::string json;
    ASSERT_TRUE(build_results_json(results, json));
    const PythonJson parsed = python_json(json, {"ref_file", "dut_file", "status"});
    ASSERT_TRUE(parsed.parsed) << parsed.error;
    EXPECT_EQ(parsed.values,
              (std::vector<std::string>{results.ref.path, results.dut.path, "analyzed"}));
}

TEST(ResultsJson, LastEntryBeforeTheBraceHasNoComma) {
    std::string json;
    ASSERT_TRUE(build_results_json(stereo_results(), json));
    std::vector<std::string> lines;
    std::istringstream stream(json);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    ASSERT_EQ(lines.size(), 33u); // the braces and 31 entries
    EXPECT_EQ(lines.front(), "{");
    EXPECT_EQ(lines.back(), "}");
    EXPECT_EQ(lines[31], "    \"length_mismatch_ref_uncovered_samples\": 100");
    for (std::size_t i = 1; i < 31; ++i)
        EXPECT_EQ(lines[i].back(), ',') << lines[i];
}

TEST(ResultsJson, NonFiniteMeasurementFailsTheBuild) {
    RunResults results = mono_results();
    results.length_mismatch.uncovered_pct = std::numeric_limits<double>::quiet_NaN();
    std::string json;
    EXPECT_FALSE(build_results_json(results, json));
    EXPECT_EQ(json, "");
    std::string refused_key = "stale";
    EXPECT_FALSE(build_results_json(results, json, &refused_key));
    EXPECT_EQ(refused_key, "length_mismatch_ref_uncovered_pct");
    EXPECT_TRUE(build_results_json(mono_results(), json, &refused_key));
    EXPECT_EQ(refused_key, "");
}

} // namespace
