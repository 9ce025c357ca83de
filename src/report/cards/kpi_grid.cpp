// The KPI grid: analysis mode, spectral fidelity, THD+N and the overall verdict, then the note
// that explains a non-gating bit-exactness failure.
#include "report/page/analyze_parts.h"

#include "report/cards/check_status.h"

#include <algorithm>
#include <string>

namespace {

const char* spectral_profile_title(const std::string& profile) {
    if (profile == "freq_sweep") return "Frequency Sweep";
    if (profile == "amp_sweep") return "Amplitude Sweep";
    return "Frequency Domain";
}

// The bit mode when one applies, else null.
const char* bit_mode_text(const RunResults& results) {
    // A skipped bit-exactness check gates nothing, whatever its switch says.
    const bool exact_gates = results.bit_exact.ran && results.config.bit_exact.gates_overall.value;
    const bool accuracy = results.config.bit_accuracy.enabled.value;
    if (exact_gates && accuracy) return "Bit-Exact + Bit Accuracy";
    if (exact_gates) return "Bit-Exact";
    if (accuracy) return "Bit Accuracy";
    return nullptr;
}

bool append_mode_tile(TextBuffer& page, const RunResults& results) {
    const AnalysisConfig& config = results.config;
    const char* profile = spectral_profile_title(config.spectral_fidelity.profile.value);
    const char* bit_mode = bit_mode_text(results);
    return text_append(page, "<div class=\"kpi\">\n<div class=\"k\">Analysis Mode</div>\n"
                             "<div class=\"v\">") &&
           text_append(page, bit_mode != nullptr ? bit_mode : profile) &&
           (!config.time_domain.enabled.value || text_append(page, " + Deepscan")) &&
           (!config.impulse_template.enabled.value || text_append(page, " + Impulse")) &&
           text_append(page, "</div>\n") &&
           (bit_mode == nullptr ||
            text_append_format(page, "<div class=\"kpi-sub\">%s</div>\n", profile)) &&
           text_append(page, "</div>\n");
}

// Snapshots in which every examined channel passed.
std::size_t snapshots_passed(const SpectralSnapshotsResult& result) {
    std::size_t passed = 0;
    const std::size_t channels = std::min<std::size_t>(result.channels, 2);
    for (const SpectralSnapshot& snapshot : result.snapshots) {
        bool all = true;
        for (std::size_t c = 0; c < channels; ++c)
            all = all && snapshot.channel[c].passed;
        if (all) ++passed;
    }
    return passed;
}

bool append_spectral_value(TextBuffer& page, const RunResults& results) {
    const SpectralOutcome& outcome = results.spectral.result;
    if (results.spectral.ran && outcome.snapshot_mode) {
        return text_append_format(page, "%zu/%zu<small> snapshots</small></div>\n</div>\n",
                                  snapshots_passed(outcome.snapshots),
                                  outcome.snapshots.snapshots.size());
    }
    if (!results.spectral.ran || spectral_scan_in_error(outcome.scan))
        return text_append(page, "&mdash;<small> n/a</small></div>\n</div>\n");
    return text_append_format(page, "%.2f<small> p99 ratio</small></div>\n</div>\n",
                              spectral_scan_p99(outcome.scan));
}

bool append_thdn_value(TextBuffer& page, const RunResults& results) {
    if (!results.config.distortion.enabled.value)
        return text_append(page, "&mdash;<small> skipped</small></div>\n</div>\n");
    const DistortionResult& result = results.distortion.result;
    const DistortionChannelResult& shown = result.channel[distortion_shown_channel(result)];
    if (!results.distortion.ran || !distortion_has_measurement(shown))
        return text_append(page, "&mdash;<small> n/a</small></div>\n</div>\n");
    return text_append_format(page, "%.2f<small> %%</small></div>\n</div>\n",
                              shown.thdn_ratio * 100.0);
}

bool append_bitexact_note(TextBuffer& page, const RunResults& results) {
    const CheckStatus exact = check_status(results, GatingCheck::bitexact);
    if (!check_failed_nongating(exact)) return true;
    return text_append(page, "<div class=\"kpi-note\">Bit-Exactness failed but is not gating the "
                             "overall verdict &mdash; run with <code>--bitexact</code> to require "
                             "an exact match. See the Bit-Exactness section below for "
                             "details.</div>\n");
}

} // namespace

bool append_kpi_grid(TextBuffer& page, const RunResults& results) {
    const bool passed = results.overall.passed;
    return text_append(page, "<div class=\"kpi-grid\">\n") && append_mode_tile(page, results) &&
           text_append(page, "<div class=\"kpi\">\n<div class=\"k\">Spectral Fidelity</div>\n"
                             "<div class=\"v\">") &&
           append_spectral_value(page, results) &&
           text_append(page, "<div class=\"kpi\">\n<div class=\"k\">THD+N</div>\n"
                             "<div class=\"v\">") &&
           append_thdn_value(page, results) &&
           text_append_format(page,
                              "<div class=\"kpi verdict%s\">\n<div class=\"k\">Overall "
                              "Verdict</div>\n<div class=\"v\">%s</div>\n</div>\n</div>\n",
                              passed ? " ok" : "", verdict_text(passed)) &&
           append_bitexact_note(page, results);
}
