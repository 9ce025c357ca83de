// The grid of the spectral chart: level lines, minor and major frequency lines, frequency labels
// and the right-edge line.
#include "report/charts/chart_scales.h"
#include "report/charts/spectral_parts.h"

#include <cmath>

namespace {

constexpr std::size_t kMaxMinorLines = 64;
constexpr std::size_t kMaxMajorLines = 16;
constexpr double kFrequencyLabelY = 290.0;
// The right edge gets its own line and label only when the last major line is further away.
constexpr double kRightEdgeGap = 40.0;

constexpr const char* kLevelLineStyle =
    "stroke=\"var(--line-strong)\" stroke-width=\"1\" opacity=\"0.6\"";
constexpr const char* kMinorLineStyle =
    "stroke=\"var(--line-strong)\" stroke-width=\"1\" opacity=\"0.55\"";
constexpr const char* kMajorLineStyle =
    "stroke=\"var(--ink-soft)\" stroke-width=\"1\" opacity=\"0.55\"";

// p = 10^floor(log10 value) times 1, 2, 5 or 10: the smallest of them that r = value / p does not
// exceed.
double nice_range(double value) {
    const double p = std::pow(10.0, std::floor(std::log10(value)));
    const double r = value / p;
    return p * (r <= 1.0 ? 1.0 : r <= 2.0 ? 2.0 : r <= 5.0 ? 5.0 : 10.0);
}

// q = 10^floor(log10 value) times 1, 2, 5 or 10 as s = value / q lies below 1.5, 3, 7 or not.
double nice_step(double value) {
    const double q = std::pow(10.0, std::floor(std::log10(value)));
    const double s = value / q;
    return q * (s < 1.5 ? 1.0 : s < 3.0 ? 2.0 : s < 7.0 ? 5.0 : 10.0);
}

std::vector<double> log_majors(double top_hz) {
    std::vector<double> majors;
    for (double decade = 10.0;; decade *= 10.0) {
        for (const double multiple : {1.0, 2.0, 5.0}) {
            const double f = multiple * decade;
            if (f > top_hz || majors.size() == kMaxMajorLines) return majors;
            if (f >= kLogFrequencyMinHz) majors.push_back(f);
        }
    }
}

std::vector<double> linear_majors(double top_hz) {
    std::vector<double> majors;
    const double step = linear_tick_step(top_hz);
    if (step <= 0.0) return majors;
    for (std::size_t k = 0; k < kMaxMajorLines; ++k) {
        const double f = static_cast<double>(k) * step;
        if (f > top_hz + 1e-9 * step) break;
        majors.push_back(f);
    }
    return majors;
}

bool append_vertical_line(TextBuffer& page, double x, const char* style) {
    return append_svg_line(page, x, kSpectralArea.top, x, kSpectralArea.bottom, style);
}

bool append_level_lines(TextBuffer& page) {
    for (int level = 20; level >= -140; level -= 20) {
        const double y = spectral_y(level);
        if (!append_svg_line(page, kSpectralArea.left, y, kSpectralArea.right, y,
                             kLevelLineStyle)) {
            return false;
        }
    }
    return true;
}

// 3, 4, 6, 7, 8 and 9 times 10 Hz to 100 kHz, between 20 Hz and the top, at most 64.
bool append_minor_lines(TextBuffer& page, const SpectralChartData& chart) {
    std::size_t drawn = 0;
    for (double decade = 10.0; decade <= 100000.0; decade *= 10.0) {
        for (const double multiple : {3.0, 4.0, 6.0, 7.0, 8.0, 9.0}) {
            const double f = multiple * decade;
            if (f < kLogFrequencyMinHz || f > chart.nyquist_hz || drawn == kMaxMinorLines) {
                continue;
            }
            ++drawn;
            if (!append_vertical_line(page, spectral_x(f, chart.nyquist_hz, chart.scale),
                                      kMinorLineStyle)) {
                return false;
            }
        }
    }
    return true;
}

bool append_frequency_label_open(TextBuffer& page, double x, const char* anchor) {
    return text_append_format(page,
                              "<text x=\"%.2f\" y=\"%.2f\" font-size=\"9.5\" fill=\"var(--muted)\" "
                              "text-anchor=\"%s\">",
                              x, kFrequencyLabelY, anchor);
}

// "%.0f" below 1000 Hz, else "%.0fk" in kHz, centred under its line.
bool append_major_line(TextBuffer& page, double f, double x) {
    return append_vertical_line(page, x, kMajorLineStyle) &&
           append_frequency_label_open(page, x, "middle") &&
           (f < 1000.0 ? text_append_format(page, "%.0f", f)
                       : text_append_format(page, "%.0fk", f / 1000.0)) &&
           append_svg_text_close(page);
}

// The right edge's line and its "%.1fk" label, right-aligned, when the last major line lies more
// than 40 units to its left; without major lines there is no last line to measure from and no
// edge line.
bool append_right_edge(TextBuffer& page, const SpectralChartData& chart, double last_x) {
    if (kSpectralArea.right - last_x <= kRightEdgeGap) return true;
    return append_vertical_line(page, kSpectralArea.right, kMajorLineStyle) &&
           append_frequency_label_open(page, kSpectralArea.right, "end") &&
           text_append_format(page, "%.1fk", chart.nyquist_hz / 1000.0) &&
           append_svg_text_close(page);
}

bool append_major_lines(TextBuffer& page, const SpectralChartData& chart) {
    const std::vector<double> majors = major_frequencies(chart.nyquist_hz, chart.scale);
    double last_x = 0.0;
    for (const double f : majors) {
        last_x = spectral_x(f, chart.nyquist_hz, chart.scale);
        if (!append_major_line(page, f, last_x)) return false;
    }
    return majors.empty() || append_right_edge(page, chart, last_x);
}

} // namespace

double linear_tick_step(double top_hz) {
    if (top_hz <= 0.0) return 0.0;
    return nice_step(nice_range(top_hz) / 5.0);
}

std::vector<double> major_frequencies(double top_hz, FrequencyScale scale) {
    return scale == FrequencyScale::log ? log_majors(top_hz) : linear_majors(top_hz);
}

bool append_spectral_grid(TextBuffer& page, const SpectralChartData& chart) {
    return append_level_lines(page) &&
           (chart.scale == FrequencyScale::linear || append_minor_lines(page, chart)) &&
           append_major_lines(page, chart);
}
