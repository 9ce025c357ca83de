// The annotations of the spectral chart: the fail marker with its label box, and the labelled
// peaks with their leader lines.
#include "audio/audio.h"
#include "report/charts/chart_scales.h"
#include "report/charts/spectral_parts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

constexpr double kFailBoxHeight = 16.0;

// Whether a frequency is drawn at all: the log scale leaves out everything below 20 Hz.
bool drawn_frequency(const SpectralChartData& chart, double freq_hz) {
    return chart.scale == FrequencyScale::linear || freq_hz >= kLogFrequencyMinHz;
}

// The failing point's level: the DUT trace (the reference when there is no DUT) at the bin
// nearest the frequency; the top of the scale when there is no such bin.
double failing_level(const SpectralChartData& chart, double freq_hz) {
    const std::span<const double> trace = chart.dut_db.empty() ? chart.ref_db : chart.dut_db;
    if (trace.empty() || !(chart.bin_hz > 0.0)) return kChartDbMax;
    const double bin = round_half_away_from_zero(freq_hz / chart.bin_hz);
    const double last = static_cast<double>(trace.size() - 1);
    return trace[static_cast<std::size_t>(std::clamp(bin, 0.0, last))];
}

// The label box sits centred above the triangle, kept inside the view box and the plot width;
// it is about 6 units per character wide.
bool append_fail_label(TextBuffer& page, double x, double y, double diff_db) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "Fail %+.1fdB", diff_db);
    const double width = 6.0 * static_cast<double>(std::strlen(text.data())) + 10.0;
    const double box_x = std::clamp(x - width / 2.0, kSpectralArea.left,
                                    std::max(kSpectralArea.left, kSpectralArea.right - width));
    const double box_y = std::max(y - 12.0 - kFailBoxHeight, 0.0);
    return text_append_format(page,
                              "<rect x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" height=\"16\" rx=\"4\" "
                              "fill=\"var(--fail-soft)\" stroke=\"var(--fail-line)\" "
                              "stroke-width=\"1\"/>",
                              box_x, box_y, width) &&
           text_append_format(page,
                              "<text x=\"%.2f\" y=\"%.2f\" font-size=\"10\" font-weight=\"700\" "
                              "fill=\"var(--fail)\" text-anchor=\"middle\">%s</text>\n",
                              box_x + width / 2.0, box_y + 12.0, text.data());
}

// A dot at the peak, a leader line rising from it, the level label above the leader and the
// frequency label above that.
bool append_peak(TextBuffer& page, const SpectralChartData& chart, const SpectralPeakLabel& peak) {
    const double x = spectral_x(peak.freq_hz, chart.nyquist_hz, chart.scale);
    const double y = spectral_y(peak.level_db);
    return text_append_format(
               page, "<circle cx=\"%.2f\" cy=\"%.2f\" r=\"2.6\" fill=\"var(--accent)\"/>", x, y) &&
           append_svg_line(page, x, y - 4.0, x, y - 11.0,
                           "stroke=\"var(--accent)\" stroke-width=\"1\" opacity=\"0.7\"") &&
           append_svg_text_open(page, x, y - 24.0,
                                "font-size=\"9.5\" font-weight=\"700\" fill=\"var(--ink)\" "
                                "text-anchor=\"middle\"") &&
           (peak.freq_hz < 1000.0 ? text_append_format(page, "%.0f", peak.freq_hz)
                                  : text_append_format(page, "%.2fk", peak.freq_hz / 1000.0)) &&
           append_svg_text_close(page) &&
           append_svg_text_open(page, x, y - 14.0,
                                "font-size=\"8.5\" fill=\"var(--muted)\" text-anchor=\"middle\"") &&
           text_append_format(page, "%.1fdB", peak.level_db) && append_svg_text_close(page);
}

} // namespace

// A downward triangle with its tip on the failing point; a frequency the scale does not draw
// gets no marker (the data element still carries it).
bool append_fail_marker(TextBuffer& page, const SpectralChartData& chart) {
    if (!chart.fail || !drawn_frequency(chart, chart.fail->freq_hz)) return true;
    const double x = spectral_x(chart.fail->freq_hz, chart.nyquist_hz, chart.scale);
    const double y = spectral_y(failing_level(chart, chart.fail->freq_hz));
    return text_append_format(page,
                              "<path d=\"M%.2f,%.2f l-5,-9 l10,0 Z\" fill=\"var(--fail)\" "
                              "stroke=\"var(--fail-line)\" stroke-width=\"1\"/>",
                              x, y) &&
           append_fail_label(page, x, y, chart.fail->diff_db);
}

bool append_peak_labels(TextBuffer& page, const SpectralChartData& chart) {
    for (const SpectralPeakLabel& peak : chart.peaks) {
        if (drawn_frequency(chart, peak.freq_hz) && !append_peak(page, chart, peak)) return false;
    }
    return true;
}
