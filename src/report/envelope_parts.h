// The pieces of the waveform envelope chart, written in chart order by append_envelope_chart.
#pragma once

#include "report/envelope_chart.h"
#include "report/text_buffer.h"

// Which trace a shape draws: its colour variable, fill opacity and data-trace name.
struct EnvelopeTrace {
    const char* colour;
    double opacity;
    const char* name;
};

inline constexpr EnvelopeTrace kEnvelopeRefTrace{"--ref-trace", 0.85, "ref"};
inline constexpr EnvelopeTrace kEnvelopeDutTrace{"--dut-trace", 0.55, "dut"};

// One trace as a filled path: the outline of every piece's upper edge, and the lower edge of the
// piece that reaches the last column only.
bool append_envelope_shape(TextBuffer& page, const Envelope& envelope, EnvelopeScale scale,
                           const EnvelopeTrace& trace);

// The horizontal grid with its value labels: every 20 dB, or every 0.2 of amplitude.
bool append_envelope_value_grid(TextBuffer& page, EnvelopeScale scale);

// The vertical grid: five major divisions labelled with their time, three minor lines between
// neighbouring major ones.
bool append_envelope_time_grid(TextBuffer& page, const EnvelopeView& view);

// The JSON data element "sx-envelope-data<suffix>" the page script redraws from; `dut` is null
// when there is no DUT trace.
bool append_envelope_data(TextBuffer& page, const EnvelopeView& view, const Envelope& ref,
                          const Envelope* dut);
