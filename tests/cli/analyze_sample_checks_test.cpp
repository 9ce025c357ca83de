#include "analyze_fixture.h"
#include "cli_test_support.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace {

constexpr std::uint32_t kRate = 48000;

struct PairRun {
    TempDir dir;
    std::string ref = dir.file("ref.wav");
    std::string dut = dir.file("dut.wav");
    std::string json_path = dir.file("r.json");

    ProcessOutput run(std::vector<std::string> extra = {}) const {
        std::vector<std::string> args{"analyze",          "--ref",  ref,      "--dut", dut, "--out",
                                      dir.file("r.html"), "--json", "--quiet"};
        args.insert(args.end(), extra.begin(), extra.end());
        return run_sonalyx(args);
    }
    std::string json() const { return read_text_file(json_path); }
    std::string wrote(const std::string& summary) const {
        return "wrote " + dir.file("r.html") + " + " + json_path + " (" + summary + ")\n";
    }
};

// A 10-second file, exact but for a burst of `length` samples 3 dB louder.
void write_burst_pair(const PairRun& r, std::size_t length) {
    const std::vector<double> ref = test_noise(31, 10 * kRate);
    std::vector<double> dut = ref;
    for (std::size_t i = 100000; i < 100000 + length; ++i)
        dut[i] *= std::pow(10.0, 3.0 / 20.0);
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, dut);
}

TEST(AnalyzeSampleChecks, A19MillisecondBurstPassesLevelFidelity) {
    const PairRun r;
    write_burst_pair(r, 912);
    // The burst is also an artifact event; only level fidelity is under test here.
    const ProcessOutput run = r.run({"--exit-code", "--artifact-ref-only"});
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.out, r.wrote("overall: PASS"));
    EXPECT_TRUE(has(r.json(),
                    "    \"levelfidelity_channel_0_p99_abs_db\": 0.000000,\n"
                    "    \"levelfidelity_channel_0_longest_sustained_run_ms\": 19.000000,\n"));
}

TEST(AnalyzeSampleChecks, A20MillisecondBurstFailsOnTheRunRuleAlone) {
    const PairRun r;
    write_burst_pair(r, 960);
    const ProcessOutput run = r.run({"--exit-code"});
    EXPECT_EQ(run.exit_status, 2);
    EXPECT_EQ(run.out, r.wrote("overall: FAIL -- Level Fidelity"));
    EXPECT_TRUE(has(r.json(),
                    "    \"levelfidelity_channel_0_p99_abs_db\": 0.000000,\n"
                    "    \"levelfidelity_channel_0_longest_sustained_run_ms\": 20.000000,\n"));
}

TEST(AnalyzeSampleChecks, A24BitDutIsMeasuredInItsOwnSteps) {
    const PairRun r;
    const std::vector<double> ref = test_noise(32, kRate / 2);
    std::vector<double> dut(ref.size());
    // The DUT carries the reference's 16-bit values at 24 bits, and one 24-bit code more at 777.
    for (std::size_t i = 0; i < ref.size(); ++i)
        dut[i] = std::round(ref[i] * 32767.0) / 32767.0;
    dut[777] += 1.0 / 8388607.0;
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, dut, 24);
    ASSERT_EQ(r.run().exit_status, 0);
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"dut_bit_depth\": 24,\n")) << json;
    EXPECT_TRUE(has(json, "    \"bitexact_max_error_db\": 0.000000,\n")) << json;
    EXPECT_TRUE(has(json, "    \"bitexact_worst_diff_frame\": 777,\n")) << json;
}

TEST(AnalyzeSampleChecks, AFloatReferenceAgainstA16BitDutIsMeasuredIn24BitSteps) {
    const PairRun r;
    std::vector<double> ref = test_noise(33, kRate / 2);
    for (double& x : ref)
        x = static_cast<float>(x); // the values the float file holds
    write_wav(r.ref, kRate, 1, ref, 0x120);
    write_wav(r.dut, kRate, 1, ref);
    ASSERT_EQ(r.run().exit_status, 0);
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"ref_sample_format\": \"float\",\n")) << json;
    // 16-bit rounding moves a value by at most half a 16-bit step, 128 steps of 24 bits: 42 dB.
    const double worst = json_number(json, "bitexact_max_error_db");
    EXPECT_GT(worst, 40.0);
    EXPECT_LE(worst, 42.0 + 1e-6);
}

