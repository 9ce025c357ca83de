#include "config/resolve_settings.h"

#include <algorithm>
#include <array>
#include <string>

#include "config/setting_defaults.h"
#include "config/setting_table.h"

namespace {

// A flag that forces one switch.
struct ForcedSwitch {
    bool CommandLineSettings::*flag;
    SettingId id;
    bool value;
};

constexpr std::array<ForcedSwitch, 10> kForcedSwitches = {{
    {&CommandLineSettings::levelfidelity_ref_only, SettingId::level_fidelity_gates_overall, false},
    {&CommandLineSettings::artifact_ref_only, SettingId::artifact_gates_overall, false},
    {&CommandLineSettings::no_distortion, SettingId::distortion_enabled, false},
    {&CommandLineSettings::bitexact, SettingId::bit_exact_gates_overall, true},
    {&CommandLineSettings::no_bitexact, SettingId::bit_exact_enabled, false},
    {&CommandLineSettings::bitaccuracy, SettingId::bit_accuracy_enabled, true},
    {&CommandLineSettings::deepscan, SettingId::time_domain_enabled, true},
    {&CommandLineSettings::impulse, SettingId::impulse_template_enabled, true},
    {&CommandLineSettings::no_loudness, SettingId::loudness_enabled, false},
    {&CommandLineSettings::loudness, SettingId::loudness_gates_overall, true},
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

// The flag's own text when the command line decided, else the source's label.
const char* gating_label(SettingSource source, const char* flag) {
    return source == SettingSource::command_line ? flag : setting_source_label(source);
}

void fill_gating_labels(AnalysisConfig& out) {
    out.gating.level_fidelity =
        gating_label(out.level_fidelity.gates_overall.source, "--levelfidelity-ref-only");
    out.gating.artifact = gating_label(out.artifact.gates_overall.source, "--artifact-ref-only");
    out.gating.loudness = gating_label(out.loudness.gates_overall.source, "--loudness");
    out.gating.bit_exact = gating_label(out.bit_exact.gates_overall.source, "--bitexact");
    out.gating.bit_accuracy = gating_label(out.bit_accuracy.enabled.source, "--bitaccuracy");
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
    fill_gating_labels(out);
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
