// general.default_profile: each value's effect within its own file, and the unknown-value error.
#include <gtest/gtest.h>

#include <string>

#include "config_fixture.h"

namespace {

SettingsFile with_profile(const char* profile) {
    SettingsFile s;
    file_setting(s, SettingId::general_default_profile) = text_setting(profile);
    return s;
}

void apply_ok(SettingsFile& s, const char* label = "--config") {
    std::string message = "none";
    EXPECT_TRUE(apply_default_profile(s, label, message));
    EXPECT_EQ(message, "none");
}

void expect_nothing_implied(const SettingsFile& s) {
    EXPECT_FALSE(boolean_in(s, SettingId::bit_accuracy_enabled).has_value());
    EXPECT_FALSE(text_in(s, SettingId::spectral_profile).has_value());
    EXPECT_FALSE(boolean_in(s, SettingId::impulse_template_enabled).has_value());
    EXPECT_FALSE(boolean_in(s, SettingId::time_domain_enabled).has_value());
}

TEST(DefaultProfile, UnsetProfileChangesNothing) {
    SettingsFile s;
    apply_ok(s);
    expect_nothing_implied(s);
}

TEST(DefaultProfile, BitExactAndFrequencyDomainImplyNothing) {
    for (const char* profile : {"bit_exact", "frequency_domain"}) {
        SettingsFile s = with_profile(profile);
        apply_ok(s);
        expect_nothing_implied(s);
    }
}

TEST(DefaultProfile, BitAccuracyEnablesBitAccuracy) {
    SettingsFile s = with_profile("bit_accuracy");
    apply_ok(s);
    EXPECT_EQ(boolean_in(s, SettingId::bit_accuracy_enabled), true);
    SettingsFile explicit_off = with_profile("bit_accuracy");
    file_setting(explicit_off, SettingId::bit_accuracy_enabled) = boolean_setting(false);
    apply_ok(explicit_off);
    EXPECT_EQ(boolean_in(explicit_off, SettingId::bit_accuracy_enabled), false);
}

TEST(DefaultProfile, AmplitudeSweepSetsAmpSweep) {
    SettingsFile s = with_profile("amplitude_sweep");
    apply_ok(s);
    EXPECT_EQ(text_in(s, SettingId::spectral_profile), "amp_sweep");
    EXPECT_FALSE(boolean_in(s, SettingId::time_domain_enabled).has_value());
}

TEST(DefaultProfile, FrequencySweepSetsFreqSweep) {
    SettingsFile s = with_profile("frequency_sweep");
    apply_ok(s);
    EXPECT_EQ(text_in(s, SettingId::spectral_profile), "freq_sweep");
}

TEST(DefaultProfile, ImpulseDomainEnablesImpulseTemplate) {
    SettingsFile s = with_profile("impulse_domain");
    apply_ok(s);
    EXPECT_EQ(boolean_in(s, SettingId::impulse_template_enabled), true);
    SettingsFile explicit_off = with_profile("impulse_domain");
    file_setting(explicit_off, SettingId::impulse_template_enabled) = boolean_setting(false);
    apply_ok(explicit_off);
    EXPECT_EQ(boolean_in(explicit_off, SettingId::impulse_template_enabled), false);
}

TEST(DefaultProfile, TimeDomainEnablesTimeDomain) {
    SettingsFile s = with_profile("time_domain");
    apply_ok(s);
    EXPECT_EQ(boolean_in(s, SettingId::time_domain_enabled), true);
    EXPECT_FALSE(boolean_in(s, SettingId::impulse_template_enabled).has_value());
}

TEST(DefaultProfile, ExplicitSpectralProfileInSameFileStays) {
    SettingsFile d = load_defaults_text(R"({"analysis": {
        "general": {"default_profile": "amplitude_sweep"},
        "spectral_fidelity": {"profile": "freq_sweep"}}})");
    apply_ok(d, "sonalyx-defaults.cfg");
    EXPECT_EQ(text_in(d, SettingId::spectral_profile), "freq_sweep");
    const AnalysisConfig config = resolve_plain({}, d);
    EXPECT_EQ(config.spectral_fidelity.profile.value, "freq_sweep");
    EXPECT_EQ(config.spectral_fidelity.profile.source, SettingSource::defaults_file);
}

TEST(DefaultProfile, ImpliedValueCarriesItsFileAsSource) {
    SettingsFile c = load_override_text(R"({"general": {"default_profile": "bit_accuracy"}})");
    apply_ok(c);
    const AnalysisConfig config = resolve_plain(c, {});
    EXPECT_TRUE(config.bit_accuracy.enabled.value);
    EXPECT_EQ(config.bit_accuracy.enabled.source, SettingSource::config_file);
    EXPECT_STREQ(config.gating.bit_accuracy, "--config");
}

TEST(DefaultProfile, ProfileAppliesOnlyToItsOwnFile) {
    SettingsFile c = with_profile("frequency_sweep");
    SettingsFile d;
    file_setting(d, SettingId::spectral_profile) = text_setting("amp_sweep");
    apply_ok(c);
    apply_ok(d, "sonalyx-defaults.cfg");
    EXPECT_EQ(text_in(c, SettingId::spectral_profile), "freq_sweep");
    EXPECT_EQ(text_in(d, SettingId::spectral_profile), "amp_sweep");
}

TEST(DefaultProfile, UnknownValueForConfigFile) {
    SettingsFile s = with_profile("deepscan");
    std::string message;
    EXPECT_FALSE(apply_default_profile(s, "--config", message));
    EXPECT_EQ(message,
              "error: --config's general.default_profile 'deepscan' not recognized -- must be one "
              "of \"bit_exact\", \"bit_accuracy\", \"amplitude_sweep\", \"frequency_sweep\", "
              "\"frequency_domain\", \"impulse_domain\", \"time_domain\" (--deepscan)\n");
}

TEST(DefaultProfile, UnknownValueForDefaultsFile) {
    SettingsFile s = with_profile("Bit_Exact");
    std::string message;
    EXPECT_FALSE(apply_default_profile(s, "sonalyx-defaults.cfg", message));
    EXPECT_EQ(message,
              "error: sonalyx-defaults.cfg's general.default_profile 'Bit_Exact' not recognized "
              "-- must be one of \"bit_exact\", \"bit_accuracy\", \"amplitude_sweep\", "
              "\"frequency_sweep\", \"frequency_domain\", \"impulse_domain\", \"time_domain\" "
              "(--deepscan)\n");
}

TEST(DefaultProfile, ParseNames) {
    AnalysisProfile profile = AnalysisProfile::bit_exact;
    EXPECT_TRUE(parse_analysis_profile("impulse_domain", profile));
    EXPECT_EQ(profile, AnalysisProfile::impulse_domain);
    EXPECT_TRUE(parse_analysis_profile("frequency_domain", profile));
    EXPECT_EQ(profile, AnalysisProfile::frequency_domain);
    EXPECT_FALSE(parse_analysis_profile("", profile));
    EXPECT_FALSE(parse_analysis_profile("time_domain ", profile));
    EXPECT_EQ(profile, AnalysisProfile::frequency_domain);
}

} // namespace
