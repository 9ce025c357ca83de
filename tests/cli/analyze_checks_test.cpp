#include "analyze_fixture.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr std::uint32_t kRate = 48000;

struct CheckRun {
    TempDir dir;
    std::string ref = dir.file("ref.wav");
    std::string dut = dir.file("dut.wav");
    std::string out = dir.file("r.html");
    std::string json_path = dir.file("r.json");

    // Writes a reference of noise and a DUT made from it by `change`.
    template <typename Change> void write_pair(Change change, std::size_t frames = kRate / 2) {
        const std::vector<double> ref_samples = test_noise(21, frames);
        std::vector<double> dut_samples = ref_samples;
        change(dut_samples);
        write_wav(ref, kRate, 1, ref_samples);
        write_wav(dut, kRate, 1, dut_samples);
    }

    // A single changed code is a click to artifact detection; these tests are about the other
    // checks, so artifact detection only reports.
    ProcessOutput run(std::vector<std::string> extra = {}) const {
        std::vector<std::string> args{"analyze",
                                      "--ref",
                                      ref,
                                      "--dut",
                                      dut,
                                      "--out",
                                      out,
                                      "--json",
                                      "--quiet",
                                      "--exit-code",
                                      "--artifact-ref-only"};
        args.insert(args.end(), extra.begin(), extra.end());
        return run_sonalyx(args);
    }

    std::string json() const { return read_text_file(json_path); }
    std::string wrote(const std::string& summary) const {
        return "wrote " + out + " + " + json_path + " (" + summary + ")\n";
    }
};

// One 16-bit code up in a single sample.
void one_code_up(std::vector<double>& dut) {
    dut[1000] += 1.0 / 32767.0;
}

void gain_db(std::vector<double>& dut, double db) {
    for (double& x : dut)
        x *= std::pow(10.0, db / 20.0);
}

TEST(AnalyzeChecks, BitExactnessFailureDoesNotGateByDefault) {
    CheckRun r;
    r.write_pair(one_code_up);
    const ProcessOutput run = r.run();
    EXPECT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.out, r.wrote("overall: PASS"));
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"bitexact_verdict\": \"FAIL\",\n"
                          "    \"bitexact_samples_compared\": 24000,\n"
                          "    \"bitexact_samples_differing\": 1,\n"
                          "    \"bitexact_max_error_db\": 0.000000,\n"
                          "    \"bitexact_first_diff_frame\": 1000,\n"))
        << json;
}

TEST(AnalyzeChecks, BitexactFlagMakesItGate) {
    CheckRun r;
    r.write_pair(one_code_up);
    const ProcessOutput run = r.run({"--bitexact"});
    EXPECT_EQ(run.exit_status, 2);
    EXPECT_EQ(run.out, r.wrote("overall: FAIL -- Bit-Exactness"));
    EXPECT_TRUE(has(r.json(), "    \"gating_failures\": \"bitexact\",\n"));
}

TEST(AnalyzeChecks, BitexactGatingFromTheConfigFile) {
    CheckRun r;
    r.write_pair(one_code_up);
    const std::string config = r.dir.file("run.json");
    ASSERT_TRUE(write_text_file(config, "{ \"bit_exact\": { \"gates_overall\": true } }"));
    EXPECT_EQ(r.run({"--config", config}).exit_status, 2);
}

TEST(AnalyzeChecks, NoBitexactRemovesItsKeys) {
    CheckRun r;
    r.write_pair(one_code_up);
    ASSERT_EQ(r.run({"--no-bitexact"}).exit_status, 0);
    EXPECT_FALSE(has(r.json(), "bitexact_"));
}

TEST(AnalyzeChecks, BitAccuracyPassesOneCodeAndWritesItsTolerance) {
    CheckRun r;
    r.write_pair(one_code_up);
    ASSERT_EQ(r.run({"--bitaccuracy"}).exit_status, 0);
    EXPECT_TRUE(has(r.json(), "    \"bit_accuracy_verdict\": \"PASS\",\n"
                              "    \"bit_accuracy_tolerance_db\": 108.000000,\n"
                              "    \"levelfidelity_verdict\": \"PASS\",\n"));
}

// A 1 dB louder 16-bit DUT sits at the spectral check's default 1 dB peak tolerance, where
// requantization tips some bins over; these settings give the spectrum room so level fidelity
// alone decides.
const char* const kRoomySpectrum = "\"spectral_fidelity\": { \"peak_tolerance_db\": 1.5 }";

