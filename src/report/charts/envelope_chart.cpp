// The waveform envelope chart: SVG head, axes, grid, failure markers, the detail-position line,
// the traces' data sets and the data element, in that order. The page script draws the traces.
#include "report/charts/envelope_chart.h"

#include "report/charts/chart_scales.h"
#include "report/charts/envelope_parts.h"

#include <optional>

namespace {

bool append_svg_open(TextBuffer& page, const EnvelopeView& view) {
    return text_append_format(page,
                              "<svg viewBox=\"0 0 %.0f %.0f\" preserveAspectRatio=\"none\" "
                              "class=\"sx-envelope\" id=\"sx-envelope-svg%s\" role=\"img\" "
                              "aria-label=\"",
                              1000.0, 200.0, view.id_suffix) &&
           text_append_html(page, view.title) &&
           text_append_format(page, "%s\">\n", view.dut != nullptr ? ", reference vs. DUT" : "");
}

bool append_frame_lines(TextBuffer& page, const EnvelopeView& view) {
    return append_plot_axes(page, kEnvelopeArea) && append_envelope_value_grid(page, view.scale) &&
           append_envelope_time_grid(page, view) &&
           append_axis_titles(page, "Time (s)", 184.0,
                              view.scale == EnvelopeScale::db ? "Amplitude (dB)" : "Amplitude",
                              83.0);
}

// A dashed line over the plot height and the rotated label beside its top.
bool append_marker(TextBuffer& page, const ChartMarker& marker) {
    const double x = envelope_marker_x(marker.frac);
    const double label_x = x + 3.0;
    constexpr double label_y = 12.0;
    return text_append_format(page,
                              "<line x1=\"%.2f\" y1=\"%.2f\" x2=\"%.2f\" y2=\"%.2f\" "
                              "stroke=\"var(--fail)\" stroke-width=\"1\" "
                              "stroke-dasharray=\"3,2\"/>\n",
                              x, kEnvelopeArea.top, x, kEnvelopeArea.bottom) &&
           text_append_format(page,
                              "<text x=\"%.2f\" y=\"%.2f\" font-size=\"9\" fill=\"var(--fail)\" "
                              "transform=\"rotate(-90 %.2f %.2f)\" text-anchor=\"start\">",
                              label_x, label_y, label_x, label_y) &&
           text_append_html(page, marker.label.c_str()) && text_append(page, "</text>");
}

bool append_markers(TextBuffer& page, const EnvelopeView& view) {
    for (const ChartMarker& marker : view.markers) {
        if (!append_marker(page, marker)) return false;
    }
    return true;
}

// The detail position is placed like a failure marker.
bool append_detail_line(TextBuffer& page, const std::optional<double>& frac) {
    if (!frac) return true;
    const double x = envelope_marker_x(*frac);
    return append_svg_line(page, x, kEnvelopeArea.top, x, kEnvelopeArea.bottom,
                           "stroke=\"var(--line)\" stroke-width=\"1.5\" "
                           "stroke-dasharray=\"4,3\" opacity=\"0.8\"");
}

// Every envelope the figures hold has all its columns; one that does not (a figure that was
// never taken) fails the chart instead of being read past its end.
bool complete(const Envelope* envelope) {
    return envelope == nullptr ||
           (envelope->min.size() == kEnvelopeColumns && envelope->max.size() == kEnvelopeColumns &&
            envelope->valid.size() == kEnvelopeColumns);
}

// The trace elements the page does not hold yet, then the chart's data element.
bool append_chart_data(TextBuffer& page, const EnvelopeView& view) {
    std::string ref_id;
    std::string dut_id;
    return append_envelope_set(page, *view.data_sets, *view.ref, ref_id) &&
           (view.dut == nullptr || append_envelope_set(page, *view.data_sets, *view.dut, dut_id)) &&
           append_envelope_data(page, view, ref_id, view.dut != nullptr ? &dut_id : nullptr);
}

} // namespace

bool append_envelope_chart(TextBuffer& page, const EnvelopeView& view) {
    if (view.ref == nullptr || view.data_sets == nullptr || !complete(view.ref) ||
        !complete(view.dut)) {
        return false;
    }
    return append_svg_open(page, view) && append_frame_lines(page, view) &&
           append_markers(page, view) && append_detail_line(page, view.detail_frac) &&
           text_append(page, "</svg>\n") && append_chart_data(page, view);
}
