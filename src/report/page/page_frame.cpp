// The document head, the top bar with the brand glyph and the signal row's path blocks.
#include "report/page/page_frame.h"

#include "report/page/page_assets.h"
#include "results/results.h"

namespace {

// A magnifying glass over a signal trace, drawn in white strokes without fill.
constexpr const char* kBrandGlyph =
    "<svg viewBox=\"0 0 24 24\" width=\"24\" height=\"24\" fill=\"none\" stroke=\"white\" "
    "aria-hidden=\"true\">"
    "<circle cx=\"10\" cy=\"10\" r=\"6.3\" stroke-width=\"1.7\"/>"
    "<polyline points=\"4.6,10 6.4,10 7.8,6.5 9.6,13.5 11.2,7 12.6,12 14.4,12\" "
    "stroke-width=\"1.8\" stroke-linecap=\"round\" stroke-linejoin=\"round\"/>"
    "<line x1=\"14.46\" y1=\"14.46\" x2=\"19.6\" y2=\"19.6\" stroke-width=\"2.2\" "
    "stroke-linecap=\"round\"/>"
    "</svg>";

} // namespace

bool append_page_open(TextBuffer& page, std::string_view title_text, const char* title_suffix) {
    const std::string title(title_text);
    return text_append(page,
                       "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, "
                       "initial-scale=1\">\n<title>") &&
           text_append_html(page, title.c_str()) && text_append(page, title_suffix) &&
           text_append(page, "</title>\n") && append_style_sheet(page) &&
           text_append(page, "</head>\n<body>\n<div class=\"dash\">\n");
}

bool append_top_bar(TextBuffer& page, const char* name) {
    return text_append(page,
                       "<div class=\"topbar\">\n<div class=\"brand\">\n<span class=\"glyph\">") &&
           text_append(page, kBrandGlyph) &&
           text_append_format(page, "</span>\n<span class=\"name\">%s</span>\n</div>\n", name) &&
           text_append(page, "<div class=\"right\">\n<div class=\"meta\">") &&
           text_append_format(page, "<b>v%s</b></div>\n", kSonalyxVersion) &&
           append_theme_toggle(page) && text_append(page, "</div>\n</div>\n");
}

bool append_signal_paths(TextBuffer& page, const char* ref_path, const char* dut_path) {
    return text_append(page, "<div class=\"signal-row\">\n<div class=\"signal-id\">\n"
                             "<span class=\"tag\">Reference</span>\n<span class=\"fname\">") &&
           text_append_html_path(page, ref_path) &&
           text_append(page,
                       "</span>\n</div>\n<div class=\"signal-id dut\">\n"
                       "<span class=\"tag\">Device Under Test</span>\n<span class=\"fname\">") &&
           text_append_html_path(page, dut_path) && text_append(page, "</span>\n</div>\n");
}
