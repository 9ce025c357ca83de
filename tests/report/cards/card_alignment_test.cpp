// The Signal Alignment card and its confidence gauge.
#include "report/cards/alignment_gauge.h"
#include "report/cards/cards.h"

#include "page_text.h"
#include "report_case.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string card_of(const ReportCase& run) {
    return render_text([&](TextBuffer& page) { return append_alignment_card(page, run.inputs()); });
}

std::string gauge_of(double confidence) {
    return render_text(
        [&](TextBuffer& page) { return append_alignment_gauge_open(page, confidence); });
}

const std::string kOpen = "<section class=\"card\" id=\"alignment\">\n<div class=\"card-head\">\n"
                          "<div class=\"htext\"><h3>Signal Alignment</h3></div>\n</div>\n<div "
                          "class=\"card-body\">\n";

} // namespace

TEST(AlignmentGauge, ExactlyPointNineSevenIsGoodAtSeventyFive) {
    const GaugeReading reading = alignment_gauge_reading(0.97);
    EXPECT_STREQ(reading.word, "Good");
    EXPECT_STREQ(reading.word_class, "good");
    EXPECT_EQ(gauge_of(0.97),
              "<div class=\"align-gauge\">\n<div class=\"align-gauge-track\"><div "
              "class=\"align-gauge-pointer\" style=\"left:75.0%\"></div></div>\n<div "
              "class=\"align-gauge-value\"><span class=\"align-gauge-num\">0.970</span><span "
              "class=\"align-gauge-word good\">Good</span></div>\n");
}

TEST(AlignmentGauge, ConfidenceAboveOneIsClampedForThePointerOnly) {
    EXPECT_DOUBLE_EQ(alignment_gauge_reading(1.5).pointer_pct, 100.0);
    const std::string text = gauge_of(1.5);
    EXPECT_NE(text.find("style=\"left:100.0%\""), std::string::npos);
    EXPECT_NE(text.find("<span class=\"align-gauge-num\">1.500</span><span "
                        "class=\"align-gauge-word excellent\">Excellent</span>"),
              std::string::npos);
}

TEST(AlignmentGauge, BandsAndPointerPositions) {
    EXPECT_STREQ(alignment_gauge_reading(-3.0).word, "Poor");
    EXPECT_DOUBLE_EQ(alignment_gauge_reading(-3.0).pointer_pct, 0.0);
    EXPECT_STREQ(alignment_gauge_reading(0.7).word, "Poor");
    EXPECT_NEAR(alignment_gauge_reading(0.7).pointer_pct, 20.0, 1e-9);
    EXPECT_NEAR(alignment_gauge_reading(-0.15).pointer_pct, 10.0, 1e-9);
    EXPECT_STREQ(alignment_gauge_reading(0.8).word, "Fair");
    EXPECT_NEAR(alignment_gauge_reading(0.8).pointer_pct, 32.5, 1e-9);
    EXPECT_STREQ(alignment_gauge_reading(0.9).word, "Fair");
    EXPECT_STREQ(alignment_gauge_reading(0.935).word, "Good");
    EXPECT_NEAR(alignment_gauge_reading(0.935).pointer_pct, 60.0, 1e-9);
    EXPECT_STREQ(alignment_gauge_reading(0.985).word, "Excellent");
    EXPECT_NEAR(alignment_gauge_reading(0.985).pointer_pct, 87.5, 1e-9);
}

TEST(AlignmentCard, MonoGaugeWithOffsetCaption) {
    ReportCase run(1, 64);
    run.results.alignment.file_offset = 480;
    run.results.alignment.channel[0].offset = 480;
    run.results.alignment.channel[0].confidence = 0.9312;
    EXPECT_EQ(card_of(run), kOpen + gauge_of(0.9312) +
                                "<div class=\"align-gauge-caption\">480 smp offset &middot; "
                                "10.00 ms</div>\n</div>\n</div>\n</section>\n");
}

