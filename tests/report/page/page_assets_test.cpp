// The theme toggle markup, the theme script, the chart interaction script and the snapshot-tab
// script as the page writers append them.
#include "page_text.h"

#include "report/page/page_assets.h"

#include <gtest/gtest.h>

#include <string>

namespace {

bool ends_with(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// One script element and nothing outside it.
void expect_single_script(const std::string& script) {
    EXPECT_EQ(script.rfind("<script>\n", 0), 0U);
    EXPECT_TRUE(ends_with(script, "</script>\n"));
    EXPECT_EQ(count_of(script, "<script"), 1U);
    EXPECT_EQ(count_of(script, "</script>"), 1U);
}

// The scripts work only from the page: they load nothing and write nothing to the console.
void expect_self_contained(const std::string& script) {
    for (const char* forbidden : {"console.", "fetch(", "XMLHttpRequest", "import(",
                                  "src=", "http://", "https://", "eval("}) {
        EXPECT_EQ(script.find(forbidden), std::string::npos) << forbidden;
    }
}

TEST(ThemeToggle, ButtonWithSunAndMoonIcons) {
    const std::string toggle = render_text([](TextBuffer& b) { return append_theme_toggle(b); });
    EXPECT_EQ(toggle.rfind("<button type=\"button\" class=\"theme-toggle\" id=\"themeToggle\" "
                           "aria-label=\"Switch to dark theme\">",
                           0),
              0U);
    EXPECT_TRUE(ends_with(toggle, "</button>\n"));
    EXPECT_EQ(count_of(toggle, "<svg class=\"ti-sun\" viewBox=\"0 0 24 24\" width=\"24\" "
                               "height=\"24\" fill=\"none\" stroke=\"currentColor\" "
                               "stroke-width=\"2\" stroke-linecap=\"round\" "
                               "stroke-linejoin=\"round\""),
              1U);
    EXPECT_EQ(count_of(toggle, "<svg class=\"ti-moon\" viewBox=\"0 0 24 24\" width=\"24\" "
                               "height=\"24\" fill=\"none\" stroke=\"currentColor\" "
                               "stroke-width=\"2\" stroke-linecap=\"round\" "
                               "stroke-linejoin=\"round\""),
              1U);
    EXPECT_EQ(count_of(toggle, "</svg>"), 2U);
}

TEST(ThemeScript, StorageKeyLabelsAndIcons) {
    const std::string script = render_text([](TextBuffer& b) { return append_theme_script(b); });
    expect_single_script(script);
    expect_self_contained(script);
    EXPECT_EQ(count_of(script, "'sonalyx-report-theme'"), 1U);
    EXPECT_NE(script.find("'Switch to light theme'"), std::string::npos);
    EXPECT_NE(script.find("'Switch to dark theme'"), std::string::npos);
    EXPECT_NE(script.find("'(prefers-color-scheme: dark)'"), std::string::npos);
    EXPECT_NE(script.find("getElementById('themeToggle')"), std::string::npos);
    // Only the two theme names are accepted from storage or the root attribute.
    EXPECT_NE(script.find("return value === 'dark' || value === 'light';"), std::string::npos);
}

TEST(ChartScript, Constants) {
    const std::string script = render_text([](TextBuffer& b) { return append_chart_script(b); });
    EXPECT_NE(script.find("var VIEW_WIDTH_PX = 1000;"), std::string::npos);
    EXPECT_NE(script.find("var MIN_SPAN_FRAC = 0.002;"), std::string::npos);
    EXPECT_NE(script.find("var AMP_MAX = 1.2;"), std::string::npos);
    EXPECT_NE(script.find("var WHEEL_ZOOM_RATE = 0.0015;"), std::string::npos);
    EXPECT_NE(script.find("var BOX_MIN_PX = 4;"), std::string::npos);
    EXPECT_NE(script.find("var BOX_MIN_SPAN = 0.0005;"), std::string::npos);
    EXPECT_NE(script.find("var ENVELOPE_COLUMNS = 4096;"), std::string::npos);
}

TEST(ChartScript, OneSelfContainedScriptReadingTheChartElements) {
    const std::string script = render_text([](TextBuffer& b) { return append_chart_script(b); });
    expect_single_script(script);
    expect_self_contained(script);
    for (const char* piece :
         {"'.zoom-frame[data-zoom-kind]'", "'sx-envelope-svg'", "'sx-envelope-data'",
          "'sx-spectral-svg'", "'sx-spectral-data'", "'.zoom-reset[data-zoom-target]'",
          "'.trace-toggle[data-target]'", "'data-trace-mode'", "'.zoom-box'", "'dblclick'",
          "'wheel'", "{ passive: false }", "--ref-trace", "--dut-trace"}) {
        EXPECT_NE(script.find(piece), std::string::npos) << piece;
    }
}

TEST(ChartScript, RibbonOpacitiesMatchTheServerDrawing) {
    const std::string script = render_text([](TextBuffer& b) { return append_chart_script(b); });
    EXPECT_NE(script.find("{ key: 'ref', colour: '--ref-trace', opacity: '0.85' }"),
              std::string::npos);
    EXPECT_NE(script.find("{ key: 'dut', colour: '--dut-trace', opacity: '0.55' }"),
              std::string::npos);
}

TEST(SnapshotTabScript, BoundToTheWidgetId) {
    const std::string script = render_text(
        [](TextBuffer& b) { return append_snapshot_tab_script(b, "sx-snap-widget-ch1"); });
    expect_single_script(script);
    expect_self_contained(script);
    EXPECT_TRUE(ends_with(script, "})(\"sx-snap-widget-ch1\");\n</script>\n"));
    EXPECT_NE(script.find("document.getElementById(widgetId)"), std::string::npos);
    EXPECT_NE(script.find("'.snap-tab[data-snap-idx]'"), std::string::npos);
    EXPECT_NE(script.find("'.snap-panel[data-snap-idx]'"), std::string::npos);
    EXPECT_NE(script.find("tab.setAttribute('aria-selected', chosen ? 'true' : 'false');"),
              std::string::npos);
}

TEST(SnapshotTabScript, EachWidgetGetsItsOwnScript) {
    const std::string both = render_text([](TextBuffer& b) {
        return append_snapshot_tab_script(b, "sx-snap-widget-ch0") &&
               append_snapshot_tab_script(b, "sx-snap-widget-ch1");
    });
    EXPECT_EQ(count_of(both, "<script>"), 2U);
    EXPECT_EQ(count_of(both, "(\"sx-snap-widget-ch0\");"), 1U);
    EXPECT_EQ(count_of(both, "(\"sx-snap-widget-ch1\");"), 1U);
}

TEST(SnapshotTabScript, IdCannotEndTheStringEarly) {
    const std::string script =
        render_text([](TextBuffer& b) { return append_snapshot_tab_script(b, "a\"b\\c"); });
    EXPECT_TRUE(ends_with(script, "})(\"a\\\"b\\\\c\");\n</script>\n"));
}

} // namespace
