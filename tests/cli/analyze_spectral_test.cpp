// End-to-end runs of the spectral check: multitone pairs, configured bands, frequency and amplitude
// sweeps and snapshots, read back from the results JSON.
#include "analyze_fixture.h"
#include "audio/wav_file.h"
#include "cli_test_support.h"
#include "spectral_signals.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;

const std::vector<Tone> kTones = {{500.0, 0.1},  {1000.0, 0.1}, {3000.0, 0.1},
                                  {6000.0, 0.1}, {9000.0, 0.1}, {14000.0, 0.1}};

struct SpectralRun {
    TempDir dir;
    std::string ref = dir.file("ref.wav");
    std::string dut = dir.file("dut.wav");
    std::string json_path = dir.file("r.json");

    void write_pair(const std::vector<double>& ref_samples,
                    const std::vector<double>& dut_samples) {
        write_wav(ref, kRate, 1, ref_samples, kWavFormatFloat32);
        write_wav(dut, kRate, 1, dut_samples, kWavFormatFloat32);
    }

    // Writes `text` as the --config file and returns its path.
    std::string config(const std::string& text) {
        const std::string path = dir.file("run.json");
        EXPECT_TRUE(write_text_file(path, text));
        return path;
    }

    // Spectral fidelity alone decides the verdict: level fidelity is reference-only and
    // distortion does not run.
    ProcessOutput run(std::vector<std::string> extra = {}) const {
        std::vector<std::string> args{"analyze",
                                      "--ref",
                                      ref,
                                      "--dut",
                                      dut,
                                      "--out",
                                      dir.file("r.html"),
                                      "--json",
                                      "--quiet",
                                      "--exit-code",
                                      "--levelfidelity-ref-only",
                                      "--no-distortion"};
        args.insert(args.end(), extra.begin(), extra.end());
        return run_sonalyx(args);
    }

    std::string json() const { return read_text_file(json_path); }
};

std::vector<double> multitone(const std::vector<Tone>& tones, double seconds = 1.0) {
    return tone_sum(tones, kRate, static_cast<std::size_t>(seconds * kRate));
}

TEST(AnalyzeSpectral, IdenticalMultitoneFilesPassWithRatioZero) {
    SpectralRun r;
    r.write_pair(multitone(kTones), multitone(kTones));
    const ProcessOutput out = r.run();
    EXPECT_EQ(out.exit_status, 0) << out.err;
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"spectral_verdict\": \"PASS\",\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_frames_scanned\": 1,\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_p99_ratio\": 0.000000,\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_worst_bin_ratio\": 0.000000,\n"));
    EXPECT_GT(json_number(json, "spectral_channel_0_bins_compared"), 0.0);
    EXPECT_FALSE(has(json, "spectral_channel_1_")) << "a mono pair has no channel 1 keys";
}

TEST(AnalyzeSpectral, SpectralComesBetweenLevelFidelityAndDistortion) {
    SpectralRun r;
    r.write_pair(multitone(kTones), multitone(kTones));
    std::vector<std::string> args{
        "analyze", "--ref",  r.ref, "--dut", r.dut, "--out", r.dir.file("r.html"),
        "--json",  "--quiet"};
    ASSERT_EQ(run_sonalyx(args).exit_status, 0);
    const std::string json = r.json();
    const std::size_t level = json.find("levelfidelity_verdict");
    const std::size_t spectral = json.find("spectral_verdict");
    const std::size_t distortion = json.find("distortion_verdict");
    ASSERT_NE(spectral, std::string::npos);
    EXPECT_LT(level, spectral);
    EXPECT_LT(spectral, distortion);
}

