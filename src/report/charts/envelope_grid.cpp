// The grid of the waveform envelope chart: value lines with their labels, and time divisions with
// their time labels.
#include "audio/audio.h"
#include "report/charts/chart_scales.h"
#include "report/charts/envelope_parts.h"

#include <cmath>

namespace {

constexpr const char* kValueLineStyle =
    "stroke=\"var(--ink-soft)\" stroke-width=\"1\" opacity=\"0.55\"";
constexpr const char* kZeroLineStyle =
    "stroke=\"var(--ink-soft)\" stroke-width=\"1\" opacity=\"0.9\"";
constexpr const char* kMinorTimeStyle =
    "stroke=\"var(--line-strong)\" stroke-width=\"1\" opacity=\"0.5\"";
constexpr const char* kMajorTimeStyle =
    "stroke=\"var(--ink-soft)\" stroke-width=\"1\" opacity=\"0.5\"";
// Time labels sit centred under their line, between the plot and the axis title.
constexpr double kTimeLabelY = 170.0;
constexpr const char* kTimeLabelStyle =
    "font-size=\"9.5\" fill=\"var(--muted)\" text-anchor=\"middle\"";

// A value line across the plot at `y` and the opening of its label.
bool append_value_row(TextBuffer& page, double y, const char* style) {
    return append_svg_line(page, kEnvelopeArea.left, y, kEnvelopeArea.right, y, style) &&
           append_value_label_open(page, y);
}

bool append_db_grid(TextBuffer& page) {
    for (int level = 20; level >= -140; level -= 20) {
        const double db = level;
        if (!append_value_row(page, envelope_y(db, EnvelopeScale::db), kValueLineStyle) ||
            !text_append_format(page, "%.0f", db) || !append_svg_text_close(page)) {
            return false;
        }
    }
    return true;
}

// The loop runs while the value is at least -1.200000001 so the -1.2 line survives the rounding
// of the repeated subtraction; the zero line is drawn stronger.
bool append_amplitude_grid(TextBuffer& page) {
    for (double value = 1.2; value >= -1.200000001; value -= 0.2) {
        const char* style = std::fabs(value) < 1e-9 ? kZeroLineStyle : kValueLineStyle;
        if (!append_value_row(page, envelope_y(value, EnvelopeScale::linear), style) ||
            !text_append_format(page, "%+.1f", value) || !append_svg_text_close(page)) {
            return false;
        }
    }
    return true;
}

// Minutes and whole seconds ("%d:%02d", the time rounded to whole seconds first so 59.6 s reads
// 1:00) when the view ends at 60 s or later, else "%.1fs".
bool append_time_label(TextBuffer& page, double seconds, bool minutes) {
    if (!minutes) return text_append_format(page, "%.1fs", seconds);
    const long long whole = static_cast<long long>(round_half_away_from_zero(seconds));
    return text_append_format(page, "%d:%02d", static_cast<int>(whole / 60),
                              static_cast<int>(whole % 60));
}

bool append_minor_time_lines(TextBuffer& page) {
    for (int twentieth = 1; twentieth < 20; ++twentieth) {
        if (twentieth % 4 == 0) continue;
        const double x = 58.0 + 932.0 * twentieth / 20.0;
        if (!append_svg_line(page, x, kEnvelopeArea.top, x, kEnvelopeArea.bottom,
                             kMinorTimeStyle)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool append_envelope_value_grid(TextBuffer& page, EnvelopeScale scale) {
    return scale == EnvelopeScale::db ? append_db_grid(page) : append_amplitude_grid(page);
}

bool append_envelope_time_grid(TextBuffer& page, const EnvelopeView& view) {
    const double rate = view.sample_rate;
    const double start = static_cast<double>(view.first_frame) / rate;
    const double length = static_cast<double>(view.frame_count) / rate;
    const double end =
        static_cast<double>(view.first_frame + static_cast<std::int64_t>(view.frame_count)) / rate;
    const bool minutes = end >= 60.0;
    if (!append_minor_time_lines(page)) return false;
    for (int i = 0; i <= 5; ++i) {
        const double x = 58.0 + 932.0 * i / 5.0;
        if (!append_svg_line(page, x, kEnvelopeArea.top, x, kEnvelopeArea.bottom,
                             kMajorTimeStyle) ||
            !append_svg_text_open(page, x, kTimeLabelY, kTimeLabelStyle) ||
            !append_time_label(page, start + i * length / 5.0, minutes) ||
            !append_svg_text_close(page)) {
            return false;
        }
    }
    return true;
}
