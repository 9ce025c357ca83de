// The Level Fidelity card: the gain-tracking and worst-point tables and the reference-only note.
#include "report/cards/cards.h"

#include "page_text.h"
#include "report_case.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string card_of(const ReportCase& run) {
    return render_text([&](TextBuffer& page) { return append_level_card(page, run.inputs()); });
}

LevelFidelityChannel measured(double p99, bool sustained_fail) {
    LevelFidelityChannel c;
    c.passed = p99 <= 1.02 && !sustained_fail;
    c.samples_included = 4000;
    c.median_db = 0.0125;
    c.mad_db = 0.5;
    c.p99_abs_db = p99;
    c.has_data = true;
    c.worst_sample = 1234;
    c.worst_diff_db = -3.25;
    c.worst_ref_amp = 0.5;
    c.worst_dut_amp = 0.3346;
    c.longest_sustained_run_ms = sustained_fail ? 25.0 : 2.5;
    c.sustained_fail = sustained_fail;
    return c;
}

} // namespace

TEST(LevelCard, MonoTablesWithAValueColumn) {
    ReportCase run(1, 64);
    run.results.level_fidelity.ran = true;
    run.results.level_fidelity.result.channels = 1;
    run.results.level_fidelity.result.passed = true;
    run.results.level_fidelity.result.channel[0] = measured(1.02, false);
    EXPECT_EQ(card_of(run),
              "<section class=\"card\" id=\"level\">\n<div class=\"card-head\">\n<div "
              "class=\"htext\"><h3>Level Fidelity</h3></div>\n<span class=\"badge "
              "pass\">Pass</span>\n</div>\n<div class=\"card-body\">\n"
              "<div class=\"compare-table-wrap\">\n<p class=\"compare-table-title\">Gain "
              "Tracking</p>\n<table class=\"compare-table\">\n<thead><tr><th scope=\"col\"></th>"
              "<th scope=\"col\">Value</th></tr></thead>\n<tbody>\n"
              "<tr><th scope=\"row\">Median</th><td>0.013 dB</td></tr>\n"
              "<tr><th scope=\"row\">MAD</th><td>0.500 dB</td></tr>\n"
              "<tr><th scope=\"row\">P99 |Error|</th><td>1.020 dB</td></tr>\n"
              "<tr><th scope=\"row\">Sustained Run</th><td>2.5 ms</td></tr>\n"
              "</tbody>\n</table>\n</div>\n"
              "<div class=\"compare-table-wrap\">\n<p class=\"compare-table-title\">Worst "
              "Point</p>\n<table class=\"compare-table\">\n<thead><tr><th scope=\"col\"></th>"
              "<th scope=\"col\">Value</th></tr></thead>\n<tbody>\n"
              "<tr><th scope=\"row\">Worst Sample</th><td>1234</td></tr>\n"
              "<tr><th scope=\"row\">Worst Diff</th><td>-3.250 dB</td></tr>\n"
              "<tr><th scope=\"row\">Ref Amplitude</th><td>0.500000</td></tr>\n"
              "<tr><th scope=\"row\">DUT Amplitude</th><td>0.334600</td></tr>\n"
              "</tbody>\n</table>\n</div>\n</div>\n</section>\n");
}

TEST(LevelCard, StereoColumnsMarkFailingCells) {
    ReportCase run(2, 64);
    LevelFidelityResult& r = run.results.level_fidelity.result;
    run.results.level_fidelity.ran = true;
    r.channels = 2;
    r.channel[0] = measured(1.1, false);
    r.channel[1] = measured(0.5, true);
    r.channel[1].has_data = false;
    r.channel[1].worst_diff_db = 0.5;
    const std::string text = card_of(run);
    EXPECT_NE(text.find("<span class=\"badge fail\">Fail</span>"), std::string::npos);
    EXPECT_NE(text.find("<thead><tr><th scope=\"col\"></th><th scope=\"col\">L</th><th "
                        "scope=\"col\">R</th></tr></thead>"),
              std::string::npos);
    EXPECT_NE(text.find("<tr><th scope=\"row\">P99 |Error|</th><td class=\"fail\">1.100 "
                        "dB</td><td>0.500 dB</td></tr>\n<tr><th scope=\"row\">Sustained "
                        "Run</th><td>2.5 ms</td><td class=\"fail\">25.0 ms</td></tr>\n"),
              std::string::npos);
    EXPECT_NE(text.find("<tr><th scope=\"row\">Worst Sample</th><td>1234</td><td>&mdash;</td>"
                        "</tr>\n<tr><th scope=\"row\">Worst Diff</th><td>-3.250 dB</td><td>+0.500 "
                        "dB</td></tr>\n"),
              std::string::npos);
}

TEST(LevelCard, ReferenceOnlyNoteOpensTheBody) {
    ReportCase run(1, 64);
    run.results.level_fidelity.ran = true;
    run.results.level_fidelity.result.channels = 1;
    run.results.config.level_fidelity.gates_overall.value = false;
    EXPECT_NE(card_of(run).find("<span class=\"badge info\">Reference Only</span>\n</div>\n<div "
                                "class=\"card-body\">\n<p class=\"desc\">Reference only -- this "
                                "run used <code>--levelfidelity-ref-only</code>, so a failure "
                                "here doesn't affect the overall verdict. Omit the flag to "
                                "restore strict gating (the built-in default).</p>\n<div "
                                "class=\"compare-table-wrap\">"),
              std::string::npos);
}
