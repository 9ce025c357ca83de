// The waveform envelope chart: a view of one channel already reduced to 4096 min/max columns. The
// server writes the chart's frame (axes, grid, labels, failure markers) and the JSON data the
// page script draws the reference and optional DUT outlines from at load.
#pragma once

#include "dsp/dsp.h"
#include "report/charts/chart_data_sets.h"
#include "report/page/text_buffer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct ChartMarker {
    std::string label; // escaped when written
    double frac = 0.0; // position as a fraction 0..1 of the view
};

struct EnvelopeView {
    const Envelope* ref = nullptr;
    const Envelope* dut = nullptr; // no DUT trace when null
    std::uint32_t sample_rate = 0; // of the reference
    std::int64_t first_frame = 0;  // the view, in reference frames
    std::size_t frame_count = 0;
    EnvelopeScale scale = EnvelopeScale::linear;
    const char* id_suffix = ""; // appended to the svg and data element ids
    const char* title = "";     // the aria label: "Full-file waveform overview" or a detail view
    std::span<const ChartMarker> markers;
    std::optional<double> detail_frac;  // the dashed detail-position line, when given
    ChartDataSets* data_sets = nullptr; // the page's embedded traces; the chart fails without
};

// The SVG, the elements of traces the page has not embedded yet, and the data element
// "sx-envelope-data<suffix>".
bool append_envelope_chart(TextBuffer& page, const EnvelopeView& view);
