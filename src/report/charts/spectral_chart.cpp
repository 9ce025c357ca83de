// The spectral chart: SVG head, grid, axes with labels and titles, tier marks, the fail marker,
// the labelled peaks, the spectra's data sets and the data element, in that order. The page
// script draws the spectra.
#include "report/charts/spectral_chart.h"

#include "report/charts/chart_scales.h"
#include "report/charts/spectral_parts.h"

#include <string>

namespace {

bool append_svg_open(TextBuffer& page, const SpectralChartData& chart, const char* suffix) {
    return text_append_format(page,
                              "<svg viewBox=\"0 0 %.0f %.0f\" preserveAspectRatio=\"none\" "
                              "class=\"sx-spectral-chart\" id=\"sx-spectral-svg%s\" role=\"img\" "
                              "aria-label=\"Spectral snapshot%s\">\n",
                              1000.0, 320.0, suffix,
                              chart.dut_db.empty() ? "" : ", reference vs. DUT");
}

// The two axes, the level labels beside the grid's level lines and the two axis titles.
bool append_axes(TextBuffer& page) {
    if (!append_plot_axes(page, kSpectralArea)) return false;
    for (int level = 20; level >= -140; level -= 20) {
        const double db = level;
        if (!append_value_label_open(page, spectral_y(db)) ||
            !text_append_format(page, "%.0f", db) || !append_svg_text_close(page)) {
            return false;
        }
    }
    return append_axis_titles(page, "Frequency (Hz)", 304.0, "Amplitude (dB)", 144.0);
}

// The spectra the page does not hold yet, then the chart's data element.
bool append_chart_data(TextBuffer& page, const SpectralChartData& chart, const char* suffix,
                       std::span<const TierLine> tiers) {
    SpectralTraceIds traces;
    std::string dut_id;
    if (!chart.dut_db.empty()) traces.dut = &dut_id;
    return append_spectrum_set(page, *chart.data_sets, chart.ref_db, traces.ref) &&
           (chart.dut_db.empty() ||
            append_spectrum_set(page, *chart.data_sets, chart.dut_db, dut_id)) &&
           append_spectral_data(page, chart, suffix, tiers, traces);
}

} // namespace

// The linear scale's ids carry "-linear" after the caller's suffix.
bool append_spectral_chart(TextBuffer& page, const SpectralChartData& chart) {
    if (chart.data_sets == nullptr) return false;
    std::string suffix = chart.id_suffix;
    if (chart.scale == FrequencyScale::linear) suffix += "-linear";
    const std::vector<TierLine> tiers = tier_lines(chart.tiers);
    return append_svg_open(page, chart, suffix.c_str()) && append_spectral_grid(page, chart) &&
           append_axes(page) && append_tier_marks(page, chart.tiers, tiers) &&
           append_fail_marker(page, chart) && append_peak_labels(page, chart) &&
           text_append(page, "</svg>\n") && append_chart_data(page, chart, suffix.c_str(), tiers);
}

bool append_spectral_chart_note(TextBuffer& page) {
    return text_append(page, "<p class=\"sx-chart-note\">Not enough overlapping samples to render "
                             "a spectral snapshot.</p>\n");
}
