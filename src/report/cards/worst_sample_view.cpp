#include "report/cards/worst_sample_view.h"

#include "report/cards/card_pieces.h"
#include "report/charts/chart_frame.h"
#include "report/charts/envelope_chart.h"

#include <string>
#include <vector>

namespace {

struct ChartIds {
    std::string frame_id;
    std::string suffix;
};

ChartIds chart_ids(const WorstSampleCharts& charts, const char* part, const char* channel) {
    return {std::string(charts.frame_stem) + part + "-frame" + channel,
            std::string(charts.suffix_stem) + part + channel};
}

bool append_chart(TextBuffer& page, const ChartIds& ids, const char* title,
                  const EnvelopeView& view) {
    const ChartFrame frame{.kind = ChartKind::waveform,
                           .frame_id = ids.frame_id.c_str(),
                           .title = title,
                           .trace_toggle = true};
    return append_chart_frame_open(page, frame) && append_envelope_chart(page, view) &&
           append_chart_frame_close(page, frame);
}

EnvelopeView figure_view(const ReportInputs& in, const WaveformFigure& figure) {
    EnvelopeView view;
    view.ref = &figure.ref;
    view.dut = &figure.dut;
    view.sample_rate = in.ref.sample_rate;
    view.first_frame = figure.first_frame;
    view.frame_count = figure.frame_count;
    view.data_sets = in.chart_data;
    return view;
}

double view_fraction(std::uint64_t frame, std::int64_t first, std::size_t count) {
    if (count == 0) return 0.0;
    return static_cast<double>(static_cast<std::int64_t>(frame) - first) /
           static_cast<double>(count);
}

} // namespace

bool append_worst_sample_row_open(TextBuffer& page, std::uint64_t worst, std::uint32_t rate) {
    const double seconds = rate == 0 ? 0.0 : static_cast<double>(worst) / static_cast<double>(rate);
    return text_append_format(page,
                              "<div class=\"tile-row\">\n<div class=\"tile\"><div class=\"k\">"
                              "Worst Sample</div><div class=\"v\">%ld (%.3f s)</div></div>\n",
                              static_cast<long>(worst), seconds);
}

bool append_amplitudes_row_close(TextBuffer& page, double ref_amp, double dut_amp) {
    return text_append_format(page,
                              "<div class=\"tile\"><div class=\"k\">Ref / DUT Amplitude</div><div "
                              "class=\"v\">%.6f / %.6f</div></div>\n</div>\n",
                              ref_amp, dut_amp);
}

bool append_worst_sample_charts(TextBuffer& page, const ReportInputs& in, unsigned channel,
                                const WorstSampleCharts& charts, std::optional<std::uint64_t> worst,
                                const WaveformFigure& zoom_figure) {
    const char* suffix = channel_suffix(in.ref.channels, channel);
    const ChartIds full_ids = chart_ids(charts, "", suffix);
    const ChartIds zoom_ids = chart_ids(charts, "-zoom", suffix);
    EnvelopeView full = figure_view(in, in.results.figures.full[channel]);
    full.id_suffix = full_ids.suffix.c_str();
    full.title = "Full-file waveform overview";
    if (worst) full.detail_frac = view_fraction(*worst, 0, in.ref.frames);
    EnvelopeView zoom = figure_view(in, zoom_figure);
    zoom.id_suffix = zoom_ids.suffix.c_str();
    zoom.title = "Detail view around worst point";
    std::vector<ChartMarker> markers;
    if (worst) {
        const double frac = view_fraction(*worst, zoom.first_frame, zoom.frame_count);
        markers.push_back({charts.marker_label, frac});
    }
    zoom.markers = markers;
    return append_chart(page, full_ids, "Full signal", full) &&
           append_chart(page, zoom_ids, "Detail around worst sample", zoom);
}
