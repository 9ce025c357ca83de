// The settings table itself: every key once, the built-in defaults, where a file's key lands and
// which source it resolves with, the rules attached to the keys and the card rows.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <utility>

#include "config_fixture.h"

namespace {

std::string name_of(const SettingEntry& entry) {
    return std::string(entry.section) + "." + entry.key;
}

Resolved<SettingValue> resolved_in(const AnalysisConfig& config, SettingId id) {
    return setting_entry(id).slot->load(config);
}

// A file that gives `entry` the value `text`, in the place the entry's scope reads it from.
std::string file_with(const SettingEntry& entry, const std::string& text, bool defaults_file) {
    const std::string section =
        "{\"" + std::string(entry.section) + "\": {\"" + entry.key + "\": " + text + "}}";
    if (!defaults_file || entry.scope != SettingScope::analysis) return section;
    return "{\"analysis\": " + section + "}";
}

// A well-formed value of the entry's type, other than its built-in default.
std::string value_text(const SettingEntry& entry) {
    switch (entry.type) {
    case SettingType::number:
        return "12.5";
    case SettingType::integer:
    case SettingType::positive_integer:
        return "1024";
    case SettingType::boolean:
        return entry.builtin != 0.0 ? "false" : "true";
    case SettingType::text:
        return "\"x\"";
    case SettingType::bands:
        return "[]";
    case SettingType::snapshots:
        return "3";
    }
    return "";
}

// The number of keys a file sets.
std::size_t set_count(const SettingsFile& file) {
    std::size_t count = 0;
    for (const std::optional<SettingValue>& value : file.values)
        count += value.has_value() ? 1 : 0;
    return count;
}

TEST(SettingTable, EveryKeyOnceInIdOrder) {
    ASSERT_EQ(setting_table().size(), kSettingCount);
    std::set<std::pair<SettingScope, std::string>> seen;
    for (std::size_t i = 0; i < kSettingCount; ++i) {
        const SettingEntry& entry = setting_table()[i];
        EXPECT_EQ(setting_index(entry.id), i) << name_of(entry);
        EXPECT_TRUE(seen.insert({entry.scope, name_of(entry)}).second) << name_of(entry);
        EXPECT_NE(std::string(entry.read_by), "") << name_of(entry);
        EXPECT_EQ(&setting_entry(entry.id), &entry);
    }
}

TEST(SettingTable, OnlyAnalysisKeysLiveInTheAnalysisRecord) {
    for (const SettingEntry& entry : setting_table()) {
        EXPECT_EQ(entry.slot != nullptr, entry.scope == SettingScope::analysis) << name_of(entry);
        EXPECT_EQ(entry.type == SettingType::text, entry.capacity > 0) << name_of(entry);
    }
}

// The built-in defaults as the settings are documented, at 48000 Hz; unset keys read as zero.
const std::map<std::string, double> kNumbers = {
    {"general.low_level_signal_threshold_db", -70.0},
    {"general.length_mismatch_tolerance_pct", 1.0},
    {"level_fidelity.noise_floor_db", -80.0},
    {"level_fidelity.p99_tolerance_db", 1.02},
    {"level_fidelity.min_sustained_run_ms", 20.0},
    {"artifact.k", 6.0},
    {"artifact.noise_floor_db", -80.0},
    {"artifact.min_severity", 4.0},
    {"artifact.min_global_severity", 100.0},
    {"spectral_fidelity.noise_floor_db", -100.0},
    {"spectral_fidelity.low_level_signal_threshold_db", -70.0},
    {"spectral_fidelity.peak_threshold_db", -60.0},
    {"spectral_fidelity.signal_tolerance_db", 5.0},
    {"spectral_fidelity.low_level_signal_tolerance_db", 10.0},
    {"spectral_fidelity.peak_tolerance_db", 1.0},
    {"spectral_fidelity.sweep_search_window_cents", 50.0},
    {"distortion.noise_floor_db", -100.0},
    {"distortion.tolerance_ratio", 0.01},
    {"distortion.overlap_fraction", 0.0},
    {"bit_exact.bit_deviation_db", 0.0},
    {"bit_accuracy.tolerance_db", 108.0},
    {"time_domain.noise_floor_db", -80.0},
    {"time_domain.peak_threshold_db", -60.0},
    {"time_domain.peak_tolerance_pct", 10.0},
    {"time_domain.low_level_signal_threshold_db", -70.0},
    {"time_domain.low_level_signal_tolerance_pct", 50.0},
    {"time_domain.signal_tolerance_pct", 50.0},
    {"impulse_template.peak_threshold_db", -10.0},
    {"impulse_template.ratio", 1.25},
    {"impulse_template.noise_floor_db", -30.0},
    {"loudness.integrated_tolerance_lu", 0.5},
    {"loudness.true_peak_tolerance_db", 0.5},
};
const std::map<std::string, std::int64_t> kIntegers = {
    {"artifact.window_samples", 64},
    {"artifact.min_run", 1},
    {"artifact.min_silence_clip_run", 8},
    {"spectral_fidelity.fft_size", 8192},
    {"distortion.fundamental_notch_bins", 20},
    {"impulse_template.frame_size", 8192},
    {"spectral_fidelity.sweep_edge_skip_samples", 4096},
};
const std::set<std::string> kSwitchedOn = {"level_fidelity.gates_overall", "artifact.gates_overall",
                                           "distortion.enabled", "bit_exact.enabled",
                                           "loudness.enabled"};
const std::map<std::string, std::string> kTexts = {
    {"level_fidelity.profile", "general"},
    {"spectral_fidelity.profile", "freq_domain_multitone"},
    {"spectral_fidelity.freq_sweep_shape", "linear"},
};
void expect_builtin(const SettingEntry& entry, const SettingValue& value) {
    const std::string name = name_of(entry);
    switch (entry.type) {
    case SettingType::number:
        EXPECT_EQ(value.number, kNumbers.count(name) ? kNumbers.at(name) : 0.0) << name;
        break;
    case SettingType::integer:
    case SettingType::positive_integer:
        EXPECT_EQ(value.integer, kIntegers.at(name)) << name;
        break;
    case SettingType::boolean:
        EXPECT_EQ(value.boolean, kSwitchedOn.count(name) == 1) << name;
        break;
    case SettingType::text:
        EXPECT_EQ(value.text, kTexts.count(name) ? kTexts.at(name) : "") << name;
        break;
    case SettingType::bands:
    case SettingType::snapshots:
        EXPECT_TRUE(value.bands.empty() && value.snapshots.count == 0) << name;
        break;
    }
}

TEST(SettingTable, BuiltInDefaults) {
    const AnalysisConfig config = resolve_plain({}, {});
    for (const SettingEntry& entry : setting_table()) {
        if (entry.slot == nullptr) continue;
        const Resolved<SettingValue> r = resolved_in(config, entry.id);
        EXPECT_FALSE(r.set) << name_of(entry);
        EXPECT_EQ(r.source, SettingSource::builtin_default) << name_of(entry);
        expect_builtin(entry, r.value);
    }
}

// Each key, alone in a file, fills its own entry and nothing else, and resolves with that file
// as its source.
TEST(SettingTable, ReadingFillsTheKeysOwnEntry) {
    for (const bool defaults_file : {false, true}) {
        for (const SettingEntry& entry : setting_table()) {
            if (!defaults_file && entry.scope != SettingScope::analysis) continue;
            const std::string text = file_with(entry, value_text(entry), defaults_file);
            const SettingsFile file =
                defaults_file ? load_defaults_text(text) : load_override_text(text);
            EXPECT_TRUE(file_setting(file, entry.id).has_value()) << name_of(entry);
            EXPECT_EQ(set_count(file), 1u) << name_of(entry);
            if (entry.slot == nullptr) continue;
            const AnalysisConfig config =
                defaults_file ? resolve_plain({}, file) : resolve_plain(file, {});
            EXPECT_EQ(resolved_in(config, entry.id).source,
                      defaults_file ? SettingSource::defaults_file : SettingSource::config_file)
                << name_of(entry);
        }
    }
}

// The override file has no tester or alignment keys.
TEST(SettingTable, OverrideFileIgnoresDefaultsOnlyScopes) {
    for (const SettingEntry& entry : setting_table()) {
        if (entry.scope == SettingScope::analysis) continue;
        const SettingsFile file = load_override_text(file_with(entry, value_text(entry), false));
        EXPECT_EQ(set_count(file), 0u) << name_of(entry);
    }
}

// The rules are checked in table order: this is the order of their messages.
TEST(SettingTable, RulesInCheckingOrder) {
    std::vector<SettingId> ruled;
    for (const SettingEntry& entry : setting_table()) {
        if (entry.rule != nullptr) ruled.push_back(entry.id);
    }
    const std::vector<SettingId> expected = {
        SettingId::spectral_fft_size,
        SettingId::spectral_profile,
        SettingId::spectral_relative_noise_floor_db,
        SettingId::spectral_bands,
        SettingId::spectral_freq_sweep_start_hz,
        SettingId::spectral_amp_sweep_test_freq_hz,
        SettingId::spectral_sweep_search_window_cents,
        SettingId::spectral_freq_sweep_shape,
        SettingId::spectral_sweep_edge_skip_samples,
        SettingId::spectral_overlap_fraction,
        SettingId::spectral_continuous,
        SettingId::distortion_overlap_fraction,
    };
    EXPECT_EQ(ruled, expected);
}

// Each rule names its own key in its message.
TEST(SettingTable, EachRuleFailsOnItsOwnKey) {
    const std::map<SettingId, std::string> failing = {
        {SettingId::spectral_fft_size, R"("fft_size": 1000)"},
        {SettingId::spectral_profile, R"("profile": "chirp")"},
        {SettingId::spectral_relative_noise_floor_db, R"("relative_noise_floor_db": -3)"},
        {SettingId::spectral_bands, R"("bands": [])"},
        {SettingId::spectral_freq_sweep_start_hz, R"("freq_sweep_start_hz": 20)"},
        {SettingId::spectral_amp_sweep_test_freq_hz, R"("amp_sweep_test_freq_hz": 1000)"},
        {SettingId::spectral_sweep_search_window_cents, R"("sweep_search_window_cents": 20)"},
        {SettingId::spectral_freq_sweep_shape,
         R"("profile": "freq_sweep", "freq_sweep_start_hz": 20, "freq_sweep_end_hz": 20000,
            "freq_sweep_shape": "cubic")"},
        {SettingId::spectral_sweep_edge_skip_samples, R"("sweep_edge_skip_samples": 10)"},
        {SettingId::spectral_overlap_fraction, R"("overlap_fraction": 0.25)"},
        {SettingId::spectral_continuous, R"("snapshots": 30)"},
    };
    for (const auto& [id, body] : failing) {
        const SettingEntry& entry = setting_entry(id);
        const SettingsFile file = load_override_text("{\"spectral_fidelity\": {" + body + "}}");
        const AnalysisConfig config = resolve_plain(file, {});
        std::string message;
        EXPECT_FALSE(entry.rule(config, 48000, message)) << name_of(entry);
        EXPECT_NE(message.find(id == SettingId::spectral_continuous ? "snapshots" : entry.key),
                  std::string::npos)
            << message;
    }
    const AnalysisConfig config =
        resolve_plain(load_override_text(R"({"distortion": {"overlap_fraction": 0.25}})"), {});
    std::string message;
    EXPECT_FALSE(
        setting_entry(SettingId::distortion_overlap_fraction).rule(config, 48000, message));
    EXPECT_EQ(message, "error: distortion.overlap_fraction only applies when distortion.continuous "
                       "is true\n");
}

TEST(SettingTable, CardRowsInTheirOwnOrder) {
    std::set<int> orders;
    for (const SettingEntry& entry : setting_table()) {
        if (entry.card_order == 0) continue;
        EXPECT_NE(entry.slot, nullptr) << name_of(entry);
        EXPECT_TRUE(orders.insert(entry.card_order).second) << name_of(entry);
    }
    EXPECT_EQ(orders.size(), 18u);
    EXPECT_EQ(*orders.begin(), 1);
    EXPECT_EQ(*orders.rbegin(), 18);
    // By default the five rows shown only when set (or non-empty) are left out.
    const std::vector<ConfigurationRow> rows = configuration_rows(resolve_plain({}, {}));
    ASSERT_EQ(rows.size(), 13u);
    EXPECT_EQ(rows.front().parameter, "Profile");
    EXPECT_EQ(rows.front().value.text, "freq_domain_multitone");
    EXPECT_EQ(rows.front().format, CardFormat::text);
    EXPECT_EQ(rows.back().check, "Bit Accuracy");
    EXPECT_EQ(rows.back().format, CardFormat::yes_no_switch);
    EXPECT_FALSE(rows.back().value.boolean);
}

TEST(SettingTable, CardRowTakesTheSourceOfItsSetting) {
    const SettingsFile file =
        load_override_text(R"({"artifact": {"min_severity": 2.5, "window_samples": 32}})");
    const std::vector<ConfigurationRow> rows = configuration_rows(resolve_plain(file, {}));
    std::map<std::string, const ConfigurationRow*> by_parameter;
    for (const ConfigurationRow& row : rows)
        by_parameter[row.parameter] = &row;
    EXPECT_EQ(by_parameter.at("Minimum Severity")->value.number, 2.5);
    EXPECT_EQ(by_parameter.at("Minimum Severity")->format, CardFormat::times);
    EXPECT_EQ(by_parameter.at("Minimum Severity")->source, SettingSource::config_file);
    EXPECT_EQ(by_parameter.at("Neighborhood Window")->value.integer, 32);
    EXPECT_EQ(by_parameter.at("Minimum Whole-File Severity")->source,
              SettingSource::builtin_default);
}

} // namespace
