// The Configuration card: the resolved settings the checks used, one table row each with the
// source the value came from.
#include "report/card_frame.h"
#include "report/cards.h"

namespace {

bool row_open(TextBuffer& page, const char* check, const char* parameter) {
    return text_append_format(page, "<tr><td>%s</td><td>%s</td><td>", check, parameter);
}

// The Source column reads the source index recorded with the setting.
bool row_close(TextBuffer& page, SettingSource source) {
    return text_append_format(page, "</td><td>%s</td></tr>\n", setting_source_label(source));
}

// A row whose value is the setting formatted with `format` (one conversion).
template <typename T>
bool value_row(TextBuffer& page, const char* check, const char* parameter, const Resolved<T>& s,
               const char* format) {
    return row_open(page, check, parameter) && text_append_format(page, format, s.value) &&
           row_close(page, s.source);
}

// A row showing `value` (HTML-escaped) with the source of `s`.
template <typename T>
bool text_row(TextBuffer& page, const char* check, const char* parameter, const Resolved<T>& s,
              const char* value) {
    return row_open(page, check, parameter) && text_append_html(page, value) &&
           row_close(page, s.source);
}

bool switch_row(TextBuffer& page, const char* check, const char* parameter, const Resolved<bool>& s,
                const char* on, const char* off) {
    return text_row(page, check, parameter, s, s.value ? on : off);
}

constexpr const char* kSpectral = "Spectral Fidelity";

bool spectral_optional_rows(TextBuffer& page, const SpectralFidelityConfig& s) {
    return (!s.relative_noise_floor_db.set || value_row(page, kSpectral, "Relative Noise Floor",
                                                        s.relative_noise_floor_db, "%.2f dB")) &&
           (s.bands.value.empty() ||
            (row_open(page, kSpectral, "Bands") &&
             text_append_format(page, "%zu configured", s.bands.value.size()) &&
             row_close(page, s.bands.source))) &&
           switch_row(page, kSpectral, "Continuous Scan", s.continuous, "enabled", "disabled") &&
           (!s.sweep_edge_skip_samples.set ||
            value_row(page, kSpectral, "Sweep Edge Skip", s.sweep_edge_skip_samples,
                      "%ld samples at each end")) &&
           (!s.overlap_fraction.set ||
            value_row(page, kSpectral, "Overlap Fraction", s.overlap_fraction, "%.2f")) &&
           // A snapshot setting is what selects the snapshot mode; its count is shown.
           (!s.snapshots.set || (row_open(page, kSpectral, "Snapshots") &&
                                 text_append_format(page, "%zu", s.snapshots.value.count) &&
                                 row_close(page, s.snapshots.source)));
}

bool spectral_rows(TextBuffer& page, const SpectralFidelityConfig& s) {
    return text_row(page, kSpectral, "Profile", s.profile, s.profile.value.c_str()) &&
           value_row(page, kSpectral, "FFT Size", s.fft_size, "%zu") &&
           value_row(page, kSpectral, "Peak Tolerance", s.peak_tolerance_db, "%.2f dB") &&
           spectral_optional_rows(page, s);
}

bool level_rows(TextBuffer& page, const LevelFidelityConfig& s) {
    const char* check = "Level Fidelity";
    const Resolved<double>& run = s.min_sustained_run_ms;
    return text_row(page, check, "Profile", s.profile, s.profile.value.c_str()) &&
           value_row(page, check, "P99 Tolerance", s.p99_tolerance_db, "%.2f dB") &&
           // "disabled" for exactly 0, as written; any other value is shown as it is.
           (run.value == 0.0 ? text_row(page, check, "Min Sustained Run", run, "disabled")
                             : value_row(page, check, "Min Sustained Run", run, "%.1f ms"));
}

bool artifact_rows(TextBuffer& page, const ArtifactConfig& s) {
    const char* check = "Artifact Detection";
    return value_row(page, check, "Neighborhood Window", s.window_samples, "%zu samples") &&
           value_row(page, check, "Minimum Severity", s.min_severity, "%.4g&times;") &&
           value_row(page, check, "Min Silence/Clip Run", s.min_silence_clip_run, "%zu samples") &&
           value_row(page, check, "Minimum Whole-File Severity", s.min_global_severity,
                     "%.4g&times;");
}

} // namespace

bool append_configuration_card(TextBuffer& page, const ReportInputs& in) {
    const AnalysisConfig& config = in.results.config;
    return append_card_open(page, "configuration",
                            "<h3>Configuration</h3><span class=\"sub\">resolved parameters this "
                            "run used, and where each came from</span>",
                            nullptr) &&
           text_append(page, "<div class=\"overflow-x\"><table class=\"dt\"><tr><th>Check</th>"
                             "<th>Parameter</th><th>Value</th><th>Source</th></tr>\n") &&
           spectral_rows(page, config.spectral_fidelity) &&
           level_rows(page, config.level_fidelity) && artifact_rows(page, config.artifact) &&
           switch_row(page, "Bit-Exactness", "Gating", config.bit_exact.gates_overall, "enabled",
                      "disabled") &&
           switch_row(page, "Bit Accuracy", "Enabled", config.bit_accuracy.enabled, "yes", "no") &&
           text_append(page, "</table></div>\n") && append_card_close(page);
}
