// SVG pieces both chart kinds share: the plot area, plain lines and text elements, the two axes
// and the two axis titles. Every colour is a CSS variable of the page theme.
#pragma once

#include "report/page/text_buffer.h"

// The drawing rectangle inside a chart's view box, in SVG user units.
struct PlotArea {
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;
    double bottom = 0.0;
};

// "<line x1=\"%.2f\" y1=\"%.2f\" x2=\"%.2f\" y2=\"%.2f\" " followed by `style` and "/>\n".
bool append_svg_line(TextBuffer& page, double x1, double y1, double x2, double y2,
                     const char* style);

// "<text x=\"%.2f\" y=\"%.2f\" " followed by `style` and ">"; the caller writes the text.
bool append_svg_text_open(TextBuffer& page, double x, double y, const char* style);
// "</text>\n".
bool append_svg_text_close(TextBuffer& page);

// A value label right-aligned at x 52, 3 units below `y` (the height of its grid line); the
// caller writes the number and closes the text.
bool append_value_label_open(TextBuffer& page, double y);

// The left and bottom edges of the plot area as one append of two lines, width 1.4.
bool append_plot_axes(TextBuffer& page, const PlotArea& area);

// The horizontal title centred at (524, `horizontal_y`) and the vertical one at x 14 rotated -90
// degrees about (14, `vertical_y`).
bool append_axis_titles(TextBuffer& page, const char* horizontal, double horizontal_y,
                        const char* vertical, double vertical_y);
