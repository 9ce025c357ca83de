#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/cards/cards.h"
#include "report/charts/chart_frame.h"
#include "report/charts/envelope_chart.h"
#include "report/charts/overview_markers.h"

#include <span>
#include <string>
#include <vector>

namespace {

// One channel's waveform over the whole reference, the DUT drawn at its aligned position.
bool append_overview_chart(TextBuffer& page, const ReportInputs& in, unsigned channel,
                           std::span<const ChartMarker> markers) {
    const char* suffix = channel_suffix(in.ref.channels, channel);
    const std::string frame_id = std::string("sx-envelope-frame") + suffix;
    const std::string id_suffix = std::string("-overview") + suffix;
    ChartFrame frame;
    frame.kind = ChartKind::waveform;
    frame.frame_id = frame_id.c_str();
    frame.title = "Full signal";
    frame.overview = true;
    frame.trace_toggle = true;
    const WaveformFigure& figure = in.results.figures.full[channel];
    EnvelopeView view;
    view.ref = &figure.ref;
    view.dut = &figure.dut;
    view.sample_rate = in.ref.sample_rate;
    view.first_frame = figure.first_frame;
    view.frame_count = figure.frame_count;
    view.scale = EnvelopeScale::linear;
    view.id_suffix = id_suffix.c_str();
    view.title = "Full-file waveform overview";
    view.markers = markers;
    view.data_sets = in.chart_data;
    return append_chart_frame_open(page, frame) && append_envelope_chart(page, view) &&
           append_chart_frame_close(page, frame);
}

} // namespace

bool append_overview_card(TextBuffer& page, const ReportInputs& in) {
    const Badge badge{"info", "Reference Only"};
    const std::vector<ChartMarker> markers = overview_failure_markers(in.results, in.ref.frames);
    if (!append_card_open(page, "overview", "<h3>Signal Overview</h3>", &badge)) return false;
    const std::uint32_t channels = in.ref.channels;
    for (unsigned c = 0; c < gallery_blocks(channels); ++c) {
        // The markers are drawn on the first channel's chart only.
        const std::span<const ChartMarker> shown =
            c == 0 ? std::span<const ChartMarker>(markers) : std::span<const ChartMarker>();
        if (!append_gallery_heading(page, channels, c) ||
            !append_overview_chart(page, in, c, shown)) {
            return false;
        }
    }
    return append_card_close(page);
}
