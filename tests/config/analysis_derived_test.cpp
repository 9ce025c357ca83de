// Defaults that depend on the sample rate, the shared length, the profiles and other keys, and the
// gating labels.
#include <gtest/gtest.h>

#include <string>

#include "config_fixture.h"

namespace {

AnalysisConfig resolve_at(std::uint32_t rate, std::size_t shared_frames,
                          const SettingsFile& config_file = {},
                          const CommandLineSettings& command_line = {}) {
    AnalysisConfig config;
    resolve_analysis_config(config_file, {}, command_line, rate, shared_frames, config);
    return config;
}

TEST(AnalysisDerived, FftSizeAt96kHzWith20000SharedFrames) {
    const AnalysisConfig config = resolve_at(96000, 20000);
    EXPECT_EQ(config.spectral_fidelity.fft_size.value, 16384u);
    EXPECT_EQ(config.spectral_fidelity.fft_size.source, SettingSource::rate_default);
    EXPECT_FALSE(config.spectral_fidelity.fft_size.set);
}

TEST(AnalysisDerived, FftSizeAt96kHzWith5000SharedFrames) {
    const AnalysisConfig config = resolve_at(96000, 5000);
    EXPECT_EQ(config.spectral_fidelity.fft_size.value, 8192u);
    EXPECT_EQ(config.spectral_fidelity.fft_size.source, SettingSource::builtin_default);
}

TEST(AnalysisDerived, FftSizeStartsByRateAndHalves) {
    EXPECT_EQ(default_fft_size(44100, 10), 8192u);
    EXPECT_EQ(default_fft_size(48000, 1000000), 8192u);
    EXPECT_EQ(default_fft_size(48001, 1000000), 16384u);
    EXPECT_EQ(default_fft_size(96000, 16384), 16384u);
    EXPECT_EQ(default_fft_size(96000, 16383), 8192u);
    EXPECT_EQ(default_fft_size(96001, 1000000), 32768u);
    EXPECT_EQ(default_fft_size(192000, 32768), 32768u);
    EXPECT_EQ(default_fft_size(192000, 20000), 16384u);
    EXPECT_EQ(default_fft_size(192000, 0), 8192u);
    const AnalysisConfig config = resolve_at(192000, 100000);
    EXPECT_EQ(config.spectral_fidelity.fft_size.value, 32768u);
    EXPECT_EQ(config.spectral_fidelity.fft_size.source, SettingSource::rate_default);
}

TEST(AnalysisDerived, FileFftSizeReplacesRateDefault) {
    SettingsFile c;
    file_setting(c, SettingId::spectral_fft_size) = integer_setting(1024);
    const AnalysisConfig config = resolve_at(96000, 20000, c);
    EXPECT_EQ(config.spectral_fidelity.fft_size.value, 1024u);
    EXPECT_EQ(config.spectral_fidelity.fft_size.source, SettingSource::config_file);
}

TEST(AnalysisDerived, RateScaledDefaultsAt96kHz) {
    const AnalysisConfig config = resolve_at(96000, 96000);
    EXPECT_EQ(config.artifact.window_samples.value, 128u);
    EXPECT_EQ(config.artifact.window_samples.source, SettingSource::rate_default);
    EXPECT_EQ(config.artifact.min_silence_clip_run.value, 16u);
    EXPECT_EQ(config.artifact.min_silence_clip_run.source, SettingSource::rate_default);
    EXPECT_EQ(config.spectral_fidelity.sweep_edge_skip_samples.value, 8192);
    EXPECT_EQ(config.spectral_fidelity.sweep_edge_skip_samples.source, SettingSource::rate_default);
    EXPECT_FALSE(config.spectral_fidelity.sweep_edge_skip_samples.set);
}

TEST(AnalysisDerived, RateScaledDefaultsAt44100Hz) {
    const AnalysisConfig config = resolve_at(44100, 44100);
    EXPECT_EQ(config.artifact.window_samples.value, 64u);
    EXPECT_EQ(config.artifact.window_samples.source, SettingSource::builtin_default);
    EXPECT_EQ(config.artifact.min_silence_clip_run.value, 8u);
    EXPECT_EQ(config.artifact.min_silence_clip_run.source, SettingSource::builtin_default);
    EXPECT_EQ(config.spectral_fidelity.sweep_edge_skip_samples.value, 4096);
    EXPECT_EQ(config.spectral_fidelity.sweep_edge_skip_samples.source,
              SettingSource::builtin_default);
}

TEST(AnalysisDerived, RateScaledDefaultsRoundHalfUpThenTruncate) {
    // 88200 × 64 / 48000 = 117.6, 88200 × 8 / 48000 = 14.7, 88200 × 4096 / 48000 = 7526.4.
    const AnalysisConfig config = resolve_at(88200, 88200);
    EXPECT_EQ(config.artifact.window_samples.value, 118u);
    EXPECT_EQ(config.artifact.min_silence_clip_run.value, 15u);
    EXPECT_EQ(config.spectral_fidelity.sweep_edge_skip_samples.value, 7526);
    // 48000 Hz itself is not above 48000: plain defaults.
    EXPECT_EQ(resolve_at(48000, 1).artifact.window_samples.source, SettingSource::builtin_default);
}

TEST(AnalysisDerived, FileValuesReplaceRateScaledDefaults) {
    SettingsFile d;
    file_setting(d, SettingId::artifact_window_samples) = integer_setting(10);
    file_setting(d, SettingId::spectral_sweep_edge_skip_samples) = integer_setting(0);
    AnalysisConfig config;
    resolve_analysis_config({}, d, CommandLineSettings{}, 96000, 96000, config);
    EXPECT_EQ(config.artifact.window_samples.value, 10u);
    EXPECT_EQ(config.artifact.window_samples.source, SettingSource::defaults_file);
    EXPECT_EQ(config.spectral_fidelity.sweep_edge_skip_samples.value, 0);
    EXPECT_TRUE(config.spectral_fidelity.sweep_edge_skip_samples.set);
}

TEST(AnalysisDerived, AmpsweepFlagImpliesContinuous) {
    CommandLineSettings command_line;
    command_line.ampsweep = true;
    const AnalysisConfig config = resolve_at(48000, 48000, {}, command_line);
    EXPECT_TRUE(config.spectral_fidelity.continuous.value);
    EXPECT_EQ(config.spectral_fidelity.continuous.source, SettingSource::sweep_profile);
}

TEST(AnalysisDerived, SweepProfileFromFileImpliesContinuous) {
    SettingsFile d;
    file_setting(d, SettingId::spectral_profile) = text_setting("freq_sweep");
    AnalysisConfig config;
    resolve_analysis_config({}, d, CommandLineSettings{}, 48000, 48000, config);
    EXPECT_TRUE(config.spectral_fidelity.continuous.value);
    EXPECT_EQ(config.spectral_fidelity.continuous.source, SettingSource::sweep_profile);
}

TEST(AnalysisDerived, AnySnapshotSettingKeepsContinuousOff) {
    CommandLineSettings flags;
    flags.freqsweep = true;
    flags.snapshots = 3;
    EXPECT_FALSE(resolve_at(48000, 48000, {}, flags).spectral_fidelity.continuous.value);
    CommandLineSettings sweep_only;
    sweep_only.ampsweep = true;
    SettingsFile d;
    file_setting(d, SettingId::spectral_snapshots) =
        snapshots_setting(SnapshotSetting{false, 5, {}});
    AnalysisConfig config;
    resolve_analysis_config({}, d, sweep_only, 48000, 48000, config);
    EXPECT_FALSE(config.spectral_fidelity.continuous.value);
    EXPECT_EQ(config.spectral_fidelity.continuous.source, SettingSource::builtin_default);
}

TEST(AnalysisDerived, ExplicitContinuousFalseStaysForSweep) {
    SettingsFile c;
    file_setting(c, SettingId::spectral_profile) = text_setting("amp_sweep");
    file_setting(c, SettingId::spectral_continuous) = boolean_setting(false);
    const AnalysisConfig config = resolve_at(48000, 48000, c);
    EXPECT_FALSE(config.spectral_fidelity.continuous.value);
    EXPECT_EQ(config.spectral_fidelity.continuous.source, SettingSource::config_file);
}

TEST(AnalysisDerived, MultitoneProfileKeepsContinuousOff) {
    const AnalysisConfig config = resolve_at(48000, 48000);
    EXPECT_FALSE(config.spectral_fidelity.continuous.value);
    EXPECT_EQ(config.spectral_fidelity.continuous.source, SettingSource::builtin_default);
}

TEST(AnalysisDerived, LevelFidelityImpulseProfileDefaults) {
    SettingsFile c;
    file_setting(c, SettingId::level_fidelity_profile) = text_setting("impulse");
    const AnalysisConfig config = resolve_at(48000, 48000, c);
    EXPECT_EQ(config.level_fidelity.noise_floor_db.value, -30.0);
    EXPECT_EQ(config.level_fidelity.p99_tolerance_db.value, 1.94);
    EXPECT_EQ(config.level_fidelity.min_sustained_run_ms.value, 20.0);
    EXPECT_EQ(config.level_fidelity.noise_floor_db.source, SettingSource::builtin_default);
}

TEST(AnalysisDerived, OtherLevelFidelityProfilesUseGeneralDefaults) {
    for (const char* profile : {"general", "Impulse", "impulse ", "anything"}) {
        SettingsFile d;
        file_setting(d, SettingId::level_fidelity_profile) = text_setting(profile);
        AnalysisConfig config;
        resolve_analysis_config({}, d, CommandLineSettings{}, 48000, 48000, config);
        EXPECT_EQ(config.level_fidelity.noise_floor_db.value, -80.0) << profile;
        EXPECT_EQ(config.level_fidelity.p99_tolerance_db.value, 1.02) << profile;
    }
}

TEST(AnalysisDerived, ExplicitLevelValuesBeatImpulseDefaults) {
    SettingsFile c;
    file_setting(c, SettingId::level_fidelity_profile) = text_setting("impulse");
    SettingsFile d;
    file_setting(d, SettingId::level_fidelity_p99_tolerance_db) = number_setting(3.0);
    AnalysisConfig config;
    resolve_analysis_config(c, d, CommandLineSettings{}, 48000, 48000, config);
    EXPECT_EQ(config.level_fidelity.p99_tolerance_db.value, 3.0);
    EXPECT_EQ(config.level_fidelity.p99_tolerance_db.source, SettingSource::defaults_file);
    EXPECT_EQ(config.level_fidelity.noise_floor_db.value, -30.0);
}

// The spectral and time-domain low-level thresholds, from the highest-priority source down.
TEST(AnalysisDerived, LowLevelThresholdFallbackChain) {
    SettingsFile c;
    SettingsFile d;
    file_setting(c, SettingId::spectral_low_level_signal_threshold_db) = number_setting(-61.0);
    file_setting(c, SettingId::time_domain_low_level_signal_threshold_db) = number_setting(-61.0);
    file_setting(d, SettingId::spectral_low_level_signal_threshold_db) = number_setting(-62.0);
    file_setting(d, SettingId::time_domain_low_level_signal_threshold_db) = number_setting(-62.0);
    file_setting(c, SettingId::general_low_level_signal_threshold_db) = number_setting(-63.0);
    file_setting(d, SettingId::general_low_level_signal_threshold_db) = number_setting(-64.0);
    const struct {
        double value;
        SettingSource source;
    } expected[] = {{-61.0, SettingSource::config_file},
                    {-62.0, SettingSource::defaults_file},
                    {-63.0, SettingSource::config_file},
                    {-64.0, SettingSource::defaults_file},
                    {-70.0, SettingSource::builtin_default}};
    for (const auto& step : expected) {
        AnalysisConfig config;
        resolve_analysis_config(c, d, CommandLineSettings{}, 48000, 48000, config);
        EXPECT_EQ(config.spectral_fidelity.low_level_signal_threshold_db.value, step.value);
        EXPECT_EQ(config.spectral_fidelity.low_level_signal_threshold_db.source, step.source);
        EXPECT_EQ(config.time_domain.low_level_signal_threshold_db.value, step.value);
        EXPECT_EQ(config.time_domain.low_level_signal_threshold_db.source, step.source);
        // Remove the source just checked, so the next one shows through.
        if (file_setting(c, SettingId::spectral_low_level_signal_threshold_db)) {
            file_setting(c, SettingId::spectral_low_level_signal_threshold_db).reset();
            file_setting(c, SettingId::time_domain_low_level_signal_threshold_db).reset();
        } else if (file_setting(d, SettingId::spectral_low_level_signal_threshold_db)) {
            file_setting(d, SettingId::spectral_low_level_signal_threshold_db).reset();
            file_setting(d, SettingId::time_domain_low_level_signal_threshold_db).reset();
        } else if (file_setting(c, SettingId::general_low_level_signal_threshold_db)) {
            file_setting(c, SettingId::general_low_level_signal_threshold_db).reset();
        } else {
            file_setting(d, SettingId::general_low_level_signal_threshold_db).reset();
        }
    }
}

TEST(AnalysisDerived, GatingLabelsFromFiles) {
    const SettingsFile c = load_override_text(R"({
        "level_fidelity": {"gates_overall": false}, "bit_exact": {"gates_overall": true},
        "bit_accuracy": {"enabled": true}})");
    const SettingsFile d = load_defaults_text(R"({"analysis": {
        "level_fidelity": {"gates_overall": true}, "artifact": {"gates_overall": false},
        "loudness": {"gates_overall": true}}})");
    const AnalysisConfig config = resolve_plain(c, d);
    EXPECT_STREQ(config.gating.level_fidelity, "--config");
    EXPECT_STREQ(config.gating.bit_exact, "--config");
    EXPECT_STREQ(config.gating.bit_accuracy, "--config");
    EXPECT_STREQ(config.gating.artifact, "sonalyx-defaults.cfg");
    EXPECT_STREQ(config.gating.loudness, "sonalyx-defaults.cfg");
    EXPECT_FALSE(config.level_fidelity.gates_overall.value);
    EXPECT_TRUE(config.loudness.gates_overall.value);
}

