#include "report/page/page_assets.h"
#include "report/page/plot_page.h"

#include "page_text.h"
#include "support/temp_dir.h"
#include "written_file.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string error_page(const char* message) {
    const TempDir dir;
    const std::string path = dir.file("error.html");
    EXPECT_TRUE(write_to_path(path, [&](FileReplacement& f) {
        return write_error_page(f, "/refs/a.wav", "C:\\duts\\b.wav", message);
    }));
    return read_text_file(path);
}

std::string asset(bool (*append)(TextBuffer&)) {
    return render_text(append);
}

TEST(ErrorPage, FixedTitleStyleSheetAndReportTopBar) {
    const std::string page = error_page("failed");
    EXPECT_EQ(page.rfind("<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                         "<meta name=\"viewport\" content=\"width=device-width, "
                         "initial-scale=1\">\n<title>Run Error -- Sonalyx Report</title>\n" +
                             asset(append_style_sheet) +
                             "</head>\n<body>\n<div class=\"dash\">\n<div class=\"topbar\">\n",
                         0),
              0u);
    EXPECT_NE(page.find("<span class=\"name\">Sonalyx Report</span>"), std::string::npos);
    EXPECT_NE(page.find(std::string("<b>v") + kSonalyxVersion + "</b></div>\n" +
                        asset(append_theme_toggle) + "</div>\n</div>\n<div class=\"signal-row\">"),
              std::string::npos);
}

TEST(ErrorPage, SignalRowVerdictAndErrorCard) {
    const std::string page = error_page("DUT sample rate 44100 Hz differs");
    EXPECT_NE(
        page.find("<div class=\"signal-row\">\n<div class=\"signal-id\">\n<span "
                  "class=\"tag\">Reference</span>\n<span "
                  "class=\"fname\">/<wbr>refs/<wbr>a.wav</span>\n</div>\n<div class=\"signal-id "
                  "dut\">\n<span class=\"tag\">Device Under Test</span>\n<span "
                  "class=\"fname\">C:\\<wbr>duts\\<wbr>b.wav</span>\n</div>\n</div>\n"
                  "<div class=\"kpi-grid\">\n<div class=\"kpi verdict\">\n<div class=\"k\">Overall "
                  "Verdict</div>\n<div class=\"v\">ERROR</div>\n</div>\n</div>\n"
                  "<section class=\"card\" id=\"run-error\">\n<div class=\"card-head\">\n<div "
                  "class=\"htext\"><h3>Run Error</h3><span class=\"sub\">no checks were "
                  "run</span></div>\n</div>\n<div class=\"card-body\">\n<p "
                  "class=\"run-error\">DUT sample rate 44100 Hz differs</p>\n<p>Sonalyx could not "
                  "complete this comparison, so this report has no PASS or FAIL result for these "
                  "files. Fix the cause named above and run the comparison again.</p>\n</div>\n"
                  "</section>\n<footer>\n<div class=\"footer-row-top\">\n"),
        std::string::npos);
}

TEST(ErrorPage, MessageIsHtmlEscaped) {
    const std::string page = error_page("bad <b>header</b> & \"size\"");
    EXPECT_NE(page.find("<p class=\"run-error\">bad &lt;b&gt;header&lt;/b&gt; &amp; "
                        "&quot;size&quot;</p>\n"),
              std::string::npos);
    EXPECT_EQ(page.find("<b>header"), std::string::npos);
}

TEST(ErrorPage, FooterWithoutTesterRowThenOnlyTheThemeScript) {
    const std::string page = error_page("failed");
    const std::string footer_start =
        "<footer>\n<div class=\"footer-row-top\">\n<span><b>Sonalyx</b> v" +
        std::string(kSonalyxVersion) + "</span>\n<span>report generated ";
    const std::size_t footer = page.find(footer_start);
    ASSERT_NE(footer, std::string::npos);
    const std::size_t end = page.find(" UTC</span>\n</div>\n</footer>\n</div>\n", footer);
    ASSERT_NE(end, std::string::npos);
    EXPECT_EQ(end - footer - footer_start.size(), 19u); // "%Y-%m-%d %H:%M:%S"
    EXPECT_TRUE(page.ends_with(" UTC</span>\n</div>\n</footer>\n</div>\n" +
                               asset(append_theme_script) + "</body>\n</html>\n"));
    EXPECT_EQ(page.find(asset(append_chart_script)), std::string::npos);
    EXPECT_EQ(count_of(page, "footer-row-tester\">"), 0u);
    EXPECT_EQ(count_of(page, "<div"), count_of(page, "</div>"));
}

TEST(ErrorPage, AFailedWriteFails) {
    FileReplacement full;
    if (!open_full_device(full)) GTEST_SKIP() << "no /dev/full";
    EXPECT_FALSE(write_error_page(full, "a.wav", "b.wav", "failed"));
}

} // namespace
