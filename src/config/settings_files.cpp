#include "config/settings_files.h"

#include <utility>

#include "config/config_lookup.h"
#include "config/config_text.h"
#include "config/setting_readers.h"
#include "config/spectral_arrays.h"

namespace {

void read_general(std::string_view s, GeneralSettings& out) {
    read_text(s, "default_profile", kDefaultProfileCapacity, out.default_profile);
    read_number(s, "low_level_signal_threshold_db", out.low_level_signal_threshold_db);
    read_number(s, "length_mismatch_tolerance_pct", out.length_mismatch_tolerance_pct);
}

void read_level_fidelity(std::string_view s, LevelFidelitySettings& out) {
    read_text(s, "profile", kLevelFidelityProfileCapacity, out.profile);
    read_number(s, "noise_floor_db", out.noise_floor_db);
    read_number(s, "p99_tolerance_db", out.p99_tolerance_db);
    read_number(s, "min_sustained_run_ms", out.min_sustained_run_ms);
    read_boolean(s, "gates_overall", out.gates_overall);
}

void read_artifact(std::string_view s, ArtifactSettings& out) {
    read_positive_integer(s, "window_samples", out.window_samples);
    read_number(s, "k", out.k);
    read_positive_integer(s, "min_run", out.min_run);
    read_number(s, "noise_floor_db", out.noise_floor_db);
    read_boolean(s, "gates_overall", out.gates_overall);
    read_number(s, "min_severity", out.min_severity);
    read_positive_integer(s, "min_silence_clip_run", out.min_silence_clip_run);
    read_number(s, "min_global_severity", out.min_global_severity);
}

void read_spectral_scalars(std::string_view s, SpectralFidelitySettings& out) {
    // fft_size only takes integers above 0; smaller values are ignored like malformed ones.
    read_positive_integer(s, "fft_size", out.fft_size);
    read_text(s, "profile", kSpectralProfileCapacity, out.profile);
    read_number(s, "noise_floor_db", out.noise_floor_db);
    read_number(s, "relative_noise_floor_db", out.relative_noise_floor_db);
    read_number(s, "low_level_signal_threshold_db", out.low_level_signal_threshold_db);
    read_number(s, "peak_threshold_db", out.peak_threshold_db);
    read_number(s, "signal_tolerance_db", out.signal_tolerance_db);
    read_number(s, "low_level_signal_tolerance_db", out.low_level_signal_tolerance_db);
    read_number(s, "peak_tolerance_db", out.peak_tolerance_db);
    read_boolean(s, "continuous", out.continuous);
    read_number(s, "overlap_fraction", out.overlap_fraction);
    read_number(s, "freq_sweep_start_hz", out.freq_sweep_start_hz);
    read_number(s, "freq_sweep_end_hz", out.freq_sweep_end_hz);
    read_text(s, "freq_sweep_shape", kSweepShapeCapacity, out.freq_sweep_shape);
    read_number(s, "amp_sweep_test_freq_hz", out.amp_sweep_test_freq_hz);
    read_number(s, "sweep_search_window_cents", out.sweep_search_window_cents);
    // Negative edge skips are kept so that validation can name them.
    read_integer(s, "sweep_edge_skip_samples", out.sweep_edge_skip_samples);
}

bool read_spectral_fidelity(std::string_view s, SpectralFidelitySettings& out) {
    read_spectral_scalars(s, out);
    return read_spectral_bands(s, out.bands) && read_snapshots(s, out.snapshots);
}

void read_distortion(std::string_view s, DistortionSettings& out) {
    read_number(s, "noise_floor_db", out.noise_floor_db);
    read_positive_integer(s, "fundamental_notch_bins", out.fundamental_notch_bins);
    read_number(s, "tolerance_ratio", out.tolerance_ratio);
    read_boolean(s, "enabled", out.enabled);
    read_boolean(s, "continuous", out.continuous);
    read_number(s, "overlap_fraction", out.overlap_fraction);
}

void read_bit_exact(std::string_view s, BitExactSettings& out) {
    read_number(s, "bit_deviation_db", out.bit_deviation_db);
    read_boolean(s, "gates_overall", out.gates_overall);
    read_boolean(s, "enabled", out.enabled);
}

void read_bit_accuracy(std::string_view s, BitAccuracySettings& out) {
    read_boolean(s, "enabled", out.enabled);
    read_number(s, "tolerance_db", out.tolerance_db);
}

void read_time_domain(std::string_view s, TimeDomainSettings& out) {
    read_boolean(s, "enabled", out.enabled);
    read_number(s, "noise_floor_db", out.noise_floor_db);
    read_number(s, "peak_threshold_db", out.peak_threshold_db);
    read_number(s, "peak_tolerance_pct", out.peak_tolerance_pct);
    read_number(s, "low_level_signal_threshold_db", out.low_level_signal_threshold_db);
    read_number(s, "low_level_signal_tolerance_pct", out.low_level_signal_tolerance_pct);
    read_number(s, "signal_tolerance_pct", out.signal_tolerance_pct);
}

void read_impulse_template(std::string_view s, ImpulseTemplateSettings& out) {
    read_boolean(s, "enabled", out.enabled);
    read_number(s, "peak_threshold_db", out.peak_threshold_db);
    read_number(s, "ratio", out.ratio);
    read_number(s, "noise_floor_db", out.noise_floor_db);
    read_positive_integer(s, "frame_size", out.frame_size);
}

void read_loudness(std::string_view s, LoudnessSettings& out) {
    read_boolean(s, "enabled", out.enabled);
    read_number(s, "integrated_tolerance_lu", out.integrated_tolerance_lu);
    read_number(s, "true_peak_tolerance_db", out.true_peak_tolerance_db);
    read_number(s, "true_peak_ceiling_dbtp", out.true_peak_ceiling_dbtp);
    read_boolean(s, "gates_overall", out.gates_overall);
}

void read_tester(std::string_view s, TesterSettings& out) {
    read_text(s, "test_engineer", kTesterTextCapacity, out.test_engineer);
    read_text(s, "test_product", kTesterTextCapacity, out.test_product);
    read_text(s, "test_company_name", kTesterTextCapacity, out.test_company_name);
    read_boolean(s, "tester_info_enabled", out.tester_info_enabled);
}

void read_alignment(std::string_view s, AlignmentSettings& out) {
    read_number(s, "fine_align_confidence_threshold", out.fine_align_confidence_threshold);
    read_number(s, "fine_align_max_search_sec", out.fine_align_max_search_sec);
    read_integer(s, "fine_align_agreement_tolerance_samples",
                 out.fine_align_agreement_tolerance_samples);
    read_number(s, "sync_psr_threshold", out.sync_psr_threshold);
    read_number(s, "sync_search_window_sec", out.sync_search_window_sec);
}

// Runs `reader` on the section `name` of `text` when that section is present.
template <typename Settings>
void read_section(std::string_view text, const char* name,
                  void (*reader)(std::string_view, Settings&), Settings& out) {
    std::string section;
    if (find_section(text, name, section)) reader(section, out);
}

} // namespace

