// The JSON data element of the waveform envelope chart: the plot geometry, the scale, both
// traces' 4096 columns and the failure markers.
#include "report/chart_json.h"
#include "report/chart_scales.h"
#include "report/envelope_parts.h"

#include <span>

namespace {

// Each flag is 0 or 1, so its "%d" is the one digit.
bool append_valid_array(TextBuffer& page, std::span<const std::uint8_t> valid) {
    if (!text_append(page, "\"valid\":[")) return false;
    for (std::size_t i = 0; i < valid.size(); ++i) {
        if ((i > 0 && !text_append_char(page, ',')) ||
            !text_append_char(page, valid[i] != 0 ? '1' : '0')) {
            return false;
        }
    }
    return text_append(page, "]");
}

// "{" min, max and valid separated by commas, "}"; null for an absent trace.
bool append_trace(TextBuffer& page, const Envelope* envelope) {
    if (envelope == nullptr) return text_append(page, "null");
    return text_append(page, "{") && append_json_number_array(page, "min", envelope->min, 4) &&
           text_append(page, ",") && append_json_number_array(page, "max", envelope->max, 4) &&
           text_append(page, ",") && append_valid_array(page, envelope->valid) &&
           text_append(page, "}");
}

bool append_markers(TextBuffer& page, std::span<const ChartMarker> markers) {
    if (!text_append(page, ",\"markers\":[")) return false;
    for (std::size_t i = 0; i < markers.size(); ++i) {
        if (!text_append_format(page, "%s{\"label\":\"", i == 0 ? "" : ",") ||
            !text_append_json(page, markers[i].label.c_str()) ||
            !text_append_format(page, "\",\"frac\":%.6f}", markers[i].frac)) {
            return false;
        }
    }
    return text_append(page, "]}");
}

} // namespace

// totalFrames is the view's frame count: the columns the element carries span the view. A comma
// separates the "ref" and "dut" members so the element stays valid JSON.
bool append_envelope_data(TextBuffer& page, const EnvelopeView& view, const Envelope& ref,
                          const Envelope* dut) {
    return text_append_format(
               page,
               "<script type=\"application/json\" id=\"sx-envelope-data%s\">{\"chartLeft\":%.1f,"
               "\"chartRight\":%.1f,\"chartTop\":%.1f,\"chartBottom\":%.1f,\"sampleRate\":%u,"
               "\"totalFrames\":%ld,\"yScale\":\"%s\",\"dbMin\":%.1f,\"dbMax\":%.1f,",
               view.id_suffix, kEnvelopeArea.left, kEnvelopeArea.right, kEnvelopeArea.top,
               kEnvelopeArea.bottom, view.sample_rate, static_cast<long>(view.frame_count),
               view.scale == EnvelopeScale::db ? "db" : "amp", kChartDbMin, kChartDbMax) &&
           text_append(page, "\"ref\":") && append_trace(page, &ref) &&
           text_append(page, ",\"dut\":") && append_trace(page, dut) &&
           append_markers(page, view.markers) && text_append(page, "</script>\n");
}