std::string settings_with(const char* section) {
    return std::string("{ ") + section + ", " + kRoomySpectrum + " }";
}

TEST(AnalyzeChecks, LevelFidelityPassesOneDbAndFailsOnePointOneDb) {
    CheckRun louder;
    louder.write_pair([](std::vector<double>& dut) { gain_db(dut, 1.0); });
    const std::string roomy = louder.dir.file("roomy.json");
    ASSERT_TRUE(write_text_file(roomy, std::string("{ ") + kRoomySpectrum + " }"));
    // Broadband noise made louder reads as a large THD+N, so distortion stays out of this test.
    const ProcessOutput passing =
        louder.run({"--no-bitexact", "--no-distortion", "--config", roomy});
    EXPECT_EQ(passing.exit_status, 0) << passing.out;
    EXPECT_TRUE(has(louder.json(), "    \"levelfidelity_verdict\": \"PASS\",\n"));

    CheckRun loudest;
    loudest.write_pair([](std::vector<double>& dut) { gain_db(dut, 1.1); });
    const ProcessOutput failing = loudest.run({"--no-bitexact", "--no-distortion"});
    EXPECT_EQ(failing.exit_status, 2);
    EXPECT_EQ(failing.out, loudest.wrote("overall: FAIL -- Level Fidelity, Spectral Fidelity"));
    EXPECT_TRUE(has(loudest.json(), "    \"gating_failures\": \"levelfidelity,spectral\",\n"));
}

TEST(AnalyzeChecks, LevelFidelityCanBeMadeReferenceOnly) {
    CheckRun r;
    r.write_pair([](std::vector<double>& dut) { gain_db(dut, 1.1); });
    const std::string roomy = r.dir.file("roomy.json");
    ASSERT_TRUE(write_text_file(roomy, std::string("{ ") + kRoomySpectrum + " }"));
    const ProcessOutput flag =
        r.run({"--levelfidelity-ref-only", "--no-distortion", "--config", roomy});
    EXPECT_EQ(flag.exit_status, 0);
    EXPECT_TRUE(has(r.json(), "    \"levelfidelity_verdict\": \"FAIL\",\n"));

    const std::string config = r.dir.file("run.json");
    ASSERT_TRUE(
        write_text_file(config, settings_with("\"level_fidelity\": { \"gates_overall\": false }")));
    EXPECT_EQ(r.run({"--config", config, "--no-distortion"}).exit_status, 0);

    const std::string defaults = r.dir.file("defaults.cfg");
    ASSERT_TRUE(write_text_file(
        defaults, std::string("{ \"analysis\": ") +
                      settings_with("\"level_fidelity\": { \"gates_overall\": false }") + " }"));
    EXPECT_EQ(r.run({"--defaults-cfg", defaults, "--no-distortion"}).exit_status, 0);

    const std::string gating = r.dir.file("gating.json");
    ASSERT_TRUE(write_text_file(gating, "{ \"level_fidelity\": { \"gates_overall\": true } }"));
    EXPECT_EQ(
        r.run({"--defaults-cfg", defaults, "--config", gating, "--no-distortion"}).exit_status, 2)
        << "--config wins over the defaults file";
}

TEST(AnalyzeChecks, DeepscanAndImpulseAddTheirBlocksInOrder) {
    CheckRun r;
    r.write_pair([](std::vector<double>&) {});
    ASSERT_EQ(r.run({"--deepscan", "--impulse"}).exit_status, 0);
    const std::string json = r.json();
    const std::size_t level = json.find("\"levelfidelity_verdict\"");
    const std::size_t time = json.find("\"time_domain_verdict\": \"PASS\"");
    const std::size_t impulse = json.find("\"impulse_template_verdict\": \"PASS\"");
    ASSERT_NE(time, std::string::npos) << json;
    ASSERT_NE(impulse, std::string::npos) << json;
    EXPECT_LT(level, time);
    EXPECT_LT(time, impulse);
}

TEST(AnalyzeChecks, DefaultProfilesEnableTheirChecks) {
    CheckRun r;
    r.write_pair([](std::vector<double>&) {});
    const std::string config = r.dir.file("run.json");
    ASSERT_TRUE(
        write_text_file(config, "{ \"general\": { \"default_profile\": \"time_domain\" } }"));
    ASSERT_EQ(r.run({"--config", config}).exit_status, 0);
    EXPECT_TRUE(has(r.json(), "\"time_domain_verdict\""));
    EXPECT_FALSE(has(r.json(), "\"impulse_template_verdict\""));
}

} // namespace
