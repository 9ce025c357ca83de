// The traces the page's charts draw, each embedded once. A page draws the same envelope in
// several charts (the overview and the full views of the time-domain and impulse cards) and
// detail views and spectra often coincide, so every distinct envelope trace and spectrum gets one
// JSON element of its own, "sx-envelope-set-<n>" or "sx-spectrum-set-<n>", and each chart's data
// element names the elements of its traces. The page script draws the traces from them.
#pragma once

#include "dsp/dsp.h"
#include "report/page/text_buffer.h"

#include <span>
#include <string>
#include <vector>

// What the page has embedded so far, in element number order. The pointed-to data belongs to the
// page's figures and outlives the page build.
struct ChartDataSets {
    std::vector<const Envelope*> envelopes;
    std::vector<std::span<const double>> spectra;
};

// Puts into `id` the element that holds a trace equal to `envelope`, appending that element
// ("<script type=\"application/json\" id=\"sx-envelope-set-<n>\">{\"min\":[...],\"max\":[...],
// \"valid\":[...]}</script>\n", min and max "%.4f") first when the page has none yet.
bool append_envelope_set(TextBuffer& page, ChartDataSets& sets, const Envelope& envelope,
                         std::string& id);
// The same for a spectrum: "sx-spectrum-set-<n>" holding the levels as "%.2f" in one array.
bool append_spectrum_set(TextBuffer& page, ChartDataSets& sets, std::span<const double> levels,
                         std::string& id);
