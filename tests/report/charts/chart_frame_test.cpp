// The scope markup around charts: both frame kinds, the overview scope, the trace toggle and the
// two legends.
#include "report/charts/chart_frame.h"

#include "text_buffer_fixture.h"

#include <string>

namespace {

using ChartFrameTest = TextBufferTest;

const std::string kHint = "<div class=\"scope-head\"><span class=\"title\">%TITLE%</span>\n"
                          "<div class=\"zoom-toolbar\"><span class=\"zoom-hint\">scroll to zoom "
                          "&middot; drag to pan &middot; shift+drag to box-zoom</span>";

std::string with_title(const std::string& title) {
    std::string text = kHint;
    text.replace(text.find("%TITLE%"), 7, title);
    return text;
}

TEST_F(ChartFrameTest, OverviewWaveformWithToggleAndTwoEntryLegend) {
    ChartFrame frame;
    frame.kind = ChartKind::waveform;
    frame.frame_id = "sx-envelope-frame-ch0";
    frame.title = "Full signal";
    frame.overview = true;
    frame.trace_toggle = true;
    ASSERT_TRUE(append_chart_frame_open(buffer, frame));
    ASSERT_TRUE(text_append(buffer, "<svg/>"));
    ASSERT_TRUE(append_chart_frame_close(buffer, frame));
    EXPECT_EQ(content(),
              "<div>\n<div class=\"scope overview\">\n" + with_title("Full signal") +
                  "<div class=\"trace-toggle\" data-target=\"sx-envelope-frame-ch0\"><button "
                  "type=\"button\" data-mode=\"both\" class=\"active\">Both</button><button "
                  "type=\"button\" data-mode=\"ref\">Ref</button><button type=\"button\" "
                  "data-mode=\"dut\">DUT</button></div>"
                  "<button type=\"button\" class=\"zoom-reset\" "
                  "data-zoom-target=\"sx-envelope-frame-ch0\">Reset zoom</button></div>\n</div>\n"
                  "<div class=\"zoom-frame\" data-zoom-kind=\"waveform\" "
                  "id=\"sx-envelope-frame-ch0\">\n<svg/><div class=\"zoom-box\" hidden></div>\n"
                  "</div>\n<div class=\"legend-row\">\n<span><span class=\"sw\" "
                  "style=\"background:var(--ref)\"></span>Reference</span>\n<span><span "
                  "class=\"sw\" style=\"background:var(--dut)\"></span>Device under test</span>\n"
                  "</div>\n</div>\n</div>\n");
}

TEST_F(ChartFrameTest, SpectralWithoutToggleAndSingleSignalLegend) {
    ChartFrame frame;
    frame.kind = ChartKind::spectral;
    frame.frame_id = "sx-spectral-linear-frame";
    frame.title = "Snapshot 1 &middot; 0:01.5 &middot; Pass";
    frame.legend = ChartLegend::single_signal;
    ASSERT_TRUE(append_chart_frame_open(buffer, frame));
    ASSERT_TRUE(append_chart_frame_close(buffer, frame));
    EXPECT_EQ(content(),
              "<div class=\"scope\">\n" + with_title("Snapshot 1 &middot; 0:01.5 &middot; Pass") +
                  "<button type=\"button\" class=\"zoom-reset\" "
                  "data-zoom-target=\"sx-spectral-linear-frame\">Reset zoom</button></div>\n"
                  "</div>\n<div class=\"zoom-frame\" data-zoom-kind=\"spectral\" "
                  "id=\"sx-spectral-linear-frame\">\n<div class=\"zoom-box\" hidden></div>\n"
                  "</div>\n<div class=\"legend-row\">\n<span><span class=\"sw\" "
                  "style=\"background:var(--ref)\"></span>Signal</span>\n</div>\n</div>\n");
}

// The two-entry legend closes one element more than the scope: outside a snapshot panel the
// frame opens a plain wrapper for it, inside one the panel is that element.
TEST_F(ChartFrameTest, TwoEntryLegendWrapsTheScopeOutsideSnapshotPanels) {
    ChartFrame frame;
    frame.kind = ChartKind::spectral;
    frame.frame_id = "f";
    ASSERT_TRUE(append_chart_frame_open(buffer, frame));
    EXPECT_EQ(content().rfind("<div>\n<div class=\"scope\">\n<div class=\"scope-head\">", 0), 0U);
    text_buffer_free(buffer);
    frame.inside_snapshot_panel = true;
    ASSERT_TRUE(append_chart_frame_open(buffer, frame));
    EXPECT_EQ(content().rfind("<div class=\"scope\">\n<div class=\"scope-head\">", 0), 0U);
    EXPECT_EQ(content().find("trace-toggle"), std::string::npos);
    EXPECT_NE(content().find("data-zoom-kind=\"spectral\" id=\"f\">\n"), std::string::npos);
}

} // namespace
