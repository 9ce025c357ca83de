// The JSON data element of the spectral chart: geometry, scale, tiers, both spectra, the tier
// line markers, the fail marker and the peaks.
#include "report/chart_json.h"
#include "report/chart_scales.h"
#include "report/spectral_parts.h"

#include <optional>

namespace {

// "%.2f", or null for a tier that is not set (the noise floor included).
bool append_tier_value(TextBuffer& page, const std::optional<double>& db) {
    return db ? text_append_format(page, "%.2f", *db) : text_append(page, "null");
}

bool append_head(TextBuffer& page, const SpectralChartData& chart, const char* suffix) {
    return text_append_format(
               page,
               "<script type=\"application/json\" id=\"sx-spectral-data%s\">{\"chartLeft\":%.1f,"
               "\"chartRight\":%.1f,\"chartTop\":%.1f,\"chartBottom\":%.1f,\"binHz\":%.6f,"
               "\"nyquistHz\":%.3f,\"freqMinHz\":%.1f,\"dbMin\":%.1f,\"dbMax\":%.1f,"
               "\"freqScale\":\"%s\",\"tierNoiseFloorDb\":",
               suffix, kSpectralArea.left, kSpectralArea.right, kSpectralArea.top,
               kSpectralArea.bottom, chart.bin_hz, chart.nyquist_hz, kLogFrequencyMinHz,
               kChartDbMin, kChartDbMax, chart.scale == FrequencyScale::log ? "log" : "linear") &&
           append_tier_value(page, chart.tiers.noise_floor_db) &&
           text_append(page, ",\"tierNonPeakDb\":") &&
           append_tier_value(page, chart.tiers.low_level_db) &&
           text_append(page, ",\"tierPeakDb\":") && append_tier_value(page, chart.tiers.peak_db) &&
           text_append(page, ",");
}

// A comma separates "ref" and "dut" so the element stays valid JSON.
bool append_traces(TextBuffer& page, const SpectralChartData& chart) {
    return append_json_number_array(page, "ref", chart.ref_db, 2) && text_append(page, ",") &&
           (chart.dut_db.empty() ? text_append(page, "\"dut\":null")
                                 : append_json_number_array(page, "dut", chart.dut_db, 2));
}

bool append_tier_markers(TextBuffer& page, std::span<const TierLine> tiers) {
    if (!text_append(page, ",\"markers\":[")) return false;
    for (std::size_t i = 0; i < tiers.size(); ++i) {
        if (!text_append_format(page, "%s{\"db\":%.2f,\"text\":\"", i == 0 ? "" : ",",
                                tiers[i].db) ||
            !text_append_json(page, tiers[i].text.c_str()) ||
            !text_append_format(page, "\",\"color\":\"%s\",\"dash\":\"%s\",\"align\":\"%s\"}",
                                kTierColour, kTierDash, kTierAlign)) {
            return false;
        }
    }
    return text_append(page, "]");
}

bool append_fail_and_peaks(TextBuffer& page, const SpectralChartData& chart) {
    if (!(chart.fail ? text_append_format(page, ",\"failMarker\":{\"freqHz\":%.3f,\"diffDb\":%.2f}",
                                          chart.fail->freq_hz, chart.fail->diff_db)
                     : text_append(page, ",\"failMarker\":null")) ||
        !text_append(page, ",\"peaks\":[")) {
        return false;
    }
    for (std::size_t i = 0; i < chart.peaks.size(); ++i) {
        const SpectralPeakLabel& peak = chart.peaks[i];
        if (!text_append_format(page, "%s{\"freqHz\":%.3f,\"levelDb\":%.2f,\"tier\":%d}",
                                i == 0 ? "" : ",", peak.freq_hz, peak.level_db, peak.tier)) {
            return false;
        }
    }
    return text_append(page, "]");
}

} // namespace

bool append_spectral_data(TextBuffer& page, const SpectralChartData& chart, const char* suffix,
                          std::span<const TierLine> tiers) {
    return append_head(page, chart, suffix) && append_traces(page, chart) &&
           append_tier_markers(page, tiers) && append_fail_and_peaks(page, chart) &&
           text_append(page, "}</script>\n");
}
