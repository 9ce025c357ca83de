// The fixed texts every page carries, appended verbatim: the style sheet with both colour themes,
// the theme toggle button, the theme script, the chart interaction script (zoom, pan, box zoom,
// reset, trace toggle, client-side redraw of both chart kinds) and the snapshot-tab script.
#pragma once

#include "report/page/text_buffer.h"

// "<style>...</style>\n": tokens of the light theme on :root, the dark theme under
// [data-theme="dark"], and the rules for every class the page writers emit.
bool append_style_sheet(TextBuffer& page);

// The theme toggle button (id "themeToggle") with its sun and moon icons.
bool append_theme_toggle(TextBuffer& page);

// "<script>...</script>\n": applies a saved theme (storage key "sonalyx-report-theme"), keeps the
// button's icon and label in step, toggles and saves on click.
bool append_theme_script(TextBuffer& page);

// "<script>...</script>\n": makes every zoom-frame interactive from its chart data element.
bool append_chart_script(TextBuffer& page);

// "<script>...</script>\n" binding the tabs and panels of the snapshot widget `widget_id`.
bool append_snapshot_tab_script(TextBuffer& page, const char* widget_id);

// "<style>...</style>\n" with the batch index page's own rules, after the common style sheet.
bool append_batch_style_sheet(TextBuffer& page);

// "<script>...</script>\n": sorting and filtering of the batch index page's table.
bool append_batch_table_script(TextBuffer& page);