TEST(AnalyzeSpectral, ATiltAboveFiveKilohertzFailsBinsThere) {
    SpectralRun r;
    std::vector<Tone> tilted = kTones;
    for (Tone& tone : tilted) {
        if (tone.freq_hz > 5000.0) tone.amplitude *= std::pow(10.0, 1.0 / 20.0);
    }
    r.write_pair(multitone(kTones), multitone(tilted));
    const std::string config =
        r.config("{ \"spectral_fidelity\": { \"peak_tolerance_db\": 0.5 } }");
    const ProcessOutput out = r.run({"--config", config});
    EXPECT_EQ(out.exit_status, 2) << out.err;
    EXPECT_EQ(out.out, "wrote " + r.dir.file("r.html") + " + " + r.json_path +
                           " (overall: FAIL -- Spectral Fidelity)\n");
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"gating_failures\": \"spectral\",\n"));
    EXPECT_TRUE(has(json, "    \"spectral_verdict\": \"FAIL\",\n"));
    EXPECT_GT(json_number(json, "spectral_channel_0_bins_failed"), 0.0);
    EXPECT_GT(json_number(json, "spectral_channel_0_worst_bin_freq_hz"), 5000.0);
    EXPECT_NEAR(json_number(json, "spectral_channel_0_worst_bin_diff_db"), 1.0, 0.05);
    EXPECT_TRUE(has(json, "\"spectral_channel_0_worst_bin_is_peak\": 1")) << json;

    // The same tilt under the default 1 dB peak tolerance sits at the tolerance and passes.
    std::vector<Tone> slight = kTones;
    for (Tone& tone : slight) {
        if (tone.freq_hz > 5000.0) tone.amplitude *= std::pow(10.0, 0.9 / 20.0);
    }
    r.write_pair(multitone(kTones), multitone(slight));
    EXPECT_EQ(r.run().exit_status, 0);
}

TEST(AnalyzeSpectral, AMissingToneFailsAPeakBin) {
    SpectralRun r;
    std::vector<Tone> missing = kTones;
    missing.erase(missing.begin() + 2); // no 3 kHz tone
    r.write_pair(multitone(kTones), multitone(missing));
    EXPECT_EQ(r.run().exit_status, 2);
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "\"spectral_channel_0_worst_bin_is_peak\": 1")) << json;
    EXPECT_NEAR(json_number(json, "spectral_channel_0_worst_bin_freq_hz"), 3000.0, 6.0);
    EXPECT_LT(json_number(json, "spectral_channel_0_worst_bin_diff_db"), -20.0);
}

const char* const kTwoBands =
    "{ \"spectral_fidelity\": { \"bands\": ["
    "{ \"upper_freq_hz\": 4000, \"noise_floor_db\": -100, \"low_level_signal_threshold_db\": -70,"
    " \"peak_threshold_db\": -60, \"signal_tolerance_db\": 5, "
    "\"low_level_signal_tolerance_db\": 10, \"peak_tolerance_db\": 2 },"
    "{ \"upper_freq_hz\": 24000, \"noise_floor_db\": -100, \"low_level_signal_threshold_db\": -70,"
    " \"peak_threshold_db\": -60, \"signal_tolerance_db\": 5, "
    "\"low_level_signal_tolerance_db\": 10, \"peak_tolerance_db\": 0.5 } ] } }";

std::vector<Tone> louder_at(double freq_hz, double db) {
    std::vector<Tone> tones = kTones;
    for (Tone& tone : tones) {
        if (tone.freq_hz == freq_hz) tone.amplitude *= std::pow(10.0, db / 20.0);
    }
    return tones;
}

TEST(AnalyzeSpectral, ConfiguredBandsApplyTheirOwnTolerances) {
    SpectralRun r;
    const std::string config = r.config(kTwoBands);
    r.write_pair(multitone(kTones), multitone(louder_at(1000.0, 1.5)));
    EXPECT_EQ(r.run({"--config", config}).exit_status, 0) << "1.5 dB is inside the low band's 2 dB";
    r.write_pair(multitone(kTones), multitone(louder_at(9000.0, 1.5)));
    EXPECT_EQ(r.run({"--config", config}).exit_status, 2) << "1.5 dB exceeds the high band's 0.5";
    EXPECT_NEAR(json_number(r.json(), "spectral_channel_0_worst_bin_freq_hz"), 9000.0, 6.0);
}