TEST(AnalyzeSampleChecks, DeepscanFailsADutTwentyPercentLouderOnPositiveSamples) {
    const PairRun r;
    const std::vector<double> ref = test_noise(34, kRate / 2);
    std::vector<double> dut = ref;
    long positive = 0;
    for (std::size_t i = 0; i < ref.size(); ++i) {
        dut[i] *= 1.2;
        positive += std::round(ref[i] * 32767.0) > 0 ? 1 : 0;
    }
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, dut);
    // Broadband noise made louder reads as a large THD+N, so distortion stays out of this test.
    const ProcessOutput run =
        r.run({"--deepscan", "--levelfidelity-ref-only", "--no-distortion", "--exit-code"});
    EXPECT_EQ(run.exit_status, 2);
    // 1.6 dB louder is also beyond the spectral check's 1 dB peak tolerance, which always gates.
    EXPECT_EQ(run.out, r.wrote("overall: FAIL -- Spectral Fidelity, Time Domain"));
    const std::string json = r.json();
    const std::string fails = std::to_string(positive);
    EXPECT_TRUE(has(json, "    \"time_domain_verdict\": \"FAIL\",\n")) << json;
    EXPECT_TRUE(has(json, "    \"time_domain_channel_0_total_fails\": " + fails + ",\n")) << json;
    EXPECT_TRUE(has(json, "    \"time_domain_channel_0_fails_peak_tier\": " + fails + ",\n"))
        << json;
}

// Program in the first half, digital silence in the second, and a click in the DUT's silence.
void write_click_pair(const PairRun& r, double click) {
    std::vector<double> ref = test_noise(35, kRate);
    for (std::size_t i = kRate / 2; i < ref.size(); ++i)
        ref[i] = 0.0;
    std::vector<double> dut = ref;
    dut[8192 * 4 + 4000] = click; // well inside a template frame, away from its edges
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, dut);
}

TEST(AnalyzeSampleChecks, ImpulseTemplateFailsALoudClickInSilence) {
    const PairRun r;
    write_click_pair(r, 0.1); // -20 dBFS
    const ProcessOutput run = r.run({"--impulse", "--exit-code", "--artifact-ref-only"});
    EXPECT_EQ(run.exit_status, 2);
    EXPECT_EQ(run.out, r.wrote("overall: FAIL -- Impulse Template"));
    EXPECT_TRUE(has(r.json(), "    \"impulse_template_channel_0_total_fails\": 1,\n"
                              "    \"impulse_template_channel_0_worst_sample\": 36768,\n"));
}

TEST(AnalyzeSampleChecks, ImpulseTemplatePassesAQuietClickInSilence) {
    const PairRun r;
    write_click_pair(r, 0.0178); // about -35 dBFS, under the -30 dBFS floor
    const ProcessOutput run = r.run({"--impulse", "--exit-code", "--artifact-ref-only"});
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_TRUE(has(r.json(), "    \"impulse_template_verdict\": \"PASS\",\n"));
}

} // namespace

namespace {

// A 1 kHz tone at half scale; the DUT optionally adds its third harmonic at `harmonic` of it.
void write_tone_pair(const PairRun& r, double harmonic) {
    const std::vector<double> ref = signal_sine(1000.0, 0.5, kRate, kRate / 2, 0.0);
    std::vector<double> dut = ref;
    const std::vector<double> third = signal_sine(3000.0, 0.5 * harmonic, kRate, kRate / 2, 0.0);
    for (std::size_t i = 0; i < dut.size(); ++i)
        dut[i] += third[i];
    write_wav(r.ref, kRate, 1, ref);
    write_wav(r.dut, kRate, 1, dut);
}

TEST(AnalyzeSampleChecks, DistortionReadsAOnePercentThirdHarmonic) {
    const PairRun r;
    write_tone_pair(r, 0.01);
    ASSERT_EQ(r.run().exit_status, 0);
    const std::string json = r.json();
    EXPECT_NEAR(json_number(json, "distortion_channel_0_thdn_ratio"), 0.01, 5e-4) << json;
    EXPECT_NEAR(json_number(json, "distortion_channel_0_thdn_db"), -40.0, 0.5) << json;
    // 1000 Hz lies between bins of the 8192-point frame; the strongest is within one bin width.
    EXPECT_NEAR(json_number(json, "distortion_channel_0_fundamental_freq_hz"), 1000.0,
                48000.0 / 8192.0);
}

TEST(AnalyzeSampleChecks, DistortionAboveTheToleranceFailsTheVerdict) {
    const PairRun r;
    write_tone_pair(r, 0.02); // 2 %, twice the default tolerance ratio of 0.01
    const ProcessOutput run = r.run({"--exit-code"});
    EXPECT_EQ(run.exit_status, 2);
    // The added harmonic is also a new tone in the spectrum, which spectral fidelity fails.
    EXPECT_EQ(run.out, r.wrote("overall: FAIL -- Spectral Fidelity, Distortion"));
}

TEST(AnalyzeSampleChecks, DistortionOfAnIdenticalToneIsZero) {
    const PairRun r;
    write_tone_pair(r, 0.0);
    ASSERT_EQ(r.run({"--exit-code"}).exit_status, 0);
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"distortion_verdict\": \"PASS\",\n")) << json;
    EXPECT_TRUE(has(json, "    \"distortion_channel_0_thdn_ratio\": 0.000000,\n"
                          "    \"distortion_channel_0_thdn_db\": -200.000000,\n"))
        << json;
}

TEST(AnalyzeSampleChecks, NoDistortionRemovesItsKeys) {
    const PairRun r;
    write_tone_pair(r, 0.0);
    ASSERT_EQ(r.run({"--no-distortion"}).exit_status, 0);
    EXPECT_FALSE(has(r.json(), "distortion_"));
}

} // namespace
