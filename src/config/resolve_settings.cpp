#include "config/resolve_settings.h"

#include <algorithm>
#include <array>
#include <string>

#include "config/setting_defaults.h"
#include "config/setting_table.h"

namespace {

// A flag that forces one switch. For the gating switches and bit_accuracy.enabled the record
// also keeps the label of the source that decided, the flag's own text when it was the flag.
struct ForcedSwitch {
    bool CommandLineSettings::*flag;
    SettingId id;
    bool value;
    const char* text;
    const char* GatingLabels::*label;
};

constexpr std::array<ForcedSwitch, 10> kForcedSwitches = {{
    {&CommandLineSettings::levelfidelity_ref_only, SettingId::level_fidelity_gates_overall, false,
     "--levelfidelity-ref-only", &GatingLabels::level_fidelity},
    {&CommandLineSettings::artifact_ref_only, SettingId::artifact_gates_overall, false,
     "--artifact-ref-only", &GatingLabels::artifact},
    {&CommandLineSettings::no_distortion, SettingId::distortion_enabled, false, "--no-distortion",
     nullptr},
    {&CommandLineSettings::bitexact, SettingId::bit_exact_gates_overall, true, "--bitexact",
     &GatingLabels::bit_exact},
    {&CommandLineSettings::no_bitexact, SettingId::bit_exact_enabled, false, "--no-bitexact",
     nullptr},
    {&CommandLineSettings::bitaccuracy, SettingId::bit_accuracy_enabled, true, "--bitaccuracy",
     &GatingLabels::bit_accuracy},
    {&CommandLineSettings::deepscan, SettingId::time_domain_enabled, true, "--deepscan", nullptr},
    {&CommandLineSettings::impulse, SettingId::impulse_template_enabled, true, "--impulse",
     nullptr},
    {&CommandLineSettings::no_loudness, SettingId::loudness_enabled, false, "--no-loudness",
     nullptr},
    {&CommandLineSettings::loudness, SettingId::loudness_gates_overall, true, "--loudness",
     &GatingLabels::loudness},
}};

void force(ResolvedTable& table, SettingId id, SettingValue value) {
    resolved_setting(table, id) = {true, std::move(value), SettingSource::command_line};
}

void apply_command_line(const CommandLineSettings& command_line, ResolvedTable& table) {
    for (const ForcedSwitch& forced : kForcedSwitches) {
        if (command_line.*forced.flag) force(table, forced.id, boolean_setting(forced.value));
    }
    if (command_line.ampsweep) {
        force(table, SettingId::spectral_profile, text_setting("amp_sweep"));
    } else if (command_line.freqsweep) {
        force(table, SettingId::spectral_profile, text_setting("freq_sweep"));
    }
    if (command_line.snapshots) {
        const long count = std::max(*command_line.snapshots, 0L);
        force(table, SettingId::spectral_snapshots,
              snapshots_setting({false, static_cast<std::size_t>(count), {}}));
    }
}

// A sweep scans continuously unless snapshots are configured; only the built-in default turns
// true, a file's explicit value is kept.
void imply_continuous_scan(ResolvedTable& table) {
    Resolved<SettingValue>& continuous = resolved_setting(table, SettingId::spectral_continuous);
    const bool sweep =
        is_sweep_profile(resolved_setting(table, SettingId::spectral_profile).value.text);
    if (!continuous.set && sweep && !resolved_setting(table, SettingId::spectral_snapshots).set)
        continuous = {true, boolean_setting(true), SettingSource::sweep_profile};
}

void fill_gating_labels(const ResolvedTable& table, GatingLabels& out) {
    for (const ForcedSwitch& forced : kForcedSwitches) {
        if (forced.label == nullptr) continue;
        const SettingSource source = resolved_setting(table, forced.id).source;
        out.*forced.label =
            source == SettingSource::command_line ? forced.text : setting_source_label(source);
    }
}

void store_analysis_settings(const ResolvedTable& table, AnalysisConfig& out) {
    out = AnalysisConfig{};
    for (const SettingEntry& entry : setting_table()) {
        if (entry.slot != nullptr) entry.slot->store(out, resolved_setting(table, entry.id));
    }
    SpectralFidelityConfig& spectral = out.spectral_fidelity;
    SpectralProfile profile = SpectralProfile::freq_domain_multitone;
    spectral.parsed_profile.reset();
    if (parse_spectral_profile(spectral.profile.value, profile)) spectral.parsed_profile = profile;
    fill_gating_labels(table, out.gating);
}

} // namespace

ResolvedTable resolve_from_files(const SettingsFile& config_file, const SettingsFile& defaults_file,
                                 const ResolveContext& context) {
    ResolvedTable table;
    for (const SettingEntry& entry : setting_table()) {
        Resolved<SettingValue>& out = resolved_setting(table, entry.id);
        if (const auto& value = file_setting(config_file, entry.id)) {
            out = {true, *value, SettingSource::config_file};
        } else if (const auto& fallback = file_setting(defaults_file, entry.id)) {
            out = {true, *fallback, SettingSource::defaults_file};
        } else {
            out = setting_default(entry, table, context);
        }
    }
    return table;
}

void resolve_analysis_config(const SettingsFile& config_file, const SettingsFile& defaults_file,
                             const CommandLineSettings& command_line, std::uint32_t sample_rate,
                             std::size_t shared_frames, AnalysisConfig& out) {
    ResolvedTable table =
        resolve_from_files(config_file, defaults_file, {sample_rate, shared_frames});
    apply_command_line(command_line, table);
    imply_continuous_scan(table);
    store_analysis_settings(table, out);
}
