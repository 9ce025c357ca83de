// The Loudness card: the six rows with their deltas, the failing cells, the reference-only note
// and the skipped card.
#include "report/cards/cards.h"

#include "page_text.h"
#include "report_case.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string card_of(const ReportCase& run) {
    return render_text([&](TextBuffer& page) { return append_loudness_card(page, run.inputs()); });
}

LoudnessResult measured() {
    LoudnessResult r;
    r.ref = {-23.04, 5.61, -1.23, -1.5, -20.44, -21.55};
    r.dut = {-22.0, 5.5, -0.5, -1.0, -19.4, -20.5};
    r.delta_integrated_lu = 1.04;
    r.delta_true_peak_db = 0.73;
    r.delta_range_lu = -0.11;
    r.delta_max_momentary_lu = 1.04;
    r.delta_max_short_term_lu = 1.05;
    r.delta_sample_peak_db = 0.5;
    return r;
}

} // namespace

TEST(LoudnessCard, ReferenceOnlyTableWithFailingDeltas) {
    ReportCase run(1, 64);
    run.results.loudness = {true, measured()};
    EXPECT_EQ(
        card_of(run),
        "<section class=\"card\" id=\"loudness\">\n<div class=\"card-head\">\n<div "
        "class=\"htext\"><h3>Loudness</h3></div>\n<span class=\"badge info\">Reference "
        "Only</span>\n</div>\n<div class=\"card-body\">\n<p class=\"desc\">Reference only -- run "
        "with <code>--loudness</code> to make this part of the overall verdict.</p>\n"
        "<div class=\"compare-table-wrap\">\n<table class=\"compare-table\">\n<thead><tr><th "
        "scope=\"col\"></th><th scope=\"col\">Ref</th><th scope=\"col\">DUT</th><th "
        "scope=\"col\"></th></tr></thead>\n<tbody>\n"
        "<tr><th scope=\"row\">Integrated Loudness</th><td>-23.0 LUFS</td><td>-22.0 LUFS</td><td "
        "class=\"fail\">+1.04 LU<span class=\"loudness-delta-label\">&Delta; "
        "Loudness</span></td></tr>\n"
        "<tr><th scope=\"row\">Loudness Range (LRA)</th><td>5.6 LU</td><td>5.5 LU</td><td>-0.11 "
        "LU<span class=\"loudness-delta-label\">&Delta; LRA</span></td></tr>\n"
        "<tr><th scope=\"row\">True Peak</th><td>-1.2 dBTP</td><td>-0.5 dBTP</td><td "
        "class=\"fail\">+0.73 dB (ceiling 0.0 dBTP)<span class=\"loudness-delta-label\">&Delta; "
        "True Peak</span></td></tr>\n"
        "<tr><th scope=\"row\">Sample Peak</th><td>-1.5 dBFS</td><td>-1.0 dBFS</td><td>+0.50 "
        "dB<span class=\"loudness-delta-label\">&Delta; Peak</span></td></tr>\n"
        "<tr><th scope=\"row\">Max Momentary</th><td>-20.4 LUFS</td><td>-19.4 LUFS</td><td>+1.04 "
        "LU<span class=\"loudness-delta-label\">&Delta; Momentary</span></td></tr>\n"
        "<tr><th scope=\"row\">Max Short-term</th><td>-21.6 LUFS</td><td>-20.5 "
        "LUFS</td><td>+1.05 LU<span class=\"loudness-delta-label\">&Delta; "
        "Short-term</span></td></tr>\n"
        "</tbody>\n</table>\n</div>\n</div>\n</section>\n");
}

TEST(LoudnessCard, GatingPassWithinTolerancesAndTheCeiling) {
    ReportCase run(1, 64);
    LoudnessResult r = measured();
    r.passed = true;
    r.delta_integrated_lu = -0.5;
    r.delta_true_peak_db = -2.0;
    r.dut.true_peak_dbtp = -3.0;
    run.results.loudness = {true, r};
    run.results.config.loudness.gates_overall.value = true;
    run.results.config.loudness.true_peak_ceiling_dbtp = {true, -1.0, SettingSource::config_file};
    std::string text = card_of(run);
    EXPECT_NE(text.find("<span class=\"badge pass\">Pass</span>\n</div>\n<div "
                        "class=\"card-body\">\n<div class=\"compare-table-wrap\">"),
              std::string::npos);
    EXPECT_EQ(text.find("class=\"fail\""), std::string::npos);
    // The DUT's true peak of -0.5 dBTP is above the ceiling of -1.0 dBTP.
    r.dut.true_peak_dbtp = -0.5;
    run.results.loudness.result = r;
    text = card_of(run);
    EXPECT_NE(text.find("<td class=\"fail\">-2.00 dB (ceiling -1.0 dBTP)<span"), std::string::npos);
    EXPECT_EQ(count_of(text, "class=\"fail\""), 1u);
}

TEST(LoudnessCard, SkippedCard) {
    ReportCase run(1, 64);
    EXPECT_EQ(card_of(run),
              "<section class=\"card\" id=\"loudness\">\n<div class=\"card-head\">\n<div "
              "class=\"htext\"><h3>Loudness</h3></div>\n<span class=\"badge "
              "info\">Skipped</span>\n</div>\n<div class=\"card-body\">\n<p class=\"desc\">Skipped "
              "-- run without <code>--no-loudness</code> to include it.</p>\n</div>\n</section>\n");
}
