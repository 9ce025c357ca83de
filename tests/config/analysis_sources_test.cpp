// Every analysis key from each source: the defaults file (1), --config (2, winning over the
// defaults file) and, where a flag exists, the command line (3).
#include <gtest/gtest.h>

#include <string>

#include "config_fixture.h"
#include "resolved_view.h"

namespace {

enum class FileRole { config_file, defaults_file };

// The value a file gives key number `index`: distinct per key and per file, never the default.
// Booleans can only differ from their default by negating it.
double file_value(const ScalarKey& key, std::size_t index, FileRole role) {
    const bool config = role == FileRole::config_file;
    if (key.kind == KeyKind::boolean) return 1.0 - key.builtin;
    if (key.kind == KeyKind::integer)
        return static_cast<double>(config ? 1000 + index : 2000 + index);
    return static_cast<double>(index) + (config ? 0.25 : 0.75);
}

std::string value_text(const ScalarKey& key, double value) {
    if (key.kind == KeyKind::boolean) return value != 0.0 ? "true" : "false";
    if (key.kind == KeyKind::integer) return std::to_string(static_cast<long>(value));
    return std::to_string(value);
}

// The analysis sections with every scalar key, as the body of one JSON object (no braces).
// Without `negate_booleans` the booleans are written with their default values.
std::string analysis_body(FileRole role, bool negate_booleans) {
    std::string body;
    std::string open_section;
    const std::vector<ScalarKey>& keys = scalar_keys();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const ScalarKey& key = keys[i];
        double value = file_value(key, i, role);
        if (key.kind == KeyKind::boolean && !negate_booleans) value = key.builtin;
        if (open_section != key.section) {
            body += open_section.empty() ? "" : "},\n";
            body += "\"" + std::string(key.section) + "\": {";
            open_section = key.section;
        } else {
            body += ", ";
        }
        body += "\"" + std::string(key.key) + "\": " + value_text(key, value);
    }
    return body + "}";
}

SettingsFile config_settings() {
    return load_override_text("{" + analysis_body(FileRole::config_file, true) + "}");
}

SettingsFile defaults_settings(bool negate_booleans) {
    const std::string analysis =
        "{" + analysis_body(FileRole::defaults_file, negate_booleans) + "}";
    EXPECT_LT(analysis.size(), kSectionCapacity);
    return load_defaults_text("{\"analysis\": " + analysis + "}");
}

void expect_all_from(const AnalysisConfig& config, FileRole role, SettingSource source) {
    const std::vector<ScalarKey>& keys = scalar_keys();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        SCOPED_TRACE(std::string(keys[i].section) + "." + keys[i].key);
        const ResolvedView seen = keys[i].get(config);
        EXPECT_TRUE(seen.set);
        EXPECT_EQ(seen.source, source);
        EXPECT_EQ(seen.value, file_value(keys[i], i, role));
    }
}

TEST(AnalysisSources, EveryKeyFromDefaultsFileHasSource1) {
    const AnalysisConfig config = resolve_plain({}, defaults_settings(true));
    expect_all_from(config, FileRole::defaults_file, SettingSource::defaults_file);
}

TEST(AnalysisSources, EveryKeyFromConfigFileHasSource2) {
    const AnalysisConfig config = resolve_plain(config_settings(), {});
    expect_all_from(config, FileRole::config_file, SettingSource::config_file);
}

TEST(AnalysisSources, ConfigFileWinsOverDefaultsFileForEveryKey) {
    const AnalysisConfig config = resolve_plain(config_settings(), defaults_settings(false));
    expect_all_from(config, FileRole::config_file, SettingSource::config_file);
}

