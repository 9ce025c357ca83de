// The Configuration card: the resolved settings the checks used, one table row each with the
// source the value came from, as the run's results list them.
#include "report/cards/card_frame.h"
#include "report/cards/cards.h"

#include <cstddef>

namespace {

// The value in the card's format for it; texts are escaped.
bool append_value(TextBuffer& page, CardFormat format, const SettingValue& v) {
    const auto integer = static_cast<std::size_t>(v.integer);
    switch (format) {
    case CardFormat::text:
        return text_append_html(page, v.text.c_str());
    case CardFormat::enabled_switch:
        return text_append(page, v.boolean ? "enabled" : "disabled");
    case CardFormat::yes_no_switch:
        return text_append(page, v.boolean ? "yes" : "no");
    case CardFormat::run_ms: // "disabled" for exactly 0, as written
        return v.number == 0.0 ? text_append(page, "disabled")
                               : text_append_format(page, "%.1f ms", v.number);
    case CardFormat::count:
        return text_append_format(page, "%zu", integer);
    case CardFormat::samples:
        return text_append_format(page, "%zu samples", integer);
    case CardFormat::edge_skip:
        return text_append_format(page, "%ld samples at each end", static_cast<long>(v.integer));
    case CardFormat::band_count:
        return text_append_format(page, "%zu configured", v.bands.size());
    case CardFormat::snapshot_count:
        return text_append_format(page, "%zu", v.snapshots.count);
    case CardFormat::decibels:
        return text_append_format(page, "%.2f dB", v.number);
    case CardFormat::fraction:
        return text_append_format(page, "%.2f", v.number);
    case CardFormat::times:
        return text_append_format(page, "%.4g&times;", v.number);
    }
    return false;
}

bool append_row(TextBuffer& page, const ConfigurationRow& row) {
    return text_append_format(page, "<tr><td>%s</td><td>%s</td><td>", row.check.c_str(),
                              row.parameter.c_str()) &&
           append_value(page, row.format, row.value) &&
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
