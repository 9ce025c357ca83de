// The batch index page: the frame every page shares, the counts, and the table of pairs.
#include "report/page/batch_index.h"

#include "report/page/page_assets.h"
#include "report/page/page_frame.h"

#include <cstddef>
#include <new>
#include <stdexcept>

namespace {

struct Column {
    const char* label;
    const char* kind; // "text" or "number": how the table script sorts it
};

constexpr Column kColumns[] = {
    {"ID", "text"},           {"Verdict", "text"},          {"Failing checks / error", "text"},
    {"Offset", "number"},     {"Level p99 (dB)", "number"}, {"Loudness &Delta; (LU)", "number"},
    {"THD+N (dB)", "number"}, {"Artifacts", "number"},      {"Time (s)", "number"},
    {"Report", "text"},
};

std::size_t count_of(std::span<const BatchRow> rows, std::string_view verdict) {
    std::size_t count = 0;
    for (const BatchRow& row : rows)
        count += row.verdict == verdict ? 1 : 0;
    return count;
}

bool append_kpi(TextBuffer& page, const char* id, const char* label, std::size_t value,
                const char* extra_class) {
    return text_append_format(page,
                              "<div class=\"kpi%s\" id=\"%s\">\n<div class=\"k\">%s</div>\n"
                              "<div class=\"v\">%zu</div>\n",
                              extra_class, id, label, value);
}

// The verdict tile (PASS only when no pair failed or could not run) with the pair count and the
// total time, then one tile per verdict.
bool append_counts(TextBuffer& page, std::span<const BatchRow> rows, double total_seconds) {
    const std::size_t failed = count_of(rows, "FAIL");
    const std::size_t errors = count_of(rows, "ERROR");
    const bool passed = failed == 0 && errors == 0;
    return text_append(page, "<div class=\"kpi-grid\">\n") &&
           text_append_format(page,
                              "<div class=\"kpi verdict%s\" id=\"batch-verdict-tile\">\n<div "
                              "class=\"k\">Batch Verdict</div>\n<div class=\"v\">%s</div>\n",
                              passed ? " ok" : "", passed ? "PASS" : "FAIL") &&
           text_append_format(page, "<div class=\"kpi-sub\" id=\"batch-total\">%zu pairs in ",
                              rows.size()) &&
           text_append_fixed(page, total_seconds, 1) && text_append(page, " s</div>\n</div>\n") &&
           append_kpi(page, "count-pass", "Passed", count_of(rows, "PASS"), "") &&
           text_append(page, "</div>\n") && append_kpi(page, "count-fail", "Failed", failed, "") &&
           text_append(page, "</div>\n") && append_kpi(page, "count-error", "Errors", errors, "") &&
           text_append(page, "</div>\n</div>\n");
}

bool append_controls(TextBuffer& page) {
    return text_append(
        page, "<div class=\"batch-controls\">\n<input type=\"search\" id=\"batch-filter\" "
              "placeholder=\"Filter by id, check or error\" aria-label=\"Filter the pairs\">\n"
              "<select id=\"batch-verdict\" aria-label=\"Show the pairs with this verdict\">\n"
              "<option value=\"\">All verdicts</option>\n<option value=\"PASS\">PASS</option>\n"
              "<option value=\"FAIL\">FAIL</option>\n<option value=\"ERROR\">ERROR</option>\n"
              "</select>\n<span class=\"batch-shown\" id=\"batch-shown\"></span>\n</div>\n");
}

bool append_table_head(TextBuffer& page) {
    if (!text_append(page, "<table class=\"dt batch-table\" id=\"batch-table\">\n<thead><tr>"))
        return false;
    for (const Column& column : kColumns) {
        if (!text_append_format(page,
                                "<th data-kind=\"%s\" aria-sort=\"none\"><button "
                                "type=\"button\">%s</button></th>",
                                column.kind, column.label))
            return false;
    }
    return text_append(page, "</tr></thead>\n<tbody>\n");
}

bool append_pairs_card(TextBuffer& page, std::span<const BatchRow> rows) {
    return text_append(page, "<section class=\"card\" id=\"batch-pairs\">\n<div "
                             "class=\"card-head\">\n<div class=\"htext\"><h3>Pairs</h3><span "
                             "class=\"sub\">click a column to sort</span></div>\n</div>\n<div "
                             "class=\"card-body\">\n") &&
           append_controls(page) && text_append(page, "<div class=\"overflow-x\">\n") &&
           append_table_head(page) && append_batch_rows(page, rows) &&
           text_append(page, "</tbody>\n</table>\n</div>\n</div>\n</section>\n");
}

bool build_index(TextBuffer& page, std::span<const BatchRow> rows, double total_seconds) {
    return append_page_open(page, "Batch", " -- Sonalyx Batch") && append_batch_style_sheet(page) &&
           append_top_bar(page, "Sonalyx Batch") && append_counts(page, rows, total_seconds) &&
           append_pairs_card(page, rows) && append_footer(page, "batch index", nullptr) &&
           text_append(page, "</div>\n") && append_theme_script(page) &&
           append_batch_table_script(page) && text_append(page, "</body>\n</html>\n");
}

bool copy_text(const TextBuffer& page, std::string& out) {
    try {
        out.assign(page.data, page.length);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
}

} // namespace

bool write_batch_index_page(std::span<const BatchRow> rows, double total_seconds,
                            std::string& out) {
    out.clear();
    TextBuffer page;
    text_buffer_init(page);
    const bool built = build_index(page, rows, total_seconds) && copy_text(page, out);
    text_buffer_free(page);
    if (!built) out.clear();
    return built;
}