TEST(AnalysisSources, TextKeysFromEachFile) {
    const SettingsFile c = load_override_text(R"({
        "general": {"default_profile": "time_domain"},
        "level_fidelity": {"profile": "impulse"},
        "spectral_fidelity": {"profile": "amp_sweep", "freq_sweep_shape": "log"}})");
    const SettingsFile d = load_defaults_text(R"({"analysis": {
        "general": {"default_profile": "bit_exact"},
        "level_fidelity": {"profile": "other"},
        "spectral_fidelity": {"profile": "freq_sweep", "freq_sweep_shape": "linear"}}})");
    const AnalysisConfig from_config = resolve_plain(c, d);
    EXPECT_EQ(from_config.general.default_profile.value, "time_domain");
    EXPECT_EQ(from_config.level_fidelity.profile.value, "impulse");
    EXPECT_EQ(from_config.spectral_fidelity.profile.value, "amp_sweep");
    EXPECT_EQ(from_config.spectral_fidelity.freq_sweep_shape.value, "log");
    EXPECT_EQ(from_config.spectral_fidelity.freq_sweep_shape.source, SettingSource::config_file);
    const AnalysisConfig from_defaults = resolve_plain({}, d);
    EXPECT_EQ(from_defaults.general.default_profile.value, "bit_exact");
    EXPECT_EQ(from_defaults.level_fidelity.profile.value, "other");
    EXPECT_EQ(from_defaults.spectral_fidelity.profile.value, "freq_sweep");
    EXPECT_EQ(from_defaults.spectral_fidelity.profile.source, SettingSource::defaults_file);
    EXPECT_TRUE(from_defaults.general.default_profile.set);
}

TEST(AnalysisSources, BandsAndSnapshotsFromEachFile) {
    SettingsFile c;
    file_setting(c, SettingId::spectral_bands) =
        bands_setting(std::vector<SpectralBandSetting>{{}, {}});
    file_setting(c, SettingId::spectral_snapshots) =
        snapshots_setting(SnapshotSetting{true, 1, {2.5}});
    SettingsFile d;
    file_setting(d, SettingId::spectral_bands) =
        bands_setting(std::vector<SpectralBandSetting>{{}});
    file_setting(d, SettingId::spectral_snapshots) =
        snapshots_setting(SnapshotSetting{false, 5, {}});
    const AnalysisConfig both = resolve_plain(c, d);
    EXPECT_EQ(both.spectral_fidelity.bands.value.size(), 2u);
    EXPECT_EQ(both.spectral_fidelity.bands.source, SettingSource::config_file);
    EXPECT_TRUE(both.spectral_fidelity.snapshots.value.is_list);
    EXPECT_EQ(both.spectral_fidelity.snapshots.value.times_sec, (std::vector<double>{2.5}));
    EXPECT_EQ(both.spectral_fidelity.snapshots.source, SettingSource::config_file);
    const AnalysisConfig only_defaults = resolve_plain({}, d);
    EXPECT_EQ(only_defaults.spectral_fidelity.bands.value.size(), 1u);
    EXPECT_EQ(only_defaults.spectral_fidelity.bands.source, SettingSource::defaults_file);
    EXPECT_EQ(only_defaults.spectral_fidelity.snapshots.value.count, 5u);
    EXPECT_EQ(only_defaults.spectral_fidelity.snapshots.source, SettingSource::defaults_file);
}

struct FlagCase {
    const char* name;
    bool CommandLineSettings::*flag;
    ResolvedGetter get;
    bool forced;
};

TEST(AnalysisSources, CommandLineFlagsWinWithSource3) {
    const FlagCase cases[] = {
        {"deepscan", &CommandLineSettings::deepscan, RESOLVED_GETTER(time_domain, enabled), true},
        {"impulse", &CommandLineSettings::impulse, RESOLVED_GETTER(impulse_template, enabled),
         true},
        {"bitaccuracy", &CommandLineSettings::bitaccuracy, RESOLVED_GETTER(bit_accuracy, enabled),
         true},
        {"bitexact", &CommandLineSettings::bitexact, RESOLVED_GETTER(bit_exact, gates_overall),
         true},
        {"no_bitexact", &CommandLineSettings::no_bitexact, RESOLVED_GETTER(bit_exact, enabled),
         false},
        {"no_distortion", &CommandLineSettings::no_distortion, RESOLVED_GETTER(distortion, enabled),
         false},
        {"levelfidelity_ref_only", &CommandLineSettings::levelfidelity_ref_only,
         RESOLVED_GETTER(level_fidelity, gates_overall), false},
        {"no_loudness", &CommandLineSettings::no_loudness, RESOLVED_GETTER(loudness, enabled),
         false},
        {"loudness", &CommandLineSettings::loudness, RESOLVED_GETTER(loudness, gates_overall),
         true},
        {"artifact_ref_only", &CommandLineSettings::artifact_ref_only,
         RESOLVED_GETTER(artifact, gates_overall), false},
    };
    // Both files say the opposite of what each flag forces.
    const SettingsFile files = load_override_text(R"({
        "time_domain": {"enabled": false}, "impulse_template": {"enabled": false},
        "bit_accuracy": {"enabled": false}, "bit_exact": {"gates_overall": false, "enabled": true},
        "distortion": {"enabled": true}, "level_fidelity": {"gates_overall": true},
        "loudness": {"enabled": true, "gates_overall": false},
        "artifact": {"gates_overall": true}})");
    for (const FlagCase& c : cases) {
        SCOPED_TRACE(c.name);
        CommandLineSettings command_line;
        command_line.*c.flag = true;
        AnalysisConfig config;
        resolve_analysis_config(files, files, command_line, 48000, 48000, config);
        const ResolvedView seen = c.get(config);
        EXPECT_TRUE(seen.set);
        EXPECT_EQ(seen.value, c.forced ? 1.0 : 0.0);
        EXPECT_EQ(seen.source, SettingSource::command_line);
        const ResolvedView without = c.get(resolve_plain(files, files));
        EXPECT_EQ(without.value, c.forced ? 0.0 : 1.0);
        EXPECT_EQ(without.source, SettingSource::config_file);
    }
}

