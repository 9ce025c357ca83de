// The scope markup around every chart: head with zoom hint, trace toggle and reset button, the
// zoom frame, the zoom box and the legend.
#include "report/charts/chart_frame.h"

namespace {

const char* zoom_kind(ChartKind kind) {
    return kind == ChartKind::spectral ? "spectral" : "waveform";
}

bool append_scope_head(TextBuffer& page, const ChartFrame& frame) {
    return text_append_format(page,
                              "<div class=\"scope-head\"><span class=\"title\">%s</span>\n"
                              "<div class=\"zoom-toolbar\"><span class=\"zoom-hint\">scroll to "
                              "zoom &middot; drag to pan &middot; shift+drag to box-zoom</span>",
                              frame.title) &&
           (!frame.trace_toggle ||
            text_append_format(page,
                               "<div class=\"trace-toggle\" data-target=\"%s\"><button "
                               "type=\"button\" data-mode=\"both\" class=\"active\">Both</button>"
                               "<button type=\"button\" data-mode=\"ref\">Ref</button><button "
                               "type=\"button\" data-mode=\"dut\">DUT</button></div>",
                               frame.frame_id)) &&
           text_append_format(page,
                              "<button type=\"button\" class=\"zoom-reset\" "
                              "data-zoom-target=\"%s\">Reset zoom</button></div>\n</div>\n",
                              frame.frame_id);
}

} // namespace

bool append_chart_frame_open(TextBuffer& page, const ChartFrame& frame) {
    const bool wrapper =
        frame.legend == ChartLegend::reference_and_dut && !frame.inside_snapshot_panel;
    return (!wrapper || text_append(page, "<div>\n")) &&
           text_append(page, frame.overview ? "<div class=\"scope overview\">\n"
                                            : "<div class=\"scope\">\n") &&
           append_scope_head(page, frame) &&
           text_append_format(page, "<div class=\"zoom-frame\" data-zoom-kind=\"%s\" id=\"%s\">\n",
                              zoom_kind(frame.kind), frame.frame_id);
}

// Both endings are written exactly as the page layout gives them: the two-entry legend of the
// analyze report closes one more element than the one-entry "Signal" legend of the plot page.
bool append_chart_frame_close(TextBuffer& page, const ChartFrame& frame) {
    const char* const entries =
        frame.legend == ChartLegend::single_signal
            ? "Signal</span>\n</div>\n</div>\n"
            : "Reference</span>\n<span><span class=\"sw\" style=\"background:var(--dut)\"></span>"
              "Device under test</span>\n</div>\n</div>\n</div>\n";
    return text_append(page, "<div class=\"zoom-box\" hidden></div>\n</div>\n"
                             "<div class=\"legend-row\">\n<span><span class=\"sw\" "
                             "style=\"background:var(--ref)\"></span>") &&
           text_append(page, entries);
}
