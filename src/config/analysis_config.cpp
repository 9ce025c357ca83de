#include "config/analysis_config.h"

#include <string>

#include "config/resolve_helpers.h"
#include "config/resolve_spectral.h"

namespace {

void resolve_general(const GeneralSettings& c, const GeneralSettings& d, GeneralConfig& out) {
    resolve_from_files(out.default_profile, c.default_profile, d.default_profile);
    resolve_setting(out.low_level_signal_threshold_db, c.low_level_signal_threshold_db,
                    d.low_level_signal_threshold_db, -70.0);
    resolve_setting(out.length_mismatch_tolerance_pct, c.length_mismatch_tolerance_pct,
                    d.length_mismatch_tolerance_pct, 1.0);
}

void resolve_level_fidelity(const LevelFidelitySettings& c, const LevelFidelitySettings& d,
                            const CommandLineSettings& command_line, LevelFidelityConfig& out) {
    resolve_setting(out.profile, c.profile, d.profile, std::string("general"));
    // Only the exact text "impulse" selects the impulse defaults.
    const bool impulse = out.profile.value == "impulse";
    resolve_setting(out.noise_floor_db, c.noise_floor_db, d.noise_floor_db,
                    impulse ? -30.0 : -80.0);
    resolve_setting(out.p99_tolerance_db, c.p99_tolerance_db, d.p99_tolerance_db,
                    impulse ? 1.94 : 1.02);
    resolve_setting(out.min_sustained_run_ms, c.min_sustained_run_ms, d.min_sustained_run_ms, 20.0);
    resolve_setting(out.gates_overall, c.gates_overall, d.gates_overall, true);
    if (command_line.levelfidelity_ref_only) force_from_command_line(out.gates_overall, false);
}

void resolve_artifact(const ArtifactSettings& c, const ArtifactSettings& d,
                      const CommandLineSettings& command_line, std::uint32_t sample_rate,
                      ArtifactConfig& out) {
    rate_scaled_default(out.window_samples, 64.0, sample_rate);
    resolve_from_files(out.window_samples, c.window_samples, d.window_samples);
    resolve_setting(out.k, c.k, d.k, 6.0);
    resolve_setting(out.min_run, c.min_run, d.min_run, 1);
    resolve_setting(out.noise_floor_db, c.noise_floor_db, d.noise_floor_db, -80.0);
    resolve_setting(out.gates_overall, c.gates_overall, d.gates_overall, true);
    if (command_line.artifact_ref_only) force_from_command_line(out.gates_overall, false);
    resolve_setting(out.min_severity, c.min_severity, d.min_severity, 4.0);
    rate_scaled_default(out.min_silence_clip_run, 8.0, sample_rate);
    resolve_from_files(out.min_silence_clip_run, c.min_silence_clip_run, d.min_silence_clip_run);
    resolve_setting(out.min_global_severity, c.min_global_severity, d.min_global_severity, 100.0);
}

void resolve_distortion(const DistortionSettings& c, const DistortionSettings& d,
                        const CommandLineSettings& command_line, DistortionConfig& out) {
    resolve_setting(out.noise_floor_db, c.noise_floor_db, d.noise_floor_db, -100.0);
    resolve_setting(out.fundamental_notch_bins, c.fundamental_notch_bins, d.fundamental_notch_bins,
                    20);
    resolve_setting(out.tolerance_ratio, c.tolerance_ratio, d.tolerance_ratio, 0.01);
    resolve_setting(out.enabled, c.enabled, d.enabled, true);
    if (command_line.no_distortion) force_from_command_line(out.enabled, false);
    resolve_setting(out.continuous, c.continuous, d.continuous, false);
    resolve_setting(out.overlap_fraction, c.overlap_fraction, d.overlap_fraction, 0.0);
}

void resolve_bit_checks(const AnalysisSettings& c, const AnalysisSettings& d,
                        const CommandLineSettings& command_line, AnalysisConfig& out) {
    BitExactConfig& exact = out.bit_exact;
    resolve_setting(exact.bit_deviation_db, c.bit_exact.bit_deviation_db,
                    d.bit_exact.bit_deviation_db, 0.0);
    resolve_setting(exact.gates_overall, c.bit_exact.gates_overall, d.bit_exact.gates_overall,
                    false);
    if (command_line.bitexact) force_from_command_line(exact.gates_overall, true);
    resolve_setting(exact.enabled, c.bit_exact.enabled, d.bit_exact.enabled, true);
    if (command_line.no_bitexact) force_from_command_line(exact.enabled, false);
    BitAccuracyConfig& accuracy = out.bit_accuracy;
    resolve_setting(accuracy.enabled, c.bit_accuracy.enabled, d.bit_accuracy.enabled, false);
    if (command_line.bitaccuracy) force_from_command_line(accuracy.enabled, true);
    resolve_setting(accuracy.tolerance_db, c.bit_accuracy.tolerance_db, d.bit_accuracy.tolerance_db,
                    108.0);
}

void resolve_time_domain(const TimeDomainSettings& c, const TimeDomainSettings& d,
                         const CommandLineSettings& command_line, const GeneralConfig& general,
                         TimeDomainConfig& out) {
    resolve_setting(out.enabled, c.enabled, d.enabled, false);
    if (command_line.deepscan) force_from_command_line(out.enabled, true);
    resolve_setting(out.noise_floor_db, c.noise_floor_db, d.noise_floor_db, -80.0);
    resolve_setting(out.peak_threshold_db, c.peak_threshold_db, d.peak_threshold_db, -60.0);
    resolve_setting(out.peak_tolerance_pct, c.peak_tolerance_pct, d.peak_tolerance_pct, 10.0);
    // Section key from --config, then the defaults file; else the resolved general key.
    out.low_level_signal_threshold_db = general.low_level_signal_threshold_db;
    resolve_from_files(out.low_level_signal_threshold_db, c.low_level_signal_threshold_db,
                       d.low_level_signal_threshold_db);
    resolve_setting(out.low_level_signal_tolerance_pct, c.low_level_signal_tolerance_pct,
                    d.low_level_signal_tolerance_pct, 50.0);
    resolve_setting(out.signal_tolerance_pct, c.signal_tolerance_pct, d.signal_tolerance_pct, 50.0);
}

void resolve_impulse_template(const ImpulseTemplateSettings& c, const ImpulseTemplateSettings& d,
                              const CommandLineSettings& command_line, ImpulseTemplateConfig& out) {
    resolve_setting(out.enabled, c.enabled, d.enabled, false);
    if (command_line.impulse) force_from_command_line(out.enabled, true);
    resolve_setting(out.peak_threshold_db, c.peak_threshold_db, d.peak_threshold_db, -10.0);
    resolve_setting(out.ratio, c.ratio, d.ratio, 1.25);
    resolve_setting(out.noise_floor_db, c.noise_floor_db, d.noise_floor_db, -30.0);
    resolve_setting(out.frame_size, c.frame_size, d.frame_size, 8192);
}

void resolve_loudness(const LoudnessSettings& c, const LoudnessSettings& d,
                      const CommandLineSettings& command_line, LoudnessConfig& out) {
    resolve_setting(out.enabled, c.enabled, d.enabled, true);
    if (command_line.no_loudness) force_from_command_line(out.enabled, false);
    resolve_setting(out.integrated_tolerance_lu, c.integrated_tolerance_lu,
                    d.integrated_tolerance_lu, 0.5);
    resolve_setting(out.true_peak_tolerance_db, c.true_peak_tolerance_db, d.true_peak_tolerance_db,
                    0.5);
    resolve_from_files(out.true_peak_ceiling_dbtp, c.true_peak_ceiling_dbtp,
                       d.true_peak_ceiling_dbtp);
    resolve_setting(out.gates_overall, c.gates_overall, d.gates_overall, false);
    if (command_line.loudness) force_from_command_line(out.gates_overall, true);
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

} // namespace

void resolve_analysis_config(const AnalysisSettings& config_file,
                             const AnalysisSettings& defaults_file,
                             const CommandLineSettings& command_line, std::uint32_t sample_rate,
                             std::size_t shared_frames, AnalysisConfig& out) {
    const AnalysisSettings& c = config_file;
    const AnalysisSettings& d = defaults_file;
    out = AnalysisConfig{};
    resolve_general(c.general, d.general, out.general);
    resolve_level_fidelity(c.level_fidelity, d.level_fidelity, command_line, out.level_fidelity);
    resolve_artifact(c.artifact, d.artifact, command_line, sample_rate, out.artifact);
    resolve_spectral_fidelity(c, d, command_line, out.general, sample_rate, shared_frames,
                              out.spectral_fidelity);
    resolve_distortion(c.distortion, d.distortion, command_line, out.distortion);
    resolve_bit_checks(c, d, command_line, out);
    resolve_time_domain(c.time_domain, d.time_domain, command_line, out.general, out.time_domain);
    resolve_impulse_template(c.impulse_template, d.impulse_template, command_line,
                             out.impulse_template);
    resolve_loudness(c.loudness, d.loudness, command_line, out.loudness);
    fill_gating_labels(out);
}
