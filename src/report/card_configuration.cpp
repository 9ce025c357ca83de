// The Configuration card: the resolved settings the checks used, one table row each with the
// source the value came from, as the run's results list them.
#include "report/card_frame.h"
#include "report/cards.h"

namespace {

bool append_row(TextBuffer& page, const ConfigurationRow& row) {
    return text_append_format(page, "<tr><td>%s</td><td>%s</td><td>", row.check.c_str(),
                              row.parameter.c_str()) &&
           (row.value_is_text ? text_append_html(page, row.value.c_str())
                              : text_append(page, row.value.c_str())) &&
           text_append_format(page, "</td><td>%s</td></tr>\n", setting_source_label(row.source));
}

} // namespace

bool append_configuration_card(TextBuffer& page, const ReportInputs& in) {
    if (!append_card_open(page, "configuration",
                          "<h3>Configuration</h3><span class=\"sub\">resolved parameters this "
                          "run used, and where each came from</span>",
                          nullptr) ||
        !text_append(page, "<div class=\"overflow-x\"><table class=\"dt\"><tr><th>Check</th>"
                           "<th>Parameter</th><th>Value</th><th>Source</th></tr>\n"))
        return false;
    for (const ConfigurationRow& row : in.results.configuration) {
        if (!append_row(page, row)) return false;
    }
    return text_append(page, "</table></div>\n") && append_card_close(page);
}
