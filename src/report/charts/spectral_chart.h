// The spectral chart: the magnitude spectrum of one frame of the reference and optionally the DUT
// on a log or linear frequency scale, with tier bands and lines, a fail marker and labelled peaks.
// The server writes the chart's frame and marks and the JSON data the page script draws both
// spectra from at load.
#pragma once

#include "audio/audio.h"
#include "report/charts/chart_data_sets.h"
#include "report/page/text_buffer.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

enum class FrequencyScale { log, linear };

// The tier thresholds drawn as dashed lines; an unset one is left out (and written as null).
struct SpectralTierLines {
    std::optional<double> noise_floor_db;
    std::optional<double> low_level_db;
    std::optional<double> peak_db;
};

struct SpectralFailMarker {
    double freq_hz = 0.0;
    double diff_db = 0.0;
};

struct SpectralPeakLabel {
    double freq_hz = 0.0;
    double level_db = 0.0;
    int tier = 0;
};

struct SpectralChartData {
    std::span<const double> ref_db; // N/2 levels
    std::span<const double> dut_db; // empty: no DUT trace
    double bin_hz = 0.0;
    double nyquist_hz = 0.0;
    FrequencyScale scale = FrequencyScale::log;
    const char* id_suffix = ""; // the linear scale adds "-linear" itself
    SpectralTierLines tiers;
    std::optional<SpectralFailMarker> fail;
    std::span<const SpectralPeakLabel> peaks;
    ChartDataSets* data_sets = nullptr; // the page's embedded traces; the chart fails without
};

// The SVG, the elements of spectra the page has not embedded yet, and the data element
// "sx-spectral-data<suffix>".
bool append_spectral_chart(TextBuffer& page, const SpectralChartData& chart);

// The note that replaces a spectral chart when the overlap is too short for a frame.
bool append_spectral_chart_note(TextBuffer& page);
