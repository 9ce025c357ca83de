// One spectrum of the spectral chart as a polyline.
#include "report/chart_scales.h"
#include "report/spectral_parts.h"

// Bin k stands at k times the bin width; an empty spectrum gives an empty points list.
bool append_spectral_trace(TextBuffer& page, const SpectralChartData& chart,
                           std::span<const double> levels_db, const char* colour) {
    if (!text_append_format(page,
                            "<polyline fill=\"none\" stroke=\"var(%s)\" stroke-width=\"1.5\" "
                            "points=\"",
                            colour)) {
        return false;
    }
    for (std::size_t k = 0; k < levels_db.size(); ++k) {
        const double f = static_cast<double>(k) * chart.bin_hz;
        if (chart.scale == FrequencyScale::log && f < kLogFrequencyMinHz) continue;
        if (!text_append_point(page, "", spectral_x(f, chart.nyquist_hz, chart.scale),
                               spectral_y(levels_db[k]), 2)) {
            return false;
        }
    }
    return text_append(page, "\"/>\n");
}
