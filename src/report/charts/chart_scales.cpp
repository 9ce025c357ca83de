// Coordinate mappings of the waveform and spectral charts.
#include "report/charts/chart_scales.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPlotWidth = 932.0;

// The amplitude range of the linear waveform scale.
constexpr double kAmplitudeLimit = 1.2;

} // namespace

double envelope_column_x(std::size_t edge) {
    return 58.0 + kPlotWidth * static_cast<double>(edge) / static_cast<double>(kEnvelopeColumns);
}

double envelope_y(double value, EnvelopeScale scale) {
    if (scale == EnvelopeScale::db) {
        return (std::clamp(value, kChartDbMin, kChartDbMax) + 140.0) / -160.0 * 146.0 + 156.0;
    }
    return std::clamp(value, -kAmplitudeLimit, kAmplitudeLimit) / -1.2 * 73.0 + 83.0;
}

double envelope_marker_x(double frac) {
    return std::min(frac, 1.0) * kPlotWidth + 58.0;
}

double spectral_y(double level_db) {
    return (std::clamp(level_db, kChartDbMin, kChartDbMax) + 140.0) / -160.0 * 264.0 + 276.0;
}

double spectral_x(double freq_hz, double top_hz, FrequencyScale scale) {
    if (scale == FrequencyScale::linear) {
        return std::min(std::max(freq_hz, 0.0), top_hz) / top_hz * kPlotWidth + 58.0;
    }
    const double low = std::log10(kLogFrequencyMinHz);
    return (std::log10(freq_hz) - low) / (std::log10(top_hz) - low) * kPlotWidth + 58.0;
}