TEST(AlignmentCard, LengthMismatchCaptionComesFirst) {
    ReportCase run(1, 64);
    run.results.alignment.file_offset = -24;
    run.results.length_mismatch = {true, 2.5, 1200, 46800};
    EXPECT_EQ(card_of(run), kOpen +
                                "<div class=\"align-gauge-caption fail\">Length mismatch: 2.5% of "
                                "the reference (1200 samples) falls outside the aligned overlap "
                                "and was not compared by any check below.</div>\n" +
                                gauge_of(1.0) +
                                "<div class=\"align-gauge-caption\">-24 smp offset &middot; "
                                "-0.50 ms</div>\n</div>\n</div>\n</section>\n");
}

TEST(AlignmentCard, MonoSilentChannelCaption) {
    ReportCase run(1, 64);
    ChannelAlignment& c = run.results.alignment.channel[0];
    c = {true, 0, 0.0, false, true, AlignmentState::silent_zero};
    EXPECT_NE(card_of(run).find("</div>\n<div class=\"align-gauge-caption\">Channel: DUT is silent "
                                "on this channel, and no reliable offset was available to borrow "
                                "-- assumed 0.</div>\n</div>\n</section>\n"),
              std::string::npos);
    c.ref_silent = true;
    EXPECT_NE(card_of(run).find("<div class=\"align-gauge-caption\">Channel: Both reference and "
                                "DUT are silent on this channel -- nothing to compare, offset "
                                "assumed 0.</div>\n"),
              std::string::npos);
}

TEST(AlignmentCard, StereoHeadlineGaugeAndBorrowedCaption) {
    ReportCase run(2, 64);
    AlignmentResult& a = run.results.alignment;
    a.file_offset = 96;
    a.disagreement = 0;
    a.channel[0] = {true, 96, 0.991, false, false, AlignmentState::measured};
    a.channel[1] = {true, 96, 0.991, true, false, AlignmentState::silent_borrowed};
    EXPECT_EQ(card_of(run),
              kOpen + gauge_of(0.991) +
                  "<div class=\"align-gauge-caption\">File Offset 96 smp (2.00 ms) &middot; "
                  "Disagreement 0 smp</div>\n<div class=\"align-gauge-caption\">L 0.991 &middot; "
                  "R 0.991</div>\n</div>\n<div class=\"align-gauge-caption\">R: Reference is "
                  "silent on this channel -- offset borrowed from the other channel (confidence "
                  "0.991), not independently measured.</div>\n</div>\n</section>\n");
}

TEST(AlignmentCard, StereoGaugeTakesTheLowerMeasuredConfidence) {
    ReportCase run(2, 64);
    AlignmentResult& a = run.results.alignment;
    a.channel[0].confidence = 0.95;
    a.channel[1].confidence = 0.92;
    EXPECT_NE(card_of(run).find(gauge_of(0.92)), std::string::npos);
    a.channel[1] = {true, 0, 0.0, true, true, AlignmentState::silent_zero};
    EXPECT_NE(card_of(run).find(gauge_of(0.95)), std::string::npos);
    a.channel[0] = {true, 0, 0.0, true, false, AlignmentState::silent_zero};
    const std::string both_silent = card_of(run);
    EXPECT_NE(both_silent.find(gauge_of(1.0)), std::string::npos);
    EXPECT_NE(both_silent.find("<div class=\"align-gauge-caption\">L 0.000 &middot; R "
                               "0.000</div>\n</div>\n<div class=\"align-gauge-caption\">L: "
                               "Reference is silent on this channel, and no reliable offset was "
                               "available to borrow -- assumed 0.</div>\n<div "
                               "class=\"align-gauge-caption\">R: Both reference and DUT are "
                               "silent on this channel -- nothing to compare, offset assumed "
                               "0.</div>\n</div>\n</section>\n"),
              std::string::npos);
}

TEST(AlignmentCard, UnalignedStereoHeadlineIsMarkedFailing) {
    ReportCase run(2, 64);
    AlignmentResult& a = run.results.alignment;
    a.aligned = false;
    a.file_offset = 10;
    a.disagreement = 7;
    EXPECT_NE(card_of(run).find("<div class=\"align-gauge-caption fail\">File Offset 10 smp "
                                "(0.21 ms) &middot; Disagreement 7 smp</div>\n"),
              std::string::npos);
}
