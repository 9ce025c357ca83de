// The JSON data element of the spectral chart: geometry, scale, tiers, the elements that hold
// both spectra, the tier line markers, the fail marker and the peaks.
#include "report/charts/chart_json.h"
#include "report/charts/chart_scales.h"
#include "report/charts/spectral_parts.h"

#include <optional>

namespace {

// "%.2f", or null for a tier that is not set (the noise floor included).
bool append_tier_value(JsonOut out, const char* key, const std::optional<double>& db) {
    return json_next_key(out, key) && (db ? json_fixed(out, *db, 2) : json_raw(out, "null"));
}

bool append_head(JsonOut out, const SpectralChartData& chart) {
    return json_next_key(out, "binHz") && json_fixed(out, chart.bin_hz, 6) &&
           json_next_key(out, "nyquistHz") && json_fixed(out, chart.nyquist_hz, 3) &&
           json_next_key(out, "freqMinHz") && json_fixed(out, kLogFrequencyMinHz, 1) &&
           append_chart_level_range(out) && json_next_key(out, "freqScale") &&
           json_string(out, chart.scale == FrequencyScale::log ? "log" : "linear") &&
           append_tier_value(out, "tierNoiseFloorDb", chart.tiers.noise_floor_db) &&
           append_tier_value(out, "tierNonPeakDb", chart.tiers.low_level_db) &&
           append_tier_value(out, "tierPeakDb", chart.tiers.peak_db);
}

bool append_traces(JsonOut out, const SpectralTraceIds& traces) {
    return json_next_key(out, "ref") && json_string(out, traces.ref) && json_next_key(out, "dut") &&
           (traces.dut == nullptr ? json_raw(out, "null") : json_string(out, *traces.dut));
}

bool append_tier_marker(JsonOut out, const TierLine& tier) {
    return json_raw(out, "{") && json_key(out, "db") && json_fixed(out, tier.db, 2) &&
           json_next_key(out, "text") && json_string(out, tier.text) &&
           json_next_key(out, "color") && json_string(out, kTierColour) &&
           json_next_key(out, "dash") && json_string(out, kTierDash) &&
           json_next_key(out, "align") && json_string(out, kTierAlign) && json_raw(out, "}");
}

bool append_tier_markers(JsonOut out, std::span<const TierLine> tiers) {
    if (!json_next_key(out, "markers") || !json_raw(out, "[")) return false;
    for (std::size_t i = 0; i < tiers.size(); ++i) {
        if (!json_separator(out, i) || !append_tier_marker(out, tiers[i])) return false;
    }
    return json_raw(out, "]");
}

bool append_fail(JsonOut out, const SpectralChartData& chart) {
    if (!json_next_key(out, "failMarker")) return false;
    if (!chart.fail) return json_raw(out, "null");
    return json_raw(out, "{") && json_key(out, "freqHz") &&
           json_fixed(out, chart.fail->freq_hz, 3) && json_next_key(out, "diffDb") &&
           json_fixed(out, chart.fail->diff_db, 2) && json_raw(out, "}");
}

bool append_peak(JsonOut out, const SpectralPeakLabel& peak) {
    return json_raw(out, "{") && json_key(out, "freqHz") && json_fixed(out, peak.freq_hz, 3) &&
           json_next_key(out, "levelDb") && json_fixed(out, peak.level_db, 2) &&
           json_next_key(out, "tier") && json_integer(out, peak.tier) && json_raw(out, "}");
}

bool append_peaks(JsonOut out, const SpectralChartData& chart) {
    if (!json_next_key(out, "peaks") || !json_raw(out, "[")) return false;
    for (std::size_t i = 0; i < chart.peaks.size(); ++i) {
        if (!json_separator(out, i) || !append_peak(out, chart.peaks[i])) return false;
    }
    return json_raw(out, "]");
}

} // namespace

bool append_spectral_data(TextBuffer& page, const SpectralChartData& chart, const char* suffix,
                          std::span<const TierLine> tiers, const SpectralTraceIds& traces) {
    const JsonOut out = text_json_out(page);
    return append_chart_data_open(page, "sx-spectral-data", suffix, kSpectralArea) &&
           append_head(out, chart) && append_traces(out, traces) &&
           append_tier_markers(out, tiers) && append_fail(out, chart) && append_peaks(out, chart) &&
           json_raw(out, "}</script>\n");
}
