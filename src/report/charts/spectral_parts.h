// The pieces of the spectral chart, written in chart order by append_spectral_chart.
#pragma once

#include "report/charts/spectral_chart.h"
#include "report/page/text_buffer.h"

#include <span>
#include <string>
#include <vector>

// Step of the linear frequency scale's major lines for a top frequency `top_hz`, from the
// two-stage nice-number rule; 0 when `top_hz` is not above 0 (no lines).
double linear_tick_step(double top_hz);

// The labelled major frequencies of the grid, ascending, at most 16: 1, 2 and 5 times each power
// of ten between 20 Hz and the top on the log scale; multiples of the linear step on the linear
// scale.
std::vector<double> major_frequencies(double top_hz, FrequencyScale scale);

// Level lines every 20 dB, the frequency grid with its labels and the right-edge line.
bool append_spectral_grid(TextBuffer& page, const SpectralChartData& chart);

// A tier line as drawn and as listed in the data element.
struct TierLine {
    double db = 0.0;
    std::string text; // "noise floor %.0fdB", "low-level signal threshold %.0fdB", ...
};

// The set thresholds in drawing order: noise floor, low-level signal threshold, peak threshold.
std::vector<TierLine> tier_lines(const SpectralTierLines& tiers);

// Colour variable, dash and label alignment every tier line shares.
inline constexpr const char* kTierColour = "--gate";
inline constexpr const char* kTierDash = "4,3";
inline constexpr const char* kTierAlign = "start";

// The shaded tier bands and then the dashed tier `lines` with their labels.
bool append_tier_marks(TextBuffer& page, const SpectralTierLines& tiers,
                       std::span<const TierLine> lines);

// The fail marker (when the chart has one) and the labelled peaks.
bool append_fail_marker(TextBuffer& page, const SpectralChartData& chart);
bool append_peak_labels(TextBuffer& page, const SpectralChartData& chart);

// The elements naming both spectra in the data element: `dut` is null when there is no DUT.
struct SpectralTraceIds {
    std::string ref;
    const std::string* dut = nullptr;
};

// The JSON data element "sx-spectral-data<suffix>".
bool append_spectral_data(TextBuffer& page, const SpectralChartData& chart, const char* suffix,
                          std::span<const TierLine> tiers, const SpectralTraceIds& traces);
