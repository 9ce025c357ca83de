// The JSON data element of the waveform envelope chart: the plot geometry, the scale, the
// elements that hold both traces' 4096 columns, and the failure markers.
#include "report/charts/chart_json.h"
#include "report/charts/chart_scales.h"
#include "report/charts/envelope_parts.h"

#include <span>

namespace {

// The id of the element holding the trace, or null for an absent trace.
bool append_trace_id(JsonOut out, const std::string* id) {
    return id == nullptr ? json_raw(out, "null") : json_string(out, *id);
}

bool append_markers(JsonOut out, std::span<const ChartMarker> markers) {
    if (!json_next_key(out, "markers") || !json_raw(out, "[")) return false;
    for (std::size_t i = 0; i < markers.size(); ++i) {
        if (!json_separator(out, i) || !json_raw(out, "{") || !json_key(out, "label") ||
            !json_string(out, markers[i].label) || !json_next_key(out, "frac") ||
            !json_fixed(out, markers[i].frac, 6) || !json_raw(out, "}")) {
            return false;
        }
    }
    return json_raw(out, "]");
}

// The members between the plot area and the traces: sample rate, frames, scale and level range.
bool append_view(JsonOut out, const EnvelopeView& view) {
    return json_next_key(out, "sampleRate") && json_integer(out, view.sample_rate) &&
           json_next_key(out, "totalFrames") &&
           json_integer(out, static_cast<long>(view.frame_count)) && json_next_key(out, "yScale") &&
           json_string(out, view.scale == EnvelopeScale::db ? "db" : "amp") &&
           append_chart_level_range(out);
}

} // namespace

// totalFrames is the view's frame count: the columns the element carries span the view.
bool append_envelope_data(TextBuffer& page, const EnvelopeView& view, const std::string& ref_id,
                          const std::string* dut_id) {
    const JsonOut out = text_json_out(page);
    return append_chart_data_open(page, "sx-envelope-data", view.id_suffix, kEnvelopeArea) &&
           append_view(out, view) && json_next_key(out, "ref") && append_trace_id(out, &ref_id) &&
           json_next_key(out, "dut") && append_trace_id(out, dut_id) &&
           append_markers(out, view.markers) && json_raw(out, "}</script>\n");
}
