// The fixed texts behind the page assets, each kept in its own file: the colour and font tokens of
// both themes, the layout rules of the style sheet, the theme toggle markup, the theme script, the
// parts of the chart interaction script and the two halves of the snapshot-tab script.
#pragma once

#include <span>

// One CSS custom property of the page theme. `dark` is null when the dark theme keeps the light
// value.
struct ThemeToken {
    const char* name;
    const char* light;
    const char* dark;
};

// Colour tokens in the order they are declared, then the three font tokens (light theme only).
std::span<const ThemeToken> theme_tokens();

// Layout rules for every class the page writers emit (everything after the token blocks).
extern const char kStyleRulesPage[];
extern const char kStyleRulesCards[];
extern const char kStyleRulesCharts[];

extern const char kThemeToggleMarkup[];
extern const char kThemeScript[];

// The chart interaction script in the order it is written into one script element: the constants
// and view arithmetic, the shared SVG and axis helpers, the waveform redraw, the spectrum redraw,
// and the interaction wiring that starts everything.
extern const char kChartScriptView[];
extern const char kChartScriptAxes[];
extern const char kChartScriptWaveform[];
extern const char kChartScriptSpectral[];
extern const char kChartScriptInteraction[];

// The snapshot-tab script is written around the widget's id as a JavaScript string.
extern const char kSnapshotTabScriptHead[];
extern const char kSnapshotTabScriptTail[];