bool read_analysis_sections(std::string_view text, AnalysisSettings& out) {
    read_section(text, "general", read_general, out.general);
    read_section(text, "level_fidelity", read_level_fidelity, out.level_fidelity);
    read_section(text, "artifact", read_artifact, out.artifact);
    read_section(text, "distortion", read_distortion, out.distortion);
    read_section(text, "bit_exact", read_bit_exact, out.bit_exact);
    read_section(text, "bit_accuracy", read_bit_accuracy, out.bit_accuracy);
    read_section(text, "time_domain", read_time_domain, out.time_domain);
    read_section(text, "impulse_template", read_impulse_template, out.impulse_template);
    read_section(text, "loudness", read_loudness, out.loudness);
    std::string spectral;
    return !find_section(text, "spectral_fidelity", spectral) ||
           read_spectral_fidelity(spectral, out.spectral_fidelity);
}

bool load_override_file(const std::string& path, AnalysisSettings& out) {
    std::string text;
    AnalysisSettings settings;
    if (!load_config_text(path, text) || !read_analysis_sections(text, settings)) return false;
    out = std::move(settings);
    return true;
}

bool load_defaults_file(const std::string& path, DefaultsFileSettings& out) {
    std::string text;
    if (!load_config_text(path, text)) return false;
    DefaultsFileSettings settings;
    // Both top-level searches take the first occurrence in the whole text, so an
    // analysis.general written before the top-level general is read as the tester section.
    read_section(std::string_view(text), "general", read_tester, settings.general);
    read_section(std::string_view(text), "alignment", read_alignment, settings.alignment);
    std::string analysis;
    if (find_section(text, "analysis", analysis) &&
        !read_analysis_sections(analysis, settings.analysis)) {
        return false;
    }
    out = std::move(settings);
    return true;
}
