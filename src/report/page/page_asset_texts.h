// The fixed texts behind the page assets. Each is a file under report/assets, which the build
// embeds by cmake/embed_assets.cmake as the constant named "k" followed by the words of the file
// name (split at '_' and '.'), each with a capital first letter: report/assets/chart_view.js is
// kChartViewJs. The files hold exactly the bytes the pages carry, so any comment in them is also
// in every page; what each one holds is said here instead.
#pragma once

#include <string_view>

// The style sheet in the order it is written. First the tokens (CSS custom properties): colours
// and fonts of the light theme on :root, the dark theme's colours under data-theme="dark", and the
// same dark colours again for a reader who prefers a dark colour scheme and has not chosen a theme,
// so the colours always match the effective theme that the toggle button reports.
extern const std::string_view kThemeTokensCss;
// Page frame: document, top bar and theme toggle, signal row, KPI grid, note, navigation tabs and
// footer.
extern const std::string_view kPageCss;
// Cards: frame and badges, tiles, difference-rate bar, alignment gauge, tables, notes and the
// snapshot widget's tabs.
extern const std::string_view kCardsCss;
// Chart frames: scope and its head, zoom toolbar, trace toggle, reset button, zoom frame with its
// box, legend and chart notes.
extern const std::string_view kChartsCss;

// The theme toggle button: two 24 by 24 stroke icons in currentColor; the style sheet shows the
// moon until the script marks the button with data-icon="sun".
extern const std::string_view kThemeToggleHtml;
// The theme script: the effective theme, the saved choice and the button's icon and label.
extern const std::string_view kThemeJs;

// The chart interaction script's pieces, in the order page_assets.cpp joins them into the body of
// one function. Each holds whole statements, so it can be read and checked on its own: the
// constants and view arithmetic (a view is a pair {start, end} in unit space, 0..1 of the chart's
// full range),
extern const std::string_view kChartViewJs;
// the SVG markup helpers and tick rules both chart kinds share,
extern const std::string_view kChartAxesJs;
// the redraw of a waveform envelope chart for a view,
extern const std::string_view kChartWaveformJs;
// the redraw of a spectral chart for a view,
extern const std::string_view kChartSpectralJs;
// and finding the charts, redrawing them and the wheel, drag, box-zoom, reset and trace-toggle
// handlers, ending with the call that starts everything.
extern const std::string_view kChartInteractionJs;

// The snapshot-tab script: a function expression, called by the page writer with the widget's id.
// A click on a tab selects every tab with the same data-snap-idx (active, aria-selected "true";
// the others lose active and get "false") and shows only the panel with that index. The file has
// no final newline, because the call follows the function directly.
extern const std::string_view kSnapshotTabsJs;

// The batch index page's style sheet: the filter controls, the sort buttons in the table head and
// the number, unset and error cells.
extern const std::string_view kBatchCss;
// The batch index page's table script: clicking a column's head sorts the rows by it (again to
// reverse; numbers by each cell's data-value, rows without one last), the text field and the
// verdict menu hide the rows that do not match and the count of shown rows follows.
extern const std::string_view kBatchTableJs;
