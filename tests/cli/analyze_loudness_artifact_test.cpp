// End-to-end runs of the loudness and artifact checks: their keys, their places in the results
// JSON, and how their gating switches decide the overall verdict.
#include "analyze_fixture.h"
#include "audio/wav_file.h"
#include "cli_test_support.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;

struct LoudRun {
    TempDir dir;
    std::string ref = dir.file("ref.wav");
    std::string dut = dir.file("dut.wav");
    std::string json_path = dir.file("r.json");

    ProcessOutput run(std::vector<std::string> extra = {}) const {
        std::vector<std::string> args{
            "analyze",          "--ref",  ref,       "--dut",      dut, "--out",
            dir.file("r.html"), "--json", "--quiet", "--exit-code"};
        args.insert(args.end(), extra.begin(), extra.end());
        return run_sonalyx(args);
    }
    std::string json() const { return read_text_file(json_path); }
    std::string config(const std::string& text) const {
        const std::string path = dir.file("run.json");
        EXPECT_TRUE(write_text_file(path, text));
        return path;
    }
};

// A stereo 1 kHz tone with identical channels at `peak_db` dBFS, 4 s long, plus a faint noise bed
// so that alignment finds one lag.
std::vector<double> stereo_tone(double peak_db) {
    const std::size_t frames = 4 * kRate;
    std::vector<double> tone = signal_sine(1000.0, std::pow(10.0, peak_db / 20.0), kRate, frames);
    const std::vector<double> bed = signal_uniform(5, frames, -0.0005, 0.0005);
    for (std::size_t i = 0; i < frames; ++i)
        tone[i] += bed[i];
    return interleaved({tone, tone});
}

TEST(AnalyzeLoudness, IdenticalTonesMeasureTheirLoudnessAndPass) {
    LoudRun r;
    write_wav(r.ref, kRate, 2, stereo_tone(-23.0), kWavFormatFloat32);
    write_wav(r.dut, kRate, 2, stereo_tone(-23.0), kWavFormatFloat32);
    const ProcessOutput out = r.run();
    EXPECT_EQ(out.exit_status, 0) << out.err;
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"loudness_verdict\": \"PASS\",\n"));
    EXPECT_NEAR(json_number(json, "loudness_ref_integrated_lufs"), -23.0, 0.1);
    EXPECT_TRUE(has(json, "    \"loudness_delta_integrated_lu\": 0.000000,\n"));
    // The loudness block sits between distortion and the end of the record.
    const std::size_t distortion = json.find("distortion_verdict");
    const std::size_t loudness = json.find("loudness_verdict");
    ASSERT_NE(distortion, std::string::npos);
    EXPECT_LT(distortion, loudness);
    EXPECT_LT(json.find("loudness_ref_integrated_lufs"), json.find("loudness_dut_integrated_lufs"));

    ASSERT_EQ(r.run({"--no-loudness"}).exit_status, 0);
    EXPECT_FALSE(has(r.json(), "loudness_"));
}

// Spectral, level and artifact checks would also see a 2 dB change; these settings keep them out
// so that loudness alone decides.
const char* const kOnlyLoudness = "{ \"spectral_fidelity\": { \"peak_tolerance_db\": 3.0,"
                                  " \"signal_tolerance_db\": 6.0 } }";

TEST(AnalyzeLoudness, ALouderDutFailsLoudnessWhichGatesOnlyWhenAsked) {
    LoudRun r;
    write_wav(r.ref, kRate, 2, stereo_tone(-23.0), kWavFormatFloat32);
    write_wav(r.dut, kRate, 2, stereo_tone(-21.0), kWavFormatFloat32);
    const std::vector<std::string> others{"--config", r.config(kOnlyLoudness),
                                          "--levelfidelity-ref-only", "--artifact-ref-only"};
    ProcessOutput out = r.run(others);
    EXPECT_EQ(out.exit_status, 0) << out.out << out.err;
    std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"loudness_verdict\": \"FAIL\",\n"));
    EXPECT_NEAR(json_number(json, "loudness_delta_integrated_lu"), 2.0, 0.01);
    EXPECT_TRUE(has(json, "    \"overall_verdict\": \"PASS\",\n"));

    std::vector<std::string> gating = others;
    gating.push_back("--loudness");
    out = r.run(gating);
    EXPECT_EQ(out.exit_status, 2);
    EXPECT_EQ(out.out, "wrote " + r.dir.file("r.html") + " + " + r.json_path +
                           " (overall: FAIL -- Loudness)\n");
    EXPECT_TRUE(has(r.json(), "    \"gating_failures\": \"loudness\",\n"));
}

std::vector<double> noise_with_click(bool click) {
    std::vector<double> noise = test_noise(8, kRate);
    if (click) noise[20000] = noise[20000] > 0.0 ? -0.9 : 0.9;
    return noise;
}

TEST(AnalyzeArtifact, AClickFailsTheCheckUnlessItIsReferenceOnly) {
    LoudRun r;
    write_wav(r.ref, kRate, 1, noise_with_click(false));
    write_wav(r.dut, kRate, 1, noise_with_click(true));
    ProcessOutput out = r.run({"--no-distortion", "--no-bitexact"});
    EXPECT_EQ(out.exit_status, 2) << out.err;
    EXPECT_EQ(out.out, "wrote " + r.dir.file("r.html") + " + " + r.json_path +
                           " (overall: FAIL -- Artifact Detection)\n");
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"artifact_verdict\": \"FAIL\",\n"
                          "    \"artifact_window_samples\": 64,\n"
                          "    \"artifact_min_severity\": 4.000000,\n"
                          "    \"artifact_min_silence_clip_run\": 8,\n"
                          "    \"artifact_min_global_severity\": 100.000000,\n"
                          "    \"artifact_channel_0_samples_checked\": 48000,\n"));
    EXPECT_TRUE(has(json, "    \"artifact_channel_0_counted_event_count\": 1,\n"));
    EXPECT_TRUE(has(json, "    \"artifact_channel_0_worst_event_start_frame\": 20000,\n"));
    // The artifact block comes after level fidelity and before spectral fidelity.
    EXPECT_LT(json.find("levelfidelity_verdict"), json.find("artifact_verdict"));
    EXPECT_LT(json.find("artifact_verdict"), json.find("spectral_verdict"));

    out = r.run({"--no-distortion", "--no-bitexact", "--artifact-ref-only"});
    EXPECT_EQ(out.exit_status, 0) << out.out;
    const std::string config = r.config("{ \"artifact\": { \"gates_overall\": false } }");
    EXPECT_EQ(r.run({"--no-distortion", "--no-bitexact", "--config", config}).exit_status, 0);
}

TEST(AnalyzeArtifact, IdenticalFilesPass) {
    LoudRun r;
    write_wav(r.ref, kRate, 1, noise_with_click(false));
    write_wav(r.dut, kRate, 1, noise_with_click(false));
    ASSERT_EQ(r.run({"--no-distortion"}).exit_status, 0);
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"artifact_verdict\": \"PASS\",\n"));
    EXPECT_TRUE(has(json, "    \"artifact_channel_0_event_count\": 0,\n"));
}

} // namespace
