// With no settings at all, every analysis key resolves to its built-in default with source 0.
#include <gtest/gtest.h>

#include "config_fixture.h"
#include "resolved_view.h"

namespace {

TEST(AnalysisDefaults, EveryScalarKeyHasItsBuiltinDefault) {
    const AnalysisConfig config = resolve_plain({}, {});
    for (const ScalarKey& key : scalar_keys()) {
        const ResolvedView seen = key.get(config);
        SCOPED_TRACE(std::string(key.section) + "." + key.key);
        EXPECT_FALSE(seen.set);
        EXPECT_EQ(seen.source, SettingSource::builtin_default);
        if (key.has_default) {
            EXPECT_EQ(seen.value, key.builtin);
        }
    }
}

TEST(AnalysisDefaults, TextKeys) {
    const AnalysisConfig config = resolve_plain({}, {});
    EXPECT_FALSE(config.general.default_profile.set);
    EXPECT_EQ(config.level_fidelity.profile.value, "general");
    EXPECT_EQ(config.spectral_fidelity.profile.value, "freq_domain_multitone");
    EXPECT_EQ(config.spectral_fidelity.freq_sweep_shape.value, "linear");
    for (const Resolved<std::string>* text :
         {&config.level_fidelity.profile, &config.spectral_fidelity.profile,
          &config.spectral_fidelity.freq_sweep_shape}) {
        EXPECT_FALSE(text->set);
        EXPECT_EQ(text->source, SettingSource::builtin_default);
    }
}

TEST(AnalysisDefaults, ArrayKeysAreUnset) {
    const AnalysisConfig config = resolve_plain({}, {});
    EXPECT_FALSE(config.spectral_fidelity.bands.set);
    EXPECT_FALSE(config.spectral_fidelity.snapshots.set);
    EXPECT_EQ(config.spectral_fidelity.snapshots.source, SettingSource::builtin_default);
}

TEST(AnalysisDefaults, GatingLabelsAreBuiltinDefault) {
    const AnalysisConfig config = resolve_plain({}, {});
    EXPECT_STREQ(config.gating.level_fidelity, "built-in default");
    EXPECT_STREQ(config.gating.artifact, "built-in default");
    EXPECT_STREQ(config.gating.loudness, "built-in default");
    EXPECT_STREQ(config.gating.bit_exact, "built-in default");
    EXPECT_STREQ(config.gating.bit_accuracy, "built-in default");
}

TEST(AnalysisDefaults, DefaultsPassValidation) {
    std::string message;
    EXPECT_TRUE(validate_analysis_config(resolve_plain({}, {}), 48000, message)) << message;
}

TEST(AnalysisDefaults, SourceLabels) {
    EXPECT_STREQ(setting_source_label(SettingSource::builtin_default), "built-in default");
    EXPECT_STREQ(setting_source_label(SettingSource::defaults_file), "sonalyx-defaults.cfg");
    EXPECT_STREQ(setting_source_label(SettingSource::config_file), "--config");
    EXPECT_STREQ(setting_source_label(SettingSource::command_line), "command line");
    EXPECT_STREQ(setting_source_label(SettingSource::sweep_profile), "implied by sweep profile");
    EXPECT_STREQ(setting_source_label(SettingSource::rate_default),
                 "built-in default for this sample rate");
    EXPECT_EQ(static_cast<int>(SettingSource::rate_default), 5);
    EXPECT_EQ(static_cast<int>(SettingSource::sweep_profile), 4);
}

} // namespace
