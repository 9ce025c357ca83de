// The Distortion (THD+N) card: the worst frame's chart or its notes, the THD+N forms and the
// scan tiles, and the skipped card.
#include "report/cards/cards.h"

#include "page_text.h"
#include "report_case.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string card_of(const ReportCase& run) {
    return render_text(
        [&](TextBuffer& page) { return append_distortion_card(page, run.inputs()); });
}

DistortionChannelResult measured(double ratio, double db) {
    DistortionChannelResult c;
    c.passed = ratio <= 0.01;
    c.frames_scanned = 5;
    c.frames_gated = 1;
    c.worst_frame_start = 1024;
    c.fundamental_freq_hz = 1000.0;
    c.thdn_ratio = ratio;
    c.thdn_db = db;
    c.p50_thdn_ratio = 0.000123;
    c.p95_thdn_ratio = ratio;
    return c;
}

ReportCase distortion_run(unsigned channels) {
    ReportCase run(channels);
    run.results.config.spectral_fidelity.fft_size.value = 1024;
    run.results.distortion.ran = true;
    run.results.distortion.result.channels = channels;
    return run;
}

} // namespace

TEST(DistortionCard, ThdnAtTheFloorUsesTheLessThanForm) {
    ReportCase run = distortion_run(1);
    run.results.distortion.result.passed = true;
    run.results.distortion.result.channel[0] = measured(1e-7, -140.0);
    EXPECT_NE(card_of(run).find("<div class=\"tile\"><div class=\"k\">THD+N</div><div "
                                "class=\"v\">&lt; 0.00001% (&lt; -140 dB)</div></div>\n"),
              std::string::npos);
    run.results.distortion.result.channel[0] = measured(0.0, -200.0);
    EXPECT_NE(card_of(run).find("&lt; 0.00001% (&lt; -140 dB)"), std::string::npos);
}

TEST(DistortionCard, TilesOfTheWorstChannel) {
    ReportCase run = distortion_run(2);
    run.results.distortion.result.channel[0] = measured(0.001, -60.0);
    run.results.distortion.result.channel[1] = measured(0.0234, -32.6145);
    const std::string text = card_of(run);
    EXPECT_TRUE(text.starts_with(
        "<section class=\"card\" id=\"distortion\">\n<div class=\"card-head\">\n<div "
        "class=\"htext\"><h3>Distortion (THD+N)</h3></div>\n<span class=\"badge "
        "fail\">Fail</span>\n</div>\n<div class=\"card-body\">\n<div>\n<div class=\"scope\">\n"));
    EXPECT_TRUE(text.ends_with(
        "<div class=\"tile-row\">\n<div class=\"tile\"><div class=\"k\">Fundamental</div><div "
        "class=\"v\">1000.0 Hz</div></div>\n<div class=\"tile\"><div class=\"k\">THD+N</div><div "
        "class=\"v fail\">2.3400% (-32.6 dB)</div></div>\n<div class=\"tile\"><div "
        "class=\"k\">Tolerance</div><div class=\"v\">1.00%</div></div>\n</div>\n<div "
        "class=\"tile-row card-row-gap\">\n<div class=\"tile\"><div class=\"k\">Frames "
        "Scanned</div><div class=\"v\">5</div></div>\n<div class=\"tile\"><div class=\"k\">Frames "
        "Gated</div><div class=\"v\">1</div></div>\n<div class=\"tile\"><div class=\"k\">P50 "
        "THD+N</div><div class=\"v\">0.0123%</div></div>\n<div class=\"tile\"><div class=\"k\">P95 "
        "THD+N</div><div class=\"v\">2.3400%</div></div>\n</div>\n</div>\n</section>\n"));
}

TEST(DistortionCard, WorstFrameSpectrumChart) {
    ReportCase run = distortion_run(1);
    run.results.distortion.result.channel[0] = measured(0.001, -60.0);
    const std::string text = card_of(run);
    EXPECT_NE(text.find("<div class=\"zoom-frame\" data-zoom-kind=\"spectral\" "
                        "id=\"sx-distortion-frame\">\n<svg "),
              std::string::npos);
    EXPECT_NE(text.find("id=\"sx-spectral-svg-distortion\""), std::string::npos);
    EXPECT_NE(text.find("<script type=\"application/json\" id=\"sx-spectral-data-distortion\">"),
              std::string::npos);
    EXPECT_NE(text.find("\"tierNoiseFloorDb\":-100.00,\"tierNonPeakDb\":null,\"tierPeakDb\":null,"),
              std::string::npos);
    EXPECT_NE(text.find("\"binHz\":46.875000,\"nyquistHz\":24000.000,"), std::string::npos);
    EXPECT_NE(text.find("data-target=\"sx-distortion-frame\""), std::string::npos);
}

TEST(DistortionCard, GatedAndShortNotesReplaceTheChart) {
    ReportCase run = distortion_run(1);
    DistortionChannelResult& c = run.results.distortion.result.channel[0];
    c.passed = true;
    c.frame_gated = true;
    c.frames_scanned = 3;
    c.frames_gated = 3;
    EXPECT_NE(card_of(run).find("<div class=\"card-body\">\n<p class=\"chart-note\">Frame gated "
                                "-- no fundamental cleared the noise floor in this snapshot."
                                "</p>\n<div class=\"tile-row\">\n"),
              std::string::npos);
    c = {};
    c.passed = true;
    c.insufficient_samples = true;
    EXPECT_NE(card_of(run).find("<div class=\"card-body\">\n<p class=\"chart-note\">Not enough "
                                "aligned samples for a snapshot frame.</p>\n<div "
                                "class=\"tile-row\">\n"),
              std::string::npos);
}

TEST(DistortionCard, SkippedCard) {
    ReportCase run(1, 64);
    EXPECT_EQ(card_of(run),
              "<section class=\"card\" id=\"distortion\">\n<div class=\"card-head\">\n<div "
              "class=\"htext\"><h3>Distortion (THD+N)</h3></div>\n<span class=\"badge "
              "info\">Skipped</span>\n</div>\n<div class=\"card-body\">\n<p class=\"desc\">Skipped "
              "-- run without <code>--no-distortion</code> to include it.</p>\n</div>\n"
              "</section>\n");
}