// 8 s at 48 kHz: with 8192-point frames, no overlap and a 2048-sample edge skip the scan has
// (384000 - 8192 - 4096) / 8192 + 1 = 46 regular frames ending at 378880, short of
// 384000 - 2048, so a tail frame is added.
constexpr std::size_t kSweepFrames = 8 * kRate;

const char* const kLogSweepConfig =
    "{ \"spectral_fidelity\": { \"freq_sweep_start_hz\": 20, \"freq_sweep_end_hz\": 20000,"
    " \"freq_sweep_shape\": \"log\", \"sweep_edge_skip_samples\": 2048 } }";

TEST(AnalyzeSpectral, LogSweepUnderFreqsweepPassesWhenIdenticalAndFailsADip) {
    SpectralRun r;
    const auto flat = [](double) { return 0.0; };
    const std::vector<double> sweep = log_sweep(20.0, 20000.0, 0.5, kRate, kSweepFrames, flat);
    r.write_pair(sweep, sweep);
    const std::string config = r.config(kLogSweepConfig);
    const ProcessOutput out = r.run({"--freqsweep", "--config", config});
    EXPECT_EQ(out.exit_status, 0) << out.err;
    std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_edge_skipped_samples\": 2048,\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_frames_scanned\": 47,\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_p99_ratio\": 0.000000,\n"));

    // A smooth 3 dB dip over the octave 1-2 kHz (an abrupt switch would splatter elsewhere).
    const auto dip = [](double f) {
        if (f <= 1000.0 || f >= 2000.0) return 0.0;
        const double s = std::sin(std::numbers::pi * std::log2(f / 1000.0));
        return -3.0 * s * s;
    };
    r.write_pair(sweep, log_sweep(20.0, 20000.0, 0.5, kRate, kSweepFrames, dip));
    EXPECT_EQ(r.run({"--freqsweep", "--config", config}).exit_status, 2);
    json = r.json();
    EXPECT_TRUE(has(json, "    \"spectral_verdict\": \"FAIL\",\n"));
    const double worst = json_number(json, "spectral_channel_0_worst_bin_freq_hz");
    EXPECT_GT(worst, 900.0);
    EXPECT_LT(worst, 2200.0);
}

TEST(AnalyzeSpectral, AmplitudeSweepWithARelativeNoiseFloor) {
    SpectralRun r;
    const std::size_t frames = 4 * kRate;
    const auto none = [](double) { return 0.0; };
    const std::vector<double> ramp = level_ramp(1000.0, -60.0, -6.0, kRate, frames, none);
    r.write_pair(ramp, ramp);
    const std::string config = r.config("{ \"spectral_fidelity\": { \"amp_sweep_test_freq_hz\": "
                                        "1000, \"relative_noise_floor_db\": -50 } }");
    const ProcessOutput out = r.run({"--ampsweep", "--config", config});
    EXPECT_EQ(out.exit_status, 0) << out.err;
    EXPECT_GT(json_number(r.json(), "spectral_channel_0_frames_scanned"), 1.0)
        << "a sweep profile scans continuously";

    const auto bump = [](double t) { return t > 1.5 && t < 2.5 ? 2.0 : 0.0; };
    r.write_pair(ramp, level_ramp(1000.0, -60.0, -6.0, kRate, frames, bump));
    EXPECT_EQ(r.run({"--ampsweep", "--config", config}).exit_status, 2);
    EXPECT_TRUE(has(r.json(), "\"spectral_channel_0_worst_bin_is_peak\": 1"));
}

TEST(AnalyzeSpectral, SnapshotsByCountSpreadOverTheOverlap) {
    SpectralRun r;
    r.write_pair(multitone(kTones), multitone(kTones));
    const ProcessOutput out =
        r.run({"--config", r.config("{ \"spectral_fidelity\": { \"snapshots\": 5 } }")});
    EXPECT_EQ(out.exit_status, 0) << out.err;
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"spectral_insufficient_samples\": 0,\n"
                          "    \"spectral_snapshot_count\": 5,\n"));
    // Centres at 2400 + i * 10800; the first start is raised to 0 and the last moved back to
    // 48000 - 8192.
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_snapshot_0_time_sec\": 0.085333,\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_snapshot_2_time_sec\": 0.500000,\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_snapshot_4_time_sec\": 0.914667,\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_snapshot_4_verdict\": \"PASS\",\n"));
    EXPECT_FALSE(has(json, "spectral_channel_0_frames_scanned"));
}

