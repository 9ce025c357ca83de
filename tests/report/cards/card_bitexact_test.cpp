// The Bit-Exactness card: the differing share, the first and worst difference with their times,
// the bit accuracy tile, the difference-rate bar, and the bit-accuracy-only form.
#include "report/cards/card_frame.h"
#include "report/cards/cards.h"

#include "page_text.h"
#include "report_case.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string card_of(const ReportCase& run) {
    return render_text([&](TextBuffer& page) { return append_bitexact_card(page, run.inputs()); });
}

std::string time_of(std::size_t frame, std::uint32_t rate) {
    return render_text([&](TextBuffer& page) { return append_frame_time(page, frame, rate); });
}

// A failing comparison of 2000 samples with 1 differing, first and worst at separate places.
BitCompareResult differing() {
    BitCompareResult r;
    r.samples_compared = 2000;
    r.samples_differing = 1;
    r.first_diff_frame = 24000;
    r.first_diff_ref_value = 0.5;
    r.first_diff_dut_value = 0.25;
    r.max_error_db = 12.0;
    r.worst_diff_frame = 48000;
    r.worst_diff_channel = 1;
    r.worst_diff_ref_value = -0.125;
    r.worst_diff_dut_value = 0.5;
    return r;
}

} // namespace

TEST(FrameTime, HalfASecondInMillisecondsOneSecondInSeconds) {
    EXPECT_EQ(time_of(24000, 48000), "500.00 ms");
    EXPECT_EQ(time_of(48000, 48000), "1.000 s");
    EXPECT_EQ(time_of(47999, 48000), "999.98 ms");
    EXPECT_EQ(time_of(0, 48000), "0.00 ms");
}

TEST(BitExactCard, LeftOutWhenNeitherCheckRan) {
    ReportCase run(1, 64);
    EXPECT_EQ(card_of(run), "");
}

TEST(BitExactCard, IdenticalFilesPassWithNoDifferenceTiles) {
    ReportCase run(1, 64);
    run.results.config.bit_exact.gates_overall.value = true;
    run.results.bit_exact = {true, {}};
    run.results.bit_exact.result.passed = true;
    run.results.bit_exact.result.samples_compared = 64;
    EXPECT_EQ(card_of(run),
              "<section class=\"card\" id=\"bitexact\">\n<div class=\"card-head\">\n<div "
              "class=\"htext\"><h3>Bit-Exactness</h3></div>\n<span class=\"badge "
              "pass\">Pass</span>\n</div>\n<div class=\"card-body\">\n<div class=\"tile-row\">\n"
              "<div class=\"tile\"><div class=\"k\">Samples Differing</div><div class=\"v\">0 "
              "<span class=\"pct\">of 64 &middot; 0.0000%</span></div></div>\n</div>\n<div "
              "class=\"diffrate-bar\">\n<div class=\"diffrate-bar-track\"><div "
              "class=\"diffrate-bar-fill\" style=\"width: 0.0%;\"></div></div>\n<div "
              "class=\"diffrate-bar-label\">0.0000% of samples differ</div>\n</div>\n</div>\n"
              "</section>\n");
}

TEST(BitExactCard, FirstAndWorstDifferenceTiles) {
    ReportCase run(2, 64);
    run.results.bit_exact = {true, differing()};
    const std::string text = card_of(run);
    EXPECT_NE(text.find("<span class=\"badge info\">Reference Only</span>"), std::string::npos);
    EXPECT_NE(text.find("<div class=\"v fail\">1 <span class=\"pct\">of 2000 &middot; "
                        "0.0500%</span></div></div>\n<div class=\"tile tile-wide\"><div "
                        "class=\"k\">First Diff</div><div class=\"v fail\">frame 24000 (500.00 "
                        "ms)</div>\n<div class=\"v-sub\">ref 0.500000 &rarr; dut 0.250000 "
                        "&middot; <span class=\"delta\">&Delta; 0.250000</span></div></div>\n"
                        "<div class=\"tile tile-wide\"><div class=\"k\">Worst Diff</div><div "
                        "class=\"v fail\">frame 48000 (1.000 s)</div>\n<div class=\"v-sub\">ref "
                        "-0.125000 &rarr; dut 0.500000 &middot; <span class=\"delta\">&Delta; "
                        "0.625000</span></div></div>\n</div>\n"),
              std::string::npos);
    EXPECT_NE(text.find("style=\"width: 0.1%;\"></div></div>\n<div class=\"diffrate-bar-label\">"
                        "0.0500% of samples differ</div>"),
              std::string::npos);
}