TEST(AnalysisDerived, GatingLabelsFromFlags) {
    CommandLineSettings flags;
    flags.levelfidelity_ref_only = true;
    flags.artifact_ref_only = true;
    flags.loudness = true;
    flags.bitexact = true;
    flags.bitaccuracy = true;
    SettingsFile c;
    file_setting(c, SettingId::level_fidelity_gates_overall) = boolean_setting(true);
    file_setting(c, SettingId::loudness_gates_overall) = boolean_setting(false);
    const AnalysisConfig config = resolve_at(48000, 48000, c, flags);
    EXPECT_STREQ(config.gating.level_fidelity, "--levelfidelity-ref-only");
    EXPECT_STREQ(config.gating.artifact, "--artifact-ref-only");
    EXPECT_STREQ(config.gating.loudness, "--loudness");
    EXPECT_STREQ(config.gating.bit_exact, "--bitexact");
    EXPECT_STREQ(config.gating.bit_accuracy, "--bitaccuracy");
}

TEST(AnalysisDerived, SkipFlagsDoNotChangeGatingLabels) {
    CommandLineSettings flags;
    flags.no_loudness = true;
    flags.no_bitexact = true;
    const AnalysisConfig config = resolve_at(48000, 48000, {}, flags);
    EXPECT_STREQ(config.gating.loudness, "built-in default");
    EXPECT_STREQ(config.gating.bit_exact, "built-in default");
}

} // namespace
