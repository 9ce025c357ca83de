// Lines, text elements, axes and axis titles of the chart SVGs.
#include "report/charts/chart_svg.h"

namespace {

// Font and colour of the axis titles.
constexpr const char* kAxisTitleStyle = "font-size=\"10.5\" fill=\"var(--ink-soft)\"";

} // namespace

bool append_svg_line(TextBuffer& page, double x1, double y1, double x2, double y2,
                     const char* style) {
    return text_append_format(page, "<line x1=\"%.2f\" y1=\"%.2f\" x2=\"%.2f\" y2=\"%.2f\" %s/>\n",
                              x1, y1, x2, y2, style);
}

bool append_svg_text_open(TextBuffer& page, double x, double y, const char* style) {
    return text_append_format(page, "<text x=\"%.2f\" y=\"%.2f\" %s>", x, y, style);
}

bool append_svg_text_close(TextBuffer& page) {
    return text_append(page, "</text>\n");
}

bool append_value_label_open(TextBuffer& page, double y) {
    return append_svg_text_open(page, 52.0, y + 3.0,
                                "font-size=\"9.5\" fill=\"var(--muted)\" text-anchor=\"end\"");
}

bool append_plot_axes(TextBuffer& page, const PlotArea& area) {
    return text_append_format(
        page,
        "<line x1=\"%.2f\" y1=\"%.2f\" x2=\"%.2f\" y2=\"%.2f\" stroke=\"var(--ink-soft)\" "
        "stroke-width=\"1.4\"/>\n"
        "<line x1=\"%.2f\" y1=\"%.2f\" x2=\"%.2f\" y2=\"%.2f\" stroke=\"var(--ink-soft)\" "
        "stroke-width=\"1.4\"/>\n",
        area.left, area.top, area.left, area.bottom, area.left, area.bottom, area.right,
        area.bottom);
}

bool append_axis_titles(TextBuffer& page, const char* horizontal, double horizontal_y,
                        const char* vertical, double vertical_y) {
    constexpr double vertical_x = 14.0;
    return text_append_format(page,
                              "<text x=\"524.00\" y=\"%.2f\" %s text-anchor=\"middle\">%s</text>\n",
                              horizontal_y, kAxisTitleStyle, horizontal) &&
           text_append_format(page,
                              "<text x=\"%.2f\" y=\"%.2f\" %s text-anchor=\"middle\" "
                              "transform=\"rotate(-90 %.2f %.2f)\">%s</text>\n",
                              vertical_x, vertical_y, kAxisTitleStyle, vertical_x, vertical_y,
                              vertical);
}