TEST(AnalyzeSpectral, SnapshotsFromAListTrueAndTheCommandLine) {
    SpectralRun r;
    r.write_pair(multitone(kTones), multitone(kTones));
    const std::string list = r.config("{ \"spectral_fidelity\": { \"snapshots\": "
                                      "[ { \"time_sec\": 0.25 }, { \"time_sec\": 0.75 } ] } }");
    ASSERT_EQ(r.run({"--config", list}).exit_status, 0);
    std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"spectral_snapshot_count\": 2,\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_snapshot_0_time_sec\": 0.250000,\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_snapshot_1_time_sec\": 0.750000,\n"));

    ASSERT_EQ(r.run({"--config", list, "--snapshots", "3"}).exit_status, 0);
    EXPECT_TRUE(has(r.json(), "    \"spectral_snapshot_count\": 3,\n"))
        << "--snapshots overrides the file's list";

    const std::string yes = r.config("{ \"spectral_fidelity\": { \"snapshots\": true } }");
    ASSERT_EQ(r.run({"--config", yes}).exit_status, 0);
    EXPECT_TRUE(has(r.json(), "    \"spectral_snapshot_count\": 5,\n"));
}

TEST(AnalyzeSpectral, AFailingSnapshotFailsTheCheck) {
    SpectralRun r;
    std::vector<double> dut = multitone(kTones);
    const std::vector<double> hole = multitone(louder_at(6000.0, -12.0));
    for (std::size_t i = 36000; i < dut.size(); ++i)
        dut[i] = hole[i]; // the 6 kHz tone drops by 12 dB in the last quarter
    r.write_pair(multitone(kTones), dut);
    EXPECT_EQ(r.run({"--snapshots", "2"}).exit_status, 2);
    const std::string json = r.json();
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_snapshot_0_verdict\": \"PASS\",\n"));
    EXPECT_TRUE(has(json, "    \"spectral_channel_0_snapshot_1_verdict\": \"FAIL\",\n"));
}

struct Rejected {
    const char* config;
    std::vector<std::string> flags;
    const char* message;
};

