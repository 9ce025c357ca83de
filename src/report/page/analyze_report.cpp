// The analyze report: the whole page is built in one buffer, in page order, and written in one
// piece only when every append succeeded.
#include "report/page/analyze_report.h"

#include "report/cards/cards.h"
#include "report/page/analyze_parts.h"
#include "report/page/page_assets.h"
#include "report/page/page_frame.h"
#include "report/page/page_output.h"

namespace {

bool append_cards(TextBuffer& page, const ReportInputs& in) {
    return append_alignment_card(page, in) && append_spectral_card(page, in) &&
           append_overview_card(page, in) && append_bitexact_card(page, in) &&
           append_level_card(page, in) && append_artifact_card(page, in) &&
           append_distortion_card(page, in) && append_loudness_card(page, in) &&
           append_time_domain_card(page, in) && append_impulse_template_card(page, in) &&
           append_configuration_card(page, in);
}

bool append_analyze_page(TextBuffer& page, const ReportInputs& in) {
    const RunResults& results = in.results;
    return append_page_open(page, report_title_stem(results.ref.path), " -- Sonalyx Report") &&
           append_top_bar(page, "Sonalyx Report") && append_signal_row(page, in) &&
           append_kpi_grid(page, results) && append_nav_tabs(page, results) &&
           append_cards(page, in) && append_footer(page, "report", &results.tester) &&
           text_append(page, "</div>\n") && append_results_element(page, in.json_text) &&
           append_theme_script(page) && append_chart_script(page) &&
           text_append(page, "</body>\n</html>\n");
}

} // namespace

bool append_signal_row(TextBuffer& page, const ReportInputs& in) {
    return append_signal_paths(page, in.results.ref.path.c_str(), in.results.dut.path.c_str()) &&
           text_append_format(page,
                              "<div class=\"signal-meta\">%u Hz &middot; %s &middot; %s</div>\n"
                              "</div>\n",
                              in.ref.sample_rate, format_word(in.ref.format),
                              channel_word(in.ref.channels));
}

bool write_analyze_report(FileReplacement& out, const ReportInputs& in) {
    ChartDataSets chart_data;
    ReportInputs inputs = in;
    inputs.chart_data = &chart_data;
    TextBuffer page;
    text_buffer_init(page);
    const bool built = append_analyze_page(page, inputs);
    return finish_page(page, built, out);
}
