// The JSON data element of the waveform envelope chart: the plot geometry, the scale, both
// traces' 4096 columns and the failure markers.
#include "report/chart_json.h"
#include "report/chart_scales.h"
#include "report/envelope_parts.h"

#include <span>

namespace {

// "{" min, max and valid "}"; null for an absent trace.
bool append_trace(JsonOut out, const Envelope* envelope) {
    if (envelope == nullptr) return json_raw(out, "null");
    return json_raw(out, "{") && json_key(out, "min") && json_fixed_array(out, envelope->min, 4) &&
           json_next_key(out, "max") && json_fixed_array(out, envelope->max, 4) &&
           json_next_key(out, "valid") && json_flag_array(out, envelope->valid) &&
           json_raw(out, "}");
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
bool append_envelope_data(TextBuffer& page, const EnvelopeView& view, const Envelope& ref,
                          const Envelope* dut) {
    const JsonOut out = text_json_out(page);
    return append_chart_data_open(page, "sx-envelope-data", view.id_suffix, kEnvelopeArea) &&
           append_view(out, view) && json_next_key(out, "ref") && append_trace(out, &ref) &&
           json_next_key(out, "dut") && append_trace(out, dut) &&
           append_markers(out, view.markers) && json_raw(out, "}</script>\n");
}