TEST(AnalyzeSpectral, EverySpectralValidationMessageStopsTheRun) {
    const std::vector<Rejected> cases = {
        {"\"fft_size\": 1000",
         {},
         "error: spectral_fidelity.fft_size 1000 not supported -- must be one of 1024, 2048, "
         "4096, 8192, 16384, 32768 (also used by Distortion, which reads this same field)\n"},
        {"\"profile\": \"chirp\"",
         {},
         "error: spectral_fidelity.profile 'chirp' not recognized -- must be one of "
         "\"freq_domain_multitone\", \"freq_sweep\", \"amp_sweep\"\n"},
        {"\"relative_noise_floor_db\": -40",
         {},
         "error: spectral_fidelity.relative_noise_floor_db only applies to profile=\"amp_sweep\" "
         "(got profile=\"freq_domain_multitone\")\n"},
        {"\"relative_noise_floor_db\": -40, \"bands\": [ { \"upper_freq_hz\": 24000, "
         "\"noise_floor_db\": -100, \"low_level_signal_threshold_db\": -70, "
         "\"peak_threshold_db\": -60, \"signal_tolerance_db\": 5, "
         "\"low_level_signal_tolerance_db\": 10, \"peak_tolerance_db\": 1 } ]",
         {"--ampsweep"},
         "error: spectral_fidelity.bands and spectral_fidelity.relative_noise_floor_db cannot "
         "both be set -- use only one of them\n"},
        {"\"bands\": [ { \"upper_freq_hz\": 12000, \"noise_floor_db\": -100, "
         "\"low_level_signal_threshold_db\": -70, \"peak_threshold_db\": -60, "
         "\"signal_tolerance_db\": 5, \"low_level_signal_tolerance_db\": 10, "
         "\"peak_tolerance_db\": 1 } ]",
         {},
         "error: spectral_fidelity.bands must have strictly ascending upper_freq_hz, and the last "
         "band's upper_freq_hz must cover the Nyquist frequency (24000.0 Hz)\n"},
        {"\"freq_sweep_start_hz\": 20",
         {"--freqsweep"},
         "error: spectral_fidelity.freq_sweep_start_hz and freq_sweep_end_hz must both be set "
         "together, or neither\n"},
        {"\"freq_sweep_start_hz\": 20, \"freq_sweep_end_hz\": 20000",
         {},
         "error: spectral_fidelity.freq_sweep_start_hz/end_hz/shape only apply to "
         "profile=\"freq_sweep\" (got profile=\"freq_domain_multitone\")\n"},
        {"\"amp_sweep_test_freq_hz\": 1000",
         {"--freqsweep"},
         "error: spectral_fidelity.amp_sweep_test_freq_hz only applies to profile=\"amp_sweep\" "
         "(got profile=\"freq_sweep\")\n"},
        {"\"sweep_search_window_cents\": 25",
         {"--freqsweep"},
         "error: spectral_fidelity.sweep_search_window_cents only applies once sweep peak "
         "windowing is active (freq_sweep_start_hz/end_hz for profile=\"freq_sweep\", or "
         "amp_sweep_test_freq_hz for profile=\"amp_sweep\")\n"},
        {"\"freq_sweep_start_hz\": 20, \"freq_sweep_end_hz\": 20000, \"freq_sweep_shape\": "
         "\"exp\"",
         {"--freqsweep"},
         "error: spectral_fidelity.freq_sweep_shape 'exp' not recognized -- must be \"linear\" "
         "or \"log\"\n"},
        {"\"sweep_edge_skip_samples\": 100",
         {},
         "error: spectral_fidelity.sweep_edge_skip_samples only applies to "
         "profile=\"freq_sweep\" or \"amp_sweep\" (got profile=\"freq_domain_multitone\")\n"},
        {"\"sweep_edge_skip_samples\": -5",
         {"--ampsweep"},
         "error: spectral_fidelity.sweep_edge_skip_samples must be 0 or more, got -5\n"},
        {"\"overlap_fraction\": 0.25",
         {},
         "error: spectral_fidelity.overlap_fraction only applies when "
         "spectral_fidelity.continuous is true\n"},
        {"\"snapshots\": 30",
         {},
         "error: spectral_fidelity.snapshots must resolve to between 1 and 25 snapshots, got "
         "30\n"},
        {"\"continuous\": true, \"overlap_fraction\": 0.6",
         {},
         "error: spectral_fidelity.overlap_fraction must be in [0, 0.5], got 0.6000\n"},
        {"\"continuous\": true, \"snapshots\": 3",
         {},
         "error: spectral_fidelity.snapshots and spectral_fidelity.continuous cannot both be set "
         "-- multi-snapshot and continuous scan are alternate modes\n"},
    };
    SpectralRun r;
    r.write_pair(multitone(kTones, 0.5), multitone(kTones, 0.5));
    for (const Rejected& c : cases) {
        std::vector<std::string> extra = c.flags;
        extra.push_back("--config");
        extra.push_back(r.config(std::string("{ \"spectral_fidelity\": { ") + c.config + " } }"));
        const ProcessOutput out = r.run(extra);
        EXPECT_EQ(out.exit_status, 1) << c.config;
        EXPECT_EQ(out.err, c.message) << c.config;
        EXPECT_EQ(out.out, "") << c.config;
    }
    EXPECT_EQ(r.run({"--snapshots", "0"}).err,
              "error: spectral_fidelity.snapshots must resolve to between 1 and 25 snapshots, got "
              "0\n");
}

} // namespace
