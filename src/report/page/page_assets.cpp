// The page assets appended verbatim by every page writer. Their texts are the files under
// report/assets; written here are only the elements around them, the joins between the chart
// script's pieces and the snapshot widget's id.
#include "report/page/page_assets.h"

#include "report/page/page_asset_texts.h"

#include <string_view>

namespace {

bool append_asset(TextBuffer& page, std::string_view text) {
    return text_append_bytes(page, text.data(), text.size());
}

} // namespace

bool append_style_sheet(TextBuffer& page) {
    return text_append(page, "<style>\n") && append_asset(page, kThemeTokensCss) &&
           append_asset(page, kPageCss) && append_asset(page, kCardsCss) &&
           append_asset(page, kChartsCss) && text_append(page, "</style>\n");
}

bool append_theme_toggle(TextBuffer& page) {
    return append_asset(page, kThemeToggleHtml);
}

bool append_theme_script(TextBuffer& page) {
    return text_append(page, "<script>\n") && append_asset(page, kThemeJs) &&
           text_append(page, "</script>\n");
}

// The pieces run as the body of one strict-mode function, so the names each declares reach the
// later pieces without becoming globals of the page; a blank line separates them.
bool append_chart_script(TextBuffer& page) {
    return text_append(page, "<script>\n(function () {\n  'use strict';\n") &&
           append_asset(page, kChartViewJs) && text_append(page, "\n") &&
           append_asset(page, kChartAxesJs) && text_append(page, "\n") &&
           append_asset(page, kChartWaveformJs) && text_append(page, "\n") &&
           append_asset(page, kChartSpectralJs) && text_append(page, "\n") &&
           append_asset(page, kChartInteractionJs) && text_append(page, "})();\n</script>\n");
}

// The id is passed as a JavaScript string literal; the JSON escape keeps quotes and backslashes
// from ending it early.
bool append_snapshot_tab_script(TextBuffer& page, const char* widget_id) {
    return text_append(page, "<script>\n") && append_asset(page, kSnapshotTabsJs) &&
           text_append(page, "(\"") && text_append_json(page, widget_id) &&
           text_append(page, "\");\n</script>\n");
}

bool append_batch_style_sheet(TextBuffer& page) {
    return text_append(page, "<style>\n") && append_asset(page, kBatchCss) &&
           text_append(page, "</style>\n");
}

bool append_batch_table_script(TextBuffer& page) {
    return text_append(page, "<script>\n") && append_asset(page, kBatchTableJs) &&
           text_append(page, "</script>\n");
}
