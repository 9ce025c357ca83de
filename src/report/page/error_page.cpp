#include "report/page/plot_page.h"

#include "report/page/page_assets.h"
#include "report/page/page_frame.h"
#include "report/page/page_output.h"

namespace {

bool append_error_verdict(TextBuffer& page) {
    return text_append(page, "<div class=\"kpi-grid\">\n<div class=\"kpi verdict\">\n<div "
                             "class=\"k\">Overall Verdict</div>\n<div "
                             "class=\"v\">ERROR</div>\n</div>\n</div>\n");
}

bool append_error_card(TextBuffer& page, const char* message) {
    return text_append(page, "<section class=\"card\" id=\"run-error\">\n<div "
                             "class=\"card-head\">\n<div class=\"htext\"><h3>Run Error</h3><span "
                             "class=\"sub\">no checks were run</span></div>\n</div>\n<div "
                             "class=\"card-body\">\n<p class=\"run-error\">") &&
           text_append_html(page, message) &&
           text_append(page, "</p>\n<p>Sonalyx could not complete this comparison, so this report "
                             "has no PASS or FAIL result for these files. Fix the cause named "
                             "above and run the comparison again.</p>\n</div>\n</section>\n");
}

// The error page has no charts, so it carries the theme script but not the chart script.
bool build_error_page(TextBuffer& page, const char* ref_path, const char* dut_path,
                      const char* message) {
    return append_page_open(page, "Run Error", " -- Sonalyx Report") &&
           append_top_bar(page, "Sonalyx Report") &&
           append_signal_paths(page, ref_path, dut_path) && text_append(page, "</div>\n") &&
           append_error_verdict(page) && append_error_card(page, message) &&
           append_footer(page, "report", nullptr) && text_append(page, "</div>\n") &&
           append_theme_script(page) && text_append(page, "</body>\n</html>\n");
}

} // namespace

bool write_error_page(FileReplacement& out, const char* ref_path, const char* dut_path,
                      const char* message) {
    TextBuffer page;
    text_buffer_init(page);
    const bool built = build_error_page(page, ref_path, dut_path, message);
    return finish_page(page, built, out);
}
