#include "report/cards/alignment_gauge.h"

#include <algorithm>
#include <array>

namespace {

struct GaugeBand {
    double top; // the band holds confidences up to and including this value
    double low;
    double high;
    double from_pct;
    double to_pct;
    const char* word_class;
    const char* word;
};

constexpr std::array<GaugeBand, 4> kBands = {{
    {0.7, -1.0, 0.7, 0.0, 20.0, "poor", "Poor"},
    {0.9, 0.7, 0.9, 20.0, 45.0, "fair", "Fair"},
    {0.97, 0.9, 0.97, 45.0, 75.0, "good", "Good"},
    {1.0, 0.97, 1.0, 75.0, 100.0, "excellent", "Excellent"},
}};

const GaugeBand& band_of(double q) {
    for (const GaugeBand& band : kBands)
        if (q <= band.top) return band;
    return kBands.back();
}

} // namespace

GaugeReading alignment_gauge_reading(double confidence) {
    const double q = std::clamp(confidence, -1.0, 1.0);
    const GaugeBand& band = band_of(q);
    const double within = std::clamp((q - band.low) / (band.high - band.low), 0.0, 1.0);
    return {band.word_class, band.word, band.from_pct + (band.to_pct - band.from_pct) * within};
}

bool append_alignment_gauge_open(TextBuffer& page, double confidence) {
    const GaugeReading reading = alignment_gauge_reading(confidence);
    return text_append_format(page,
                              "<div class=\"align-gauge\">\n<div class=\"align-gauge-track\">"
                              "<div class=\"align-gauge-pointer\" style=\"left:%.1f%%\"></div>"
                              "</div>\n",
                              reading.pointer_pct) &&
           text_append_format(page,
                              "<div class=\"align-gauge-value\"><span class=\"align-gauge-num\">"
                              "%.3f</span><span class=\"align-gauge-word %s\">%s</span></div>\n",
                              confidence, reading.word_class, reading.word);
}
