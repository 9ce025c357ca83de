// The coordinate mappings of both chart kinds: plot areas, the waveform's column edges and its
// linear and dB amplitude scales, and the spectral chart's dB scale and log or linear frequency
// scale. Values outside a scale's range are clamped to its edge.
#pragma once

#include "dsp/dsp.h"
#include "report/charts/chart_svg.h"
#include "report/charts/envelope_chart.h"
#include "report/charts/spectral_chart.h"

#include <cstddef>

inline constexpr PlotArea kEnvelopeArea{58.0, 990.0, 10.0, 156.0};
inline constexpr PlotArea kSpectralArea{58.0, 990.0, 12.0, 276.0};

// Levels are drawn between these two; every dB value is floored at the lower one before use.
inline constexpr double kChartDbMin = kDisplayFloorDb;
inline constexpr double kChartDbMax = 20.0;

// The lowest frequency the log frequency scale draws.
inline constexpr double kLogFrequencyMinHz = 20.0;

// x of the boundary `edge` between envelope columns: 58 + 932 edge / 4096 (edge 0 is the left end
// of column 0, edge i + 1 the right end of column i).
double envelope_column_x(std::size_t edge);

// y of an amplitude (clamped to +-1.2, 0 at y 83) or a level (clamped to -140..+20 dB).
double envelope_y(double value, EnvelopeScale scale);

// x of a marker at `frac` of the view; a fraction above 1 is drawn at the right edge.
double envelope_marker_x(double frac);

// y of a level on the spectral chart, clamped to -140..+20 dB.
double spectral_y(double level_db);

// x of `freq_hz` on a chart whose top frequency is `top_hz`. The log scale expects a frequency of
// at least 20 Hz (the caller leaves lower ones out); the linear scale clamps to 0..top.
double spectral_x(double freq_hz, double top_hz, FrequencyScale scale);
