// The Loudness card: reference and DUT figures side by side with their deltas; the integrated
// and true-peak deltas are marked when they break the check's limits.
#include "report/cards/card_frame.h"
#include "report/cards/cards.h"
#include "report/cards/check_status.h"
#include "report/cards/compare_table.h"
#include "report/cards/ref_only_note.h"

#include <cmath>

namespace {

struct LoudnessRow {
    const char* name;
    const char* value_format; // reference and DUT
    double ref;
    double dut;
    const char* delta_format;
    double delta;
    const char* delta_label;
    bool failing;
};

// "<tr><th scope=\"row\">%s</th><td>%s</td><td>%s</td><td%s>%s<span
// class=\"loudness-delta-label\">%s</span></td></tr>\n" with the row's own value formats.
bool append_row(TextBuffer& page, const LoudnessRow& row, double ceiling) {
    return append_table_row_open(page, row.name) && text_append(page, "<td>") &&
           text_append_format(page, row.value_format, row.ref) && text_append(page, "</td><td>") &&
           text_append_format(page, row.value_format, row.dut) &&
           text_append_format(page, "</td><td%s>", fail_cell_attribute(row.failing)) &&
           text_append_format(page, row.delta_format, row.delta, ceiling) &&
           text_append_format(page, "<span class=\"loudness-delta-label\">%s</span></td>",
                              row.delta_label) &&
           append_table_row_close(page);
}

bool true_peak_failing(const LoudnessResult& r, const LoudnessConfig& config) {
    const bool ceiling =
        config.true_peak_ceiling_dbtp.set &&
        !loudness_within(r.dut.true_peak_dbtp, config.true_peak_ceiling_dbtp.value);
    return ceiling || !loudness_within(r.delta_true_peak_db, config.true_peak_tolerance_db.value);
}

bool append_table(TextBuffer& page, const RunResults& results) {
    const LoudnessResult& r = results.loudness.result;
    const LoudnessConfig& config = results.config.loudness;
    const bool integrated_failing =
        !loudness_within(std::fabs(r.delta_integrated_lu), config.integrated_tolerance_lu.value);
    const LoudnessRow rows[] = {
        {"Integrated Loudness", "%.1f LUFS", r.ref.integrated_lufs, r.dut.integrated_lufs,
         "%+.2f LU", r.delta_integrated_lu, "&Delta; Loudness", integrated_failing},
        {"Loudness Range (LRA)", "%.1f LU", r.ref.range_lu, r.dut.range_lu, "%+.2f LU",
         r.delta_range_lu, "&Delta; LRA", false},
        {"True Peak", "%.1f dBTP", r.ref.true_peak_dbtp, r.dut.true_peak_dbtp,
         "%+.2f dB (ceiling %.1f dBTP)", r.delta_true_peak_db, "&Delta; True Peak",
         true_peak_failing(r, config)},
        {"Sample Peak", "%.1f dBFS", r.ref.sample_peak_dbfs, r.dut.sample_peak_dbfs, "%+.2f dB",
         r.delta_sample_peak_db, "&Delta; Peak", false},
        {"Max Momentary", "%.1f LUFS", r.ref.max_momentary_lufs, r.dut.max_momentary_lufs,
         "%+.2f LU", r.delta_max_momentary_lu, "&Delta; Momentary", false},
        {"Max Short-term", "%.1f LUFS", r.ref.max_short_term_lufs, r.dut.max_short_term_lufs,
         "%+.2f LU", r.delta_max_short_term_lu, "&Delta; Short-term", false},
    };
    if (!text_append(page, "<div class=\"compare-table-wrap\">\n<table class=\"compare-table\">\n"
                           "<thead><tr><th scope=\"col\"></th><th scope=\"col\">Ref</th><th "
                           "scope=\"col\">DUT</th><th scope=\"col\"></th></tr></thead>\n<tbody>\n"))
        return false;
    // The true-peak delta always names the ceiling setting's value (0.0 when no file sets one).
    for (const LoudnessRow& row : rows)
        if (!append_row(page, row, config.true_peak_ceiling_dbtp.value)) return false;
    return append_table_close(page);
}

bool append_loudness_body(TextBuffer& page, const RunResults& results, const CheckStatus& status) {
    if (!status.ran) return append_skipped_note(page, "--no-loudness");
    return (status.gates ||
            text_append(page,
                        "<p class=\"desc\">Reference only -- run with <code>--loudness</code> "
                        "to make this part of the overall verdict.</p>\n")) &&
           append_table(page, results);
}

} // namespace

bool append_loudness_card(TextBuffer& page, const ReportInputs& in) {
    const CheckStatus status = check_status(in.results, GatingCheck::loudness);
    const Badge badge = status_badge(status);
    return append_card_open(page, "loudness", "<h3>Loudness</h3>", &badge) &&
           append_loudness_body(page, in.results, status) && append_card_close(page);
}
