// The rows of the batch index page's table.
#include "report/page/batch_index.h"

#include <cstdio>

namespace {

bool is_plain_link_byte(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~' || c == '/';
}

// A number cell: the exact value for sorting in data-value, the shown text with `decimals`; an
// unset figure is an empty cell marked "unset" that sorts last.
template <typename Number>
bool append_number_cell(TextBuffer& page, const std::optional<Number>& value, int decimals) {
    if (!value) return text_append(page, "<td class=\"num unset\">&ndash;</td>");
    const auto number = static_cast<double>(*value);
    return text_append(page, "<td class=\"num\" data-value=\"") &&
           text_append_fixed(page, number, 6) && text_append(page, "\">") &&
           text_append_fixed(page, number, decimals) && text_append(page, "</td>");
}

const char* verdict_class(const std::string& verdict) {
    if (verdict == "PASS") return "pass";
    return verdict == "FAIL" ? "fail" : "error";
}

// The failing checks of a FAIL pair or the error text of an ERROR pair.
bool append_outcome_cell(TextBuffer& page, const BatchRow& row) {
    const bool error = row.verdict == "ERROR";
    return text_append(page, error ? "<td class=\"run-error-text\">" : "<td>") &&
           text_append_html(page, error ? row.error.c_str() : row.failing_checks.c_str()) &&
           text_append(page, "</td>");
}

// A pair whose run wrote no page has no link.
bool append_report_cell(TextBuffer& page, const BatchRow& row) {
    if (row.report.empty()) return text_append(page, "<td class=\"unset\">no report</td>");
    const std::string href = href_encoded(row.report);
    return text_append(page, "<td><a href=\"") && text_append_html(page, href.c_str()) &&
           text_append(page, "\">") && text_append_html(page, row.report.c_str()) &&
           text_append(page, "</a></td>");
}

bool append_row(TextBuffer& page, const BatchRow& row) {
    const char* verdict = verdict_class(row.verdict);
    return text_append(page, "<tr data-verdict=\"") &&
           text_append_html(page, row.verdict.c_str()) && text_append(page, "\"><td>") &&
           text_append_html(page, row.id.c_str()) &&
           text_append_format(page, "</td><td><span class=\"badge %s\">", verdict) &&
           text_append_html(page, row.verdict.c_str()) && text_append(page, "</span></td>") &&
           append_outcome_cell(page, row) && append_number_cell(page, row.offset, 0) &&
           append_number_cell(page, row.level_p99_db, 2) &&
           append_number_cell(page, row.loudness_delta_lu, 2) &&
           append_number_cell(page, row.thdn_db, 1) &&
           append_number_cell(page, row.artifact_count, 0) &&
           append_number_cell(page, std::optional<double>(row.seconds), 2) &&
           append_report_cell(page, row) && text_append(page, "</tr>\n");
}

} // namespace

std::string href_encoded(std::string_view link) {
    std::string encoded;
    for (const char c : link) {
        const auto byte = static_cast<unsigned char>(c);
        if (is_plain_link_byte(byte)) {
            encoded += c;
            continue;
        }
        char escape[4];
        std::snprintf(escape, sizeof escape, "%%%02X", byte);
        encoded += escape;
    }
    return encoded;
}

bool append_batch_rows(TextBuffer& page, std::span<const BatchRow> rows) {
    for (const BatchRow& row : rows) {
        if (!append_row(page, row)) return false;
    }
    return true;
}