TEST(BitExactCard, WorstAtTheFirstDifferenceRefersToIt) {
    ReportCase run(1, 64);
    BitCompareResult r = differing();
    r.worst_diff_frame = r.first_diff_frame;
    r.worst_diff_channel = r.first_diff_channel;
    r.samples_differing = 2;
    r.samples_compared = 2000;
    run.results.bit_exact = {true, r};
    EXPECT_NE(card_of(run).find("<div class=\"tile tile-wide\"><div class=\"k\">Worst "
                                "Diff</div><div class=\"v fail\">frame 24000 (500.00 ms) "
                                "&middot; same location as above</div></div>\n</div>\n"),
              std::string::npos);
    EXPECT_NE(card_of(run).find("of 2000 &middot; 0.1%</span>"), std::string::npos);
    EXPECT_NE(card_of(run).find("0.1% of samples differ"), std::string::npos);
}

TEST(BitExactCard, BitAccuracyTileJoinsTheRow) {
    ReportCase run(1, 64);
    run.results.bit_exact = {true, differing()};
    run.results.config.bit_accuracy.enabled.value = true;
    BitCompareResult accuracy = differing();
    accuracy.passed = true;
    run.results.bit_accuracy = {true, accuracy};
    const std::string text = card_of(run);
    EXPECT_NE(text.find("<div class=\"k\">Bit Accuracy Worst Diff</div>"), std::string::npos);
    EXPECT_NE(text.find("<div class=\"tile tile-wide\"><div class=\"k\">Bit Accuracy</div><div "
                        "class=\"v pass\">Pass <span class=\"pct\">108.00 dB tolerance &middot; "
                        "worst 12.00 dB</span></div></div>\n</div>\n<div class=\"diffrate-bar\">"),
              std::string::npos);
}

TEST(BitExactCard, BitAccuracyOnlyIsSkippedStrictComparison) {
    ReportCase run(1, 64);
    run.results.config.bit_exact.enabled.value = false;
    run.results.config.bit_accuracy.enabled.value = true;
    run.results.config.bit_accuracy.tolerance_db.value = 6.5;
    BitCompareResult accuracy;
    accuracy.passed = true;
    accuracy.samples_compared = 64;
    run.results.bit_accuracy = {true, accuracy};
    EXPECT_EQ(card_of(run),
              "<section class=\"card\" id=\"bitexact\">\n<div class=\"card-head\">\n<div "
              "class=\"htext\"><h3>Bit Accuracy</h3></div>\n<span class=\"badge "
              "info\">Skipped</span>\n</div>\n<div class=\"card-body\">\n<p class=\"desc\">Strict "
              "comparison skipped -- run without <code>--no-bitexact</code> to include it.</p>\n"
              "<div class=\"tile-row\">\n<div class=\"tile tile-wide\"><div class=\"k\">Bit "
              "Accuracy</div><div class=\"v pass\">Pass <span class=\"pct\">6.50 dB "
              "tolerance</span></div></div>\n</div>\n</div>\n</section>\n");
}

TEST(BitExactCard, BitAccuracyWithoutMeasurementShowsTwoTiles) {
    ReportCase run(1, 64);
    run.results.bit_accuracy = {true, {}};
    EXPECT_NE(card_of(run).find("<div class=\"tile-row\">\n<div class=\"tile\"><div "
                                "class=\"k\">Bit Accuracy</div><div class=\"v "
                                "fail\">Fail</div></div>\n<div class=\"tile\"><div "
                                "class=\"k\">Tolerance</div><div class=\"v\">108.00 dB</div>"
                                "</div>\n</div>\n"),
              std::string::npos);
}

TEST(BitExactCard, NothingComparedIsZeroPercent) {
    ReportCase run(1, 64);
    run.results.bit_exact = {true, {}};
    const std::string text = card_of(run);
    EXPECT_NE(text.find("<div class=\"v fail\">0 <span class=\"pct\">of 0 &middot; "
                        "0%</span></div></div>\n</div>\n"),
              std::string::npos);
    EXPECT_NE(text.find("0% of samples differ"), std::string::npos);
}
