// The batch JUnit file: one test case per pair.
#include "results/batch_row.h"
#include "results/json_entries.h"
#include "results/json_writer.h"
#include "results/junit_xml.h"

#include <cstddef>

namespace {

template <typename Number>
void figure_line(std::string& out, std::string_view label, const std::optional<Number>& value,
                 int decimals, std::string_view unit) {
    if (!value) return;
    JsonNumberChars chars{};
    out += label;
    out += ": ";
    out += json_format_fixed(static_cast<double>(*value), decimals, chars);
    out += unit;
    out += '\n';
}

// The pair's figures, one per line, for the text of its <failure>.
std::string row_figures(const BatchRow& row) {
    std::string figures = "failing checks: " + row.failing_checks + '\n';
    figure_line(figures, "offset", row.offset, 0, " samples");
    figure_line(figures, "level p99 deviation", row.level_p99_db, 3, " dB");
    figure_line(figures, "loudness delta", row.loudness_delta_lu, 3, " LU");
    figure_line(figures, "THD+N", row.thdn_db, 3, " dB");
    figure_line(figures, "counted artifacts", row.artifact_count, 0, "");
    figures += "ref: " + row.ref_path + "\ndut: " + row.dut_path + '\n';
    return figures;
}

JunitOutcome row_outcome(const BatchRow& row) {
    if (row.verdict == "PASS") return JunitOutcome::passed;
    return row.verdict == "FAIL" ? JunitOutcome::failure : JunitOutcome::error;
}

void write_row(std::string& out, std::string_view suite_name, const BatchRow& row) {
    const JunitOutcome outcome = row_outcome(row);
    const std::string details =
        outcome == JunitOutcome::failure
            ? row_figures(row)
            : row.error + "\nref: " + row.ref_path + "\ndut: " + row.dut_path;
    const std::string_view message =
        outcome == JunitOutcome::failure ? row.failing_checks : row.error;
    junit_case(out, {suite_name, row.id, row.seconds, outcome, message,
                     outcome == JunitOutcome::passed ? std::string_view() : details});
}

} // namespace

bool write_batch_junit(std::string_view suite_name, std::span<const BatchRow> rows,
                       double total_seconds, std::string& out) {
    out.clear();
    const bool built = json_guard_memory([&] {
        JunitSuite suite{suite_name, rows.size(), 0, 0, total_seconds};
        for (const BatchRow& row : rows) {
            suite.failures += row_outcome(row) == JunitOutcome::failure ? 1 : 0;
            suite.errors += row_outcome(row) == JunitOutcome::error ? 1 : 0;
        }
        junit_open(out, suite);
        for (const BatchRow& row : rows)
            write_row(out, suite_name, row);
        junit_close(out);
        return true;
    });
    if (!built) out.clear();
    return built;
}
