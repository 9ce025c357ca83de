// The page assets appended verbatim by every page writer: the style sheet built from the theme
// tokens and the layout rules, the theme toggle, the theme script, the chart interaction script
// and the snapshot-tab script.
#include "report/page_assets.h"

#include "report/page_asset_texts.h"

namespace {

// "<selector> {\n", one "  --name: value;\n" line per token that `pick` gives a value, "}\n".
template <typename Pick>
bool append_token_block(TextBuffer& page, const char* selector, Pick pick) {
    if (!text_append_format(page, "%s {\n", selector)) return false;
    for (const ThemeToken& token : theme_tokens()) {
        const char* value = pick(token);
        if (value != nullptr && !text_append_format(page, "  %s: %s;\n", token.name, value)) {
            return false;
        }
    }
    return text_append(page, "}\n");
}

// The light tokens on :root and the dark ones under data-theme="dark". A page whose reader prefers
// a dark colour scheme and has not chosen a theme is drawn dark too, so the colours always match
// the effective theme that the toggle button reports.
bool append_theme_tokens(TextBuffer& page) {
    const auto light = [](const ThemeToken& token) { return token.light; };
    const auto dark = [](const ThemeToken& token) { return token.dark; };
    return append_token_block(page, ":root", light) &&
           append_token_block(page, ":root[data-theme=\"dark\"]", dark) &&
           text_append(page, "@media (prefers-color-scheme: dark) {\n") &&
           append_token_block(page, ":root:not([data-theme=\"light\"])", dark) &&
           text_append(page, "}\n");
}

} // namespace

bool append_style_sheet(TextBuffer& page) {
    return text_append(page, "<style>\n") && append_theme_tokens(page) &&
           text_append(page, kStyleRulesPage) && text_append(page, kStyleRulesCards) &&
           text_append(page, kStyleRulesCharts) && text_append(page, "</style>\n");
}

bool append_theme_toggle(TextBuffer& page) {
    return text_append(page, kThemeToggleMarkup);
}

bool append_theme_script(TextBuffer& page) {
    return text_append(page, kThemeScript);
}

bool append_chart_script(TextBuffer& page) {
    return text_append(page, kChartScriptView) && text_append(page, kChartScriptAxes) &&
           text_append(page, kChartScriptWaveform) && text_append(page, kChartScriptSpectral) &&
           text_append(page, kChartScriptInteraction);
}

// The id is written as a JavaScript string literal; the JSON escape keeps quotes and backslashes
// from ending it early.
bool append_snapshot_tab_script(TextBuffer& page, const char* widget_id) {
    return text_append(page, kSnapshotTabScriptHead) && text_append_json(page, widget_id) &&
           text_append(page, kSnapshotTabScriptTail);
}
