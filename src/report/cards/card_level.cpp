// The Level Fidelity card: the gain-tracking table (median, MAD, p99 error, sustained run) and
// the worst-point table, one column per channel.
#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/cards/cards.h"
#include "report/cards/check_status.h"
#include "report/cards/compare_table.h"
#include "report/cards/ref_only_note.h"

#include <cmath>

namespace {

using ChannelCell = bool (*)(TextBuffer& page, const LevelFidelityChannel& channel,
                             const LevelFidelityConfig& config);

bool median_cell(TextBuffer& page, const LevelFidelityChannel& c, const LevelFidelityConfig&) {
    return text_append_format(page, "<td>%.3f dB</td>", c.median_db);
}

bool mad_cell(TextBuffer& page, const LevelFidelityChannel& c, const LevelFidelityConfig&) {
    return text_append_format(page, "<td>%.3f dB</td>", c.mad_db);
}

// Fails as the check does: above the tolerance plus its relative slack of 1e-5.
bool p99_cell(TextBuffer& page, const LevelFidelityChannel& c, const LevelFidelityConfig& config) {
    const double tolerance = config.p99_tolerance_db.value;
    const bool failing = c.p99_abs_db > tolerance + std::fabs(tolerance) * 1e-5;
    return text_append_format(page, "<td%s>%.3f dB</td>", fail_cell_attribute(failing),
                              c.p99_abs_db);
}

bool run_cell(TextBuffer& page, const LevelFidelityChannel& c, const LevelFidelityConfig&) {
    return text_append_format(page, "<td%s>%.1f ms</td>", fail_cell_attribute(c.sustained_fail),
                              c.longest_sustained_run_ms);
}

bool worst_sample_cell(TextBuffer& page, const LevelFidelityChannel& c,
                       const LevelFidelityConfig&) {
    if (!c.has_data) return text_append(page, "<td>&mdash;</td>");
    return text_append_format(page, "<td>%ld</td>", static_cast<long>(c.worst_sample));
}

// Only the worst sample has a stand-in for a channel without data; the other worst-point cells
// show the record's values as they are.
bool worst_diff_cell(TextBuffer& page, const LevelFidelityChannel& c, const LevelFidelityConfig&) {
    return text_append_format(page, "<td>%+.3f dB</td>", c.worst_diff_db);
}

bool ref_amp_cell(TextBuffer& page, const LevelFidelityChannel& c, const LevelFidelityConfig&) {
    return text_append_format(page, "<td>%.6f</td>", c.worst_ref_amp);
}

bool dut_amp_cell(TextBuffer& page, const LevelFidelityChannel& c, const LevelFidelityConfig&) {
    return text_append_format(page, "<td>%.6f</td>", c.worst_dut_amp);
}

struct LevelRow {
    const char* name;
    ChannelCell cell;
};

constexpr LevelRow kGainRows[] = {
    {"Median", median_cell},
    {"MAD", mad_cell},
    {"P99 |Error|", p99_cell},
    {"Sustained Run", run_cell},
};

constexpr LevelRow kWorstRows[] = {
    {"Worst Sample", worst_sample_cell},
    {"Worst Diff", worst_diff_cell},
    {"Ref Amplitude", ref_amp_cell},
    {"DUT Amplitude", dut_amp_cell},
};

template <std::size_t N>
bool append_table(TextBuffer& page, const char* title, const LevelRow (&rows)[N],
                  const RunResults& results) {
    const LevelFidelityResult& r = results.level_fidelity.result;
    const std::uint32_t channels = r.channels;
    if (!append_channel_table_open(page, title, channels)) return false;
    for (const LevelRow& row : rows) {
        if (!append_table_row_open(page, row.name)) return false;
        for (unsigned c = 0; c < gallery_blocks(channels); ++c)
            if (!row.cell(page, r.channel[c], results.config.level_fidelity)) return false;
        if (!append_table_row_close(page)) return false;
    }
    return append_table_close(page);
}

bool append_level_body(TextBuffer& page, const RunResults& results, const CheckStatus& status) {
    if (!status.ran) return true;
    return (status.gates || append_ref_only_flag_note(page, "--levelfidelity-ref-only")) &&
           append_table(page, "Gain Tracking", kGainRows, results) &&
           append_table(page, "Worst Point", kWorstRows, results);
}

} // namespace

bool append_level_card(TextBuffer& page, const ReportInputs& in) {
    const CheckStatus status = check_status(in.results, GatingCheck::levelfidelity);
    const Badge badge = status_badge(status);
    return append_card_open(page, "level", "<h3>Level Fidelity</h3>", &badge) &&
           append_level_body(page, in.results, status) && append_card_close(page);
}
