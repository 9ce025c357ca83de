// The markup around every chart: the scope with its head (title, zoom hint, optional trace toggle,
// reset button), the zoom frame holding the SVG, the zoom box and the legend.
#pragma once

#include "report/page/text_buffer.h"

enum class ChartKind { waveform, spectral };
enum class ChartLegend { reference_and_dut, single_signal };

struct ChartFrame {
    ChartKind kind = ChartKind::waveform;
    const char* frame_id = ""; // id of the zoom-frame element, e.g. "sx-spectral-frame-ch1"
    const char* title = "";    // shown in the scope head (HTML, written as given)
    bool overview = false; // "<div class=\"scope overview\">" instead of "<div class=\"scope\">"
    bool trace_toggle = false; // the Both/Ref/DUT buttons (two-trace charts)
    ChartLegend legend = ChartLegend::reference_and_dut;
    // The two-entry legend's ending closes one element more than the frame opens: inside a
    // snapshot panel that is the panel; everywhere else the frame opens a plain <div> for it, so
    // the page stays balanced.
    bool inside_snapshot_panel = false;
};

// From the scope's opening tag to the zoom-frame's opening tag; the chart's SVG and data element
// follow.
bool append_chart_frame_open(TextBuffer& page, const ChartFrame& frame);
// The zoom box, the end of the zoom frame, the legend and the end of the scope.
bool append_chart_frame_close(TextBuffer& page, const ChartFrame& frame);
