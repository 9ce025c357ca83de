#include "report/page/plot_page.h"

#include "report/cards/plot_cards.h"
#include "report/page/page_assets.h"
#include "report/page/page_frame.h"
#include "report/page/page_output.h"

namespace {

bool append_plot_signal_row(TextBuffer& page, const PlotData& plot) {
    const WavFile& file = *plot.file;
    const double duration =
        static_cast<double>(file.frames) / static_cast<double>(file.sample_rate);
    return text_append(page, "<div class=\"signal-row\">\n<div class=\"signal-id single\">\n<span "
                             "class=\"tag\">Signal</span>\n<span class=\"fname\">") &&
           text_append_html_path(page, plot.input_path.c_str()) &&
           text_append_format(page,
                              "</span>\n</div>\n<div class=\"signal-meta\">%u Hz &middot; %s "
                              "&middot; %s &middot; %.2fs</div>\n</div>\n",
                              file.sample_rate, format_word(file.format),
                              channel_word(file.channels), duration);
}

bool append_plot_nav(TextBuffer& page) {
    return text_append(page, "<nav class=\"nav-tabs\">\n<a href=\"#spectral\">Spectrum</a>\n<a "
                             "href=\"#spectral-linear\">Frequency (Linear)</a>\n<a "
                             "href=\"#overview\">Signal Overview</a>\n<a href=\"#energy\">Time "
                             "Energy</a>\n</nav>\n");
}

bool build_plot_page(TextBuffer& page, const PlotData& plot) {
    return append_page_open(page, report_title_stem(plot.input_path), " -- Sonalyx Plot") &&
           append_top_bar(page, "Sonalyx Plot") && append_plot_signal_row(page, plot) &&
           append_plot_nav(page) && append_plot_cards(page, plot) &&
           append_footer(page, "plot", plot.tester) && text_append(page, "</div>\n") &&
           append_theme_script(page) && append_chart_script(page) &&
           text_append(page, "</body>\n</html>\n");
}

} // namespace

bool write_plot_page(FileReplacement& out, const PlotData& plot) {
    if (plot.file == nullptr) return false;
    TextBuffer page;
    text_buffer_init(page);
    const bool built = build_plot_page(page, plot);
    return finish_page(page, built, out);
}
