// The pieces of the waveform envelope chart, written in chart order by append_envelope_chart.
#pragma once

#include "report/charts/envelope_chart.h"
#include "report/page/text_buffer.h"

#include <string>

// The horizontal grid with its value labels: every 20 dB, or every 0.2 of amplitude.
bool append_envelope_value_grid(TextBuffer& page, EnvelopeScale scale);

// The vertical grid: five major divisions labelled with their time, three minor lines between
// neighbouring major ones.
bool append_envelope_time_grid(TextBuffer& page, const EnvelopeView& view);

// The JSON data element "sx-envelope-data<suffix>" the page script draws from, naming the
// elements of its traces: `dut_id` is null when there is no DUT trace.
bool append_envelope_data(TextBuffer& page, const EnvelopeView& view, const std::string& ref_id,
                          const std::string* dut_id);
