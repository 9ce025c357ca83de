// general.default_profile: each value's effect within its own file, and the unknown-value error.
#include <gtest/gtest.h>

#include <string>

#include "config_fixture.h"

namespace {

AnalysisSettings with_profile(const char* profile) {
    AnalysisSettings s;
    s.general.default_profile = profile;
    return s;
}

void apply_ok(AnalysisSettings& s, const char* label = "--config") {
    std::string message = "none";
    EXPECT_TRUE(apply_default_profile(s, label, message));
    EXPECT_EQ(message, "none");
}

void expect_nothing_implied(const AnalysisSettings& s) {
    EXPECT_FALSE(s.bit_accuracy.enabled.has_value());
    EXPECT_FALSE(s.spectral_fidelity.profile.has_value());
    EXPECT_FALSE(s.impulse_template.enabled.has_value());
    EXPECT_FALSE(s.time_domain.enabled.has_value());
}

TEST(DefaultProfile, UnsetProfileChangesNothing) {
    AnalysisSettings s;
    apply_ok(s);
    expect_nothing_implied(s);
}

TEST(DefaultProfile, BitExactAndFrequencyDomainImplyNothing) {
    for (const char* profile : {"bit_exact", "frequency_domain"}) {
        AnalysisSettings s = with_profile(profile);
        apply_ok(s);
        expect_nothing_implied(s);
    }
}

TEST(DefaultProfile, BitAccuracyEnablesBitAccuracy) {
    AnalysisSettings s = with_profile("bit_accuracy");
    apply_ok(s);
    EXPECT_EQ(s.bit_accuracy.enabled, true);
    AnalysisSettings explicit_off = with_profile("bit_accuracy");
    explicit_off.bit_accuracy.enabled = false;
    apply_ok(explicit_off);
    EXPECT_EQ(explicit_off.bit_accuracy.enabled, false);
}

TEST(DefaultProfile, AmplitudeSweepSetsAmpSweep) {
    AnalysisSettings s = with_profile("amplitude_sweep");
    apply_ok(s);
    EXPECT_EQ(s.spectral_fidelity.profile, "amp_sweep");
    EXPECT_FALSE(s.time_domain.enabled.has_value());
}

TEST(DefaultProfile, FrequencySweepSetsFreqSweep) {
    AnalysisSettings s = with_profile("frequency_sweep");
    apply_ok(s);
    EXPECT_EQ(s.spectral_fidelity.profile, "freq_sweep");
}

TEST(DefaultProfile, ImpulseDomainEnablesImpulseTemplate) {
    AnalysisSettings s = with_profile("impulse_domain");
    apply_ok(s);
    EXPECT_EQ(s.impulse_template.enabled, true);
    AnalysisSettings explicit_off = with_profile("impulse_domain");
    explicit_off.impulse_template.enabled = false;
    apply_ok(explicit_off);
    EXPECT_EQ(explicit_off.impulse_template.enabled, false);
}

TEST(DefaultProfile, TimeDomainEnablesTimeDomain) {
    AnalysisSettings s = with_profile("time_domain");
    apply_ok(s);
    EXPECT_EQ(s.time_domain.enabled, true);
    EXPECT_FALSE(s.impulse_template.enabled.has_value());
}

TEST(DefaultProfile, ExplicitSpectralProfileInSameFileStays) {
    DefaultsFileSettings d = load_defaults_text(R"({"analysis": {
        "general": {"default_profile": "amplitude_sweep"},
        "spectral_fidelity": {"profile": "freq_sweep"}}})");
    apply_ok(d.analysis, "sonalyx-defaults.cfg");
    EXPECT_EQ(d.analysis.spectral_fidelity.profile, "freq_sweep");
    const AnalysisConfig config = resolve_plain({}, d.analysis);
    EXPECT_EQ(config.spectral_fidelity.profile.value, "freq_sweep");
    EXPECT_EQ(config.spectral_fidelity.profile.source, SettingSource::defaults_file);
}

TEST(DefaultProfile, ImpliedValueCarriesItsFileAsSource) {
    AnalysisSettings c = load_override_text(R"({"general": {"default_profile": "bit_accuracy"}})");
    apply_ok(c);
    const AnalysisConfig config = resolve_plain(c, {});
    EXPECT_TRUE(config.bit_accuracy.enabled.value);
    EXPECT_EQ(config.bit_accuracy.enabled.source, SettingSource::config_file);
    EXPECT_STREQ(config.gating.bit_accuracy, "--config");
}

TEST(DefaultProfile, ProfileAppliesOnlyToItsOwnFile) {
    AnalysisSettings c = with_profile("frequency_sweep");
    AnalysisSettings d;
    d.spectral_fidelity.profile = "amp_sweep";
    apply_ok(c);
    apply_ok(d, "sonalyx-defaults.cfg");
    EXPECT_EQ(c.spectral_fidelity.profile, "freq_sweep");
    EXPECT_EQ(d.spectral_fidelity.profile, "amp_sweep");
}

TEST(DefaultProfile, UnknownValueForConfigFile) {
    AnalysisSettings s = with_profile("deepscan");
    std::string message;
    EXPECT_FALSE(apply_default_profile(s, "--config", message));
    EXPECT_EQ(message,
              "error: --config's general.default_profile 'deepscan' not recognized -- must be one "
              "of \"bit_exact\", \"bit_accuracy\", \"amplitude_sweep\", \"frequency_sweep\", "
              "\"frequency_domain\", \"impulse_domain\", \"time_domain\" (--deepscan)\n");
}

TEST(DefaultProfile, UnknownValueForDefaultsFile) {
    AnalysisSettings s = with_profile("Bit_Exact");
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
