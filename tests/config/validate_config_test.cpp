// The fourteen validation rules: a passing and a failing case each, with the exact message.
#include <gtest/gtest.h>

#include <string>

#include "config_fixture.h"

namespace {

template <typename T> void give(Resolved<T>& setting, T value) {
    setting = Resolved<T>{true, std::move(value), SettingSource::config_file};
}

class ValidateConfig : public testing::Test {
  protected:
    AnalysisConfig config = resolve_plain({}, {});
    SpectralFidelityConfig& spectral = config.spectral_fidelity;

    bool passes() {
        message = "";
        const bool ok = validate_analysis_config(config, 48000, message);
        EXPECT_EQ(ok, message.empty()) << message;
        return ok;
    }
    std::string failure() {
        message = "";
        EXPECT_FALSE(validate_analysis_config(config, 48000, message));
        return message;
    }
    void profile(const char* name) { give(spectral.profile, std::string(name)); }
    static std::vector<SpectralBandSetting> bands(std::initializer_list<double> uppers) {
        std::vector<SpectralBandSetting> list;
        for (const double upper : uppers)
            list.push_back(SpectralBandSetting{upper});
        return list;
    }

    std::string message;
};

TEST_F(ValidateConfig, Rule1FftSize) {
    for (const std::size_t size : {1024u, 2048u, 4096u, 8192u, 16384u, 32768u}) {
        give(spectral.fft_size, std::size_t{size});
        EXPECT_TRUE(passes()) << size;
    }
    give(spectral.fft_size, std::size_t{1000});
    EXPECT_EQ(failure(), "error: spectral_fidelity.fft_size 1000 not supported -- must be one of "
                         "1024, 2048, 4096, 8192, 16384, 32768 (also used by Distortion, which "
                         "reads this same field)\n");
    give(spectral.fft_size, std::size_t{65536});
    EXPECT_NE(failure().find("fft_size 65536 not supported"), std::string::npos);
}

TEST_F(ValidateConfig, Rule2SpectralProfile) {
    profile("amp_sweep");
    EXPECT_TRUE(passes());
    profile("freq_domain_multitone");
    EXPECT_TRUE(passes());
    profile("chirp");
    EXPECT_EQ(failure(), "error: spectral_fidelity.profile 'chirp' not recognized -- must be one "
                         "of \"freq_domain_multitone\", \"freq_sweep\", \"amp_sweep\"\n");
}

TEST_F(ValidateConfig, Rule3RelativeFloorOnlyForAmpSweep) {
    give(spectral.relative_noise_floor_db, -40.0);
    profile("amp_sweep");
    EXPECT_TRUE(passes());
    profile("freq_sweep");
    EXPECT_EQ(failure(), "error: spectral_fidelity.relative_noise_floor_db only applies to "
                         "profile=\"amp_sweep\" (got profile=\"freq_sweep\")\n");
}

TEST_F(ValidateConfig, Rule4BandsExcludeRelativeFloor) {
    profile("amp_sweep");
    give(spectral.bands, bands({24000.0}));
    EXPECT_TRUE(passes());
    give(spectral.relative_noise_floor_db, -40.0);
    EXPECT_EQ(failure(), "error: spectral_fidelity.bands and "
                         "spectral_fidelity.relative_noise_floor_db cannot both be set -- use only "
                         "one of them\n");
}

TEST_F(ValidateConfig, Rule5BandsAscendingAndCoveringNyquist) {
    const std::string expected =
        "error: spectral_fidelity.bands must have strictly ascending upper_freq_hz, and the last "
        "band's upper_freq_hz must cover the Nyquist frequency (24000.0 Hz)\n";
    give(spectral.bands, bands({100.0, 1000.0, 24000.0}));
    EXPECT_TRUE(passes());
    give(spectral.bands, bands({100.0, 100.0, 24000.0}));
    EXPECT_EQ(failure(), expected);
    give(spectral.bands, bands({1000.0, 100.0, 24000.0}));
    EXPECT_EQ(failure(), expected);
    give(spectral.bands, bands({100.0, 23999.0}));
    EXPECT_EQ(failure(), expected);
    give(spectral.bands, bands({}));
    EXPECT_EQ(failure(), expected);
    message = "";
    EXPECT_FALSE(validate_analysis_config(config, 44100, message));
    EXPECT_NE(message.find("(22050.0 Hz)"), std::string::npos);
}

TEST_F(ValidateConfig, Rule6SweepStartAndEndTogether) {
    profile("freq_sweep");
    give(spectral.freq_sweep_start_hz, 20.0);
    EXPECT_EQ(failure(), "error: spectral_fidelity.freq_sweep_start_hz and freq_sweep_end_hz must "
                         "both be set together, or neither\n");
    give(spectral.freq_sweep_end_hz, 20000.0);
    EXPECT_TRUE(passes());
    spectral.freq_sweep_start_hz = {};
    EXPECT_NE(failure().find("must both be set together"), std::string::npos);
}

TEST_F(ValidateConfig, Rule7SweepRangeOnlyForFreqSweep) {
    give(spectral.freq_sweep_start_hz, 20.0);
    give(spectral.freq_sweep_end_hz, 20000.0);
    EXPECT_EQ(failure(), "error: spectral_fidelity.freq_sweep_start_hz/end_hz/shape only apply to "
                         "profile=\"freq_sweep\" (got profile=\"freq_domain_multitone\")\n");
    profile("freq_sweep");
    EXPECT_TRUE(passes());
}

TEST_F(ValidateConfig, Rule8TestFrequencyOnlyForAmpSweep) {
    give(spectral.amp_sweep_test_freq_hz, 1000.0);
    profile("freq_sweep");
    EXPECT_EQ(failure(), "error: spectral_fidelity.amp_sweep_test_freq_hz only applies to "
                         "profile=\"amp_sweep\" (got profile=\"freq_sweep\")\n");
    profile("amp_sweep");
    EXPECT_TRUE(passes());
}

TEST_F(ValidateConfig, Rule9SearchWindowNeedsPeakWindowing) {
    const std::string expected =
        "error: spectral_fidelity.sweep_search_window_cents only applies once sweep peak "
        "windowing is active (freq_sweep_start_hz/end_hz for profile=\"freq_sweep\", or "
        "amp_sweep_test_freq_hz for profile=\"amp_sweep\")\n";
    give(spectral.sweep_search_window_cents, 100.0);
    profile("amp_sweep");
    EXPECT_EQ(failure(), expected);
    give(spectral.amp_sweep_test_freq_hz, 1000.0);
    EXPECT_TRUE(passes());
    spectral.amp_sweep_test_freq_hz = {};
    profile("freq_sweep");
    EXPECT_EQ(failure(), expected);
    give(spectral.freq_sweep_start_hz, 20.0);
    give(spectral.freq_sweep_end_hz, 20000.0);
    EXPECT_TRUE(passes());
}

TEST_F(ValidateConfig, Rule9DefaultSearchWindowNeedsNothing) {
    EXPECT_EQ(spectral.sweep_search_window_cents.value, 50.0);
    EXPECT_TRUE(passes());
}

TEST_F(ValidateConfig, Rule10ShapeCheckedOnlyWithRange) {
    profile("freq_sweep");
    give(spectral.freq_sweep_shape, std::string("exp"));
    EXPECT_TRUE(passes());
    give(spectral.freq_sweep_start_hz, 20.0);
    give(spectral.freq_sweep_end_hz, 20000.0);
    EXPECT_EQ(failure(),
              "error: spectral_fidelity.freq_sweep_shape 'exp' not recognized -- must be "
              "\"linear\" or \"log\"\n");
    give(spectral.freq_sweep_shape, std::string("Log"));
    EXPECT_NE(failure().find("'Log' not recognized"), std::string::npos);
    give(spectral.freq_sweep_shape, std::string("log"));
    EXPECT_TRUE(passes());
    give(spectral.freq_sweep_shape, std::string("linear"));
    EXPECT_TRUE(passes());
}

TEST_F(ValidateConfig, Rule11EdgeSkipOnlyForSweeps) {
    give(spectral.sweep_edge_skip_samples, 100L);
    EXPECT_EQ(failure(), "error: spectral_fidelity.sweep_edge_skip_samples only applies to "
                         "profile=\"freq_sweep\" or \"amp_sweep\" (got "
                         "profile=\"freq_domain_multitone\")\n");
    profile("amp_sweep");
    EXPECT_TRUE(passes());
    give(spectral.sweep_edge_skip_samples, 0L);
    EXPECT_TRUE(passes());
}

TEST_F(ValidateConfig, Rule11EdgeSkipNotNegative) {
    profile("freq_sweep");
    give(spectral.sweep_edge_skip_samples, -5L);
    EXPECT_EQ(failure(),
              "error: spectral_fidelity.sweep_edge_skip_samples must be 0 or more, got -5\n");
}

TEST_F(ValidateConfig, Rule12OverlapNeedsContinuous) {
    give(spectral.overlap_fraction, 0.25);
    EXPECT_EQ(failure(), "error: spectral_fidelity.overlap_fraction only applies when "
                         "spectral_fidelity.continuous is true\n");
    give(spectral.continuous, true);
    EXPECT_TRUE(passes());
}

TEST_F(ValidateConfig, Rule13SnapshotCount) {
    give(spectral.snapshots, SnapshotSetting{false, 25, {}});
    EXPECT_TRUE(passes());
    give(spectral.snapshots, SnapshotSetting{false, 1, {}});
    EXPECT_TRUE(passes());
    give(spectral.snapshots, SnapshotSetting{false, 26, {}});
    EXPECT_EQ(failure(), "error: spectral_fidelity.snapshots must resolve to between 1 and 25 "
                         "snapshots, got 26\n");
    give(spectral.snapshots, SnapshotSetting{true, 0, {}});
    EXPECT_EQ(failure(), "error: spectral_fidelity.snapshots must resolve to between 1 and 25 "
                         "snapshots, got 0\n");
}

TEST_F(ValidateConfig, Rule13ContinuousOverlapRange) {
    give(spectral.continuous, true);
    for (const double fraction : {0.0, 0.25, 0.5}) {
        give(spectral.overlap_fraction, fraction);
        EXPECT_TRUE(passes()) << fraction;
    }
    give(spectral.overlap_fraction, 0.6);
    EXPECT_EQ(failure(),
              "error: spectral_fidelity.overlap_fraction must be in [0, 0.5], got 0.6000\n");
    give(spectral.overlap_fraction, -0.125);
    EXPECT_EQ(failure(),
              "error: spectral_fidelity.overlap_fraction must be in [0, 0.5], got -0.1250\n");
}

TEST_F(ValidateConfig, Rule13ContinuousExcludesSnapshots) {
    give(spectral.continuous, true);
    give(spectral.snapshots, SnapshotSetting{false, 5, {}});
    EXPECT_EQ(failure(), "error: spectral_fidelity.snapshots and spectral_fidelity.continuous "
                         "cannot both be set -- multi-snapshot and continuous scan are alternate "
                         "modes\n");
}

TEST_F(ValidateConfig, Rule14DistortionOverlap) {
    give(config.distortion.overlap_fraction, 0.5);
    EXPECT_EQ(failure(), "error: distortion.overlap_fraction only applies when "
                         "distortion.continuous is true\n");
    give(config.distortion.continuous, true);
    EXPECT_TRUE(passes());
    give(config.distortion.overlap_fraction, 0.75);
    EXPECT_EQ(failure(), "error: distortion.overlap_fraction must be in [0, 0.5], got 0.7500\n");
}

TEST_F(ValidateConfig, RulesAreCheckedInOrder) {
    give(spectral.fft_size, std::size_t{3000});
    profile("chirp");
    give(config.distortion.overlap_fraction, 0.9);
    EXPECT_NE(failure().find("fft_size 3000"), std::string::npos);
    give(spectral.fft_size, std::size_t{4096});
    EXPECT_NE(failure().find("profile 'chirp'"), std::string::npos);
    profile("amp_sweep");
    EXPECT_NE(failure().find("distortion.overlap_fraction only applies"), std::string::npos);
}

TEST(ValidateFromFiles, SnapshotsTrueAndZeroThroughTheWholeChain) {
    const SettingsFile five = load_override_text(R"({"spectral_fidelity": {"snapshots": true}})");
    const AnalysisConfig config = resolve_plain(five, {});
    EXPECT_EQ(config.spectral_fidelity.snapshots.value.count, 5u);
    std::string message;
    EXPECT_TRUE(validate_analysis_config(config, 48000, message)) << message;
    const SettingsFile zero = load_override_text(R"({"spectral_fidelity": {"snapshots": 0}})");
    EXPECT_FALSE(resolve_plain(zero, {}).spectral_fidelity.snapshots.set);
}

} // namespace