TEST(AnalysisSources, SweepFlagsSetProfileFromCommandLine) {
    const SettingsFile c = load_override_text(R"({"spectral_fidelity": {"profile": "x"}})");
    CommandLineSettings amp;
    amp.ampsweep = true;
    AnalysisConfig config;
    resolve_analysis_config(c, {}, amp, 48000, 48000, config);
    EXPECT_EQ(config.spectral_fidelity.profile.value, "amp_sweep");
    EXPECT_EQ(config.spectral_fidelity.profile.source, SettingSource::command_line);
    CommandLineSettings freq;
    freq.freqsweep = true;
    resolve_analysis_config(c, {}, freq, 48000, 48000, config);
    EXPECT_EQ(config.spectral_fidelity.profile.value, "freq_sweep");
    EXPECT_EQ(config.spectral_fidelity.profile.source, SettingSource::command_line);
}

TEST(AnalysisSources, SnapshotsFlagOverridesFiles) {
    SettingsFile c;
    file_setting(c, SettingId::spectral_snapshots) =
        snapshots_setting(SnapshotSetting{true, 2, {1.0, 2.0}});
    CommandLineSettings command_line;
    command_line.snapshots = 7;
    AnalysisConfig config;
    resolve_analysis_config(c, c, command_line, 48000, 48000, config);
    const Resolved<SnapshotSetting>& snapshots = config.spectral_fidelity.snapshots;
    EXPECT_TRUE(snapshots.set);
    EXPECT_FALSE(snapshots.value.is_list);
    EXPECT_EQ(snapshots.value.count, 7u);
    EXPECT_TRUE(snapshots.value.times_sec.empty());
    EXPECT_EQ(snapshots.source, SettingSource::command_line);
}

TEST(AnalysisSources, NegativeSnapshotsFlagBecomesZero) {
    CommandLineSettings command_line;
    command_line.snapshots = -4;
    AnalysisConfig config;
    resolve_analysis_config({}, {}, command_line, 48000, 48000, config);
    EXPECT_TRUE(config.spectral_fidelity.snapshots.set);
    EXPECT_EQ(config.spectral_fidelity.snapshots.value.count, 0u);
    std::string message;
    EXPECT_FALSE(validate_analysis_config(config, 48000, message));
    EXPECT_EQ(message, "error: spectral_fidelity.snapshots must resolve to between 1 and 25 "
                       "snapshots, got 0\n");
}

TEST(AnalysisSources, ResolutionReplacesTheWholeRecord) {
    AnalysisConfig config;
    config.spectral_fidelity.relative_noise_floor_db = Resolved<double>{true, -3.0};
    config.gating.loudness = "--loudness";
    resolve_analysis_config({}, {}, CommandLineSettings{}, 48000, 48000, config);
    EXPECT_FALSE(config.spectral_fidelity.relative_noise_floor_db.set);
    EXPECT_STREQ(config.gating.loudness, "built-in default");
}

} // namespace
