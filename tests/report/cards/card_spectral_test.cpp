#include "report/cards/cards.h"
#include "report/cards/spectral_card.h"

#include "page_text.h"
#include "spectral_card_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string spectral_card(const SpectralCardCase& run) {
    const ReportInputs in = run.inputs();
    return render_text([&](TextBuffer& page) { return append_spectral_card(page, in); });
}

const char* const kPassingTileRow =
    "<div class=\"tile-row\">\n"
    "<div class=\"tile\"><div class=\"k\">Bins Compared</div><div class=\"v\">512</div></div>\n"
    "<div class=\"tile\"><div class=\"k\">Bins Failed</div><div class=\"v\">0</div></div>\n"
    "<div class=\"tile\"><div class=\"k\">P99 Ratio</div><div class=\"v\">0.123</div></div>\n"
    "<div class=\"tile\"><div class=\"k\">Worst Bin</div><div class=\"v\">1000.0 Hz, +0.250000 "
    "dB<div class=\"v-sub\">tolerance 0.500000 dB</div></div></div>\n"
    "<div class=\"tile\"><div class=\"k\">Ref Peak Level</div><div class=\"v\">-6.0 "
    "dB</div></div>\n"
    "<div class=\"tile\"><div class=\"k\">DUT Peak Level</div><div class=\"v\">-12.0 "
    "dB</div></div>\n"
    "</div>\n";

TEST(SpectralPosition, IsMinutesAndSecondsRoundedToTenths) {
    EXPECT_EQ(spectral_position_text(0.5), "0:00.5");
    EXPECT_EQ(spectral_position_text(61.25), "1:01.3");
    EXPECT_EQ(spectral_position_text(59.97), "1:00.0");
    EXPECT_EQ(spectral_position_text(754.0), "12:34.0");
}

TEST(SpectralPosition, FrameCentreIsStartPlusHalfTheFrame) {
    const SpectralCardCase run(1);
    EXPECT_DOUBLE_EQ(frame_centre_seconds(run.inputs(), 7488), 1.0);
    EXPECT_DOUBLE_EQ(frame_centre_seconds(run.inputs(), 0), 0.064);
}

TEST(SpectralCard, SingleFrameHeadNamesThePointAndTheFileDuration) {
    const SpectralCardCase run(1);
    const std::string card = spectral_card(run);
    EXPECT_EQ(card.rfind("<section class=\"card\" id=\"spectral\">\n<div class=\"card-head\">\n"
                         "<div class=\"htext\"><h3>Spectral Fidelity</h3><span class=\"sub\">"
                         "Checked at 0:01.0 of 0:02.0</span></div>\n"
                         "<span class=\"badge pass\">Pass</span>\n</div>\n"
                         "<div class=\"card-body\">\n<div>\n<div class=\"scope\">\n",
                         0),
              0u);
    EXPECT_TRUE(card.ends_with("</div>\n</section>\n"));
}

TEST(SpectralCard, MonoBlockHasChartFrameAndTileRowWithoutSuffix) {
    const SpectralCardCase run(1);
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("<span class=\"title\">Ref vs. DUT magnitude spectrum</span>"),
              std::string::npos);
    EXPECT_NE(card.find("<div class=\"trace-toggle\" data-target=\"sx-spectral-frame\">"),
              std::string::npos);
    EXPECT_NE(card.find("<div class=\"zoom-frame\" data-zoom-kind=\"spectral\" "
                        "id=\"sx-spectral-frame\">\n<svg"),
              std::string::npos);
    EXPECT_NE(card.find("id=\"sx-spectral-data\">"), std::string::npos);
    EXPECT_NE(card.find(std::string("Device under test</span>\n</div>\n</div>\n</div>\n") +
                        kPassingTileRow),
              std::string::npos);
    EXPECT_EQ(count_of(card, "channel-gallery-heading"), 0u);
}

TEST(SpectralCard, ChartCarriesTiersPeaksAndNoFailMarkerWhenPassing) {
    const SpectralCardCase run(1);
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("\"tierNoiseFloorDb\":-100.00,\"tierNonPeakDb\":-60.00,"
                        "\"tierPeakDb\":-20.00,"),
              std::string::npos);
    EXPECT_NE(card.find("\"binHz\":7.812500,\"nyquistHz\":4000.000,"), std::string::npos);
    EXPECT_NE(card.find(",\"failMarker\":null,\"peaks\":[{\"freqHz\":1000.000,\"levelDb\":-6.02,"
                        "\"tier\":0}]}</script>\n"),
              std::string::npos);
}

TEST(SpectralCard, FailedRecordGetsFailMarkerAndFailingTiles) {
    SpectralCardCase run(1);
    SpectralChannelResult& r = run.scan(0);
    r.passed = false;
    r.bins_failed = 7;
    r.p99_ratio = 1.5;
    r.worst_diff_db = -6.5;
    r.worst_freq_hz = 1000.0;
    run.results.spectral.result.scan.passed = false;
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("<span class=\"badge fail\">Fail</span>"), std::string::npos);
    EXPECT_NE(card.find(",\"failMarker\":{\"freqHz\":1000.000,\"diffDb\":-6.50},"),
              std::string::npos);
    EXPECT_NE(card.find("<div class=\"k\">Bins Failed</div><div class=\"v fail\">7</div>"),
              std::string::npos);
    EXPECT_NE(card.find("<div class=\"k\">P99 Ratio</div><div class=\"v fail\">1.500</div>"),
              std::string::npos);
    EXPECT_NE(card.find("<div class=\"v\">1000.0 Hz, -6.500000 dB<div"), std::string::npos);
}

TEST(SpectralCard, DutSpectrumIsReadAtTheAlignedFrame) {
    SpectralCardCase run(1);
    // Reference frame 0 lines up with DUT frame 4000, where the DUT's tone starts; without the
    // offset the DUT frame would be silent (-140 dB).
    run.scan(0).chart_frame_start = 0;
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("<div class=\"k\">DUT Peak Level</div><div class=\"v\">-12.0 dB</div>"),
              std::string::npos);
}

TEST(SpectralCard, ContinuousScanCountsPointsAndLocatesTheWorstBin) {
    SpectralCardCase run(1);
    SpectralChannelResult& r = run.scan(0);
    r.frames_scanned = 5;
    r.worst_frame_start = 3488; // centre at 4000 frames: 0.5 s
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("<h3>Spectral Fidelity</h3><span class=\"sub\">Checked across the whole "
                        "file (5 points)</span></div>\n"),
              std::string::npos);
    EXPECT_NE(card.find("<div class=\"v-sub\">tolerance 0.500000 dB</div><div "
                        "class=\"v-sub\">at 0:00.5</div></div></div>\n"),
              std::string::npos);
}

TEST(SpectralCard, EdgeSkipSubtitleGivesTheSkipInMilliseconds) {
    SpectralCardCase run(1);
    run.scan(0).frames_scanned = 12;
    run.scan(0).edge_skipped_samples = 800;
    run.results.config.spectral_fidelity.sweep_edge_skip_samples = {true, 800,
                                                                    SettingSource::config_file};
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("<span class=\"sub\">Checked across the whole file except the first and "
                        "last 100 ms (12 points)</span>"),
              std::string::npos);
}

TEST(SpectralCard, GatedFrameShowsItsNoteInsteadOfTheChart) {
    SpectralCardCase run(1);
    run.scan(0).frame_gated = true;
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("<div class=\"card-body\">\n<p class=\"chart-note\">Frame gated -- "
                        "reference level did not clear the noise floor in this snapshot.</p>\n"
                        "</div>\n</section>\n"),
              std::string::npos);
    EXPECT_EQ(count_of(card, "zoom-frame"), 0u);
}

TEST(SpectralCard, TooShortOverlapShowsItsNoteAndNoSubtitle) {
    SpectralCardCase run(1);
    SpectralChannelResult& r = run.scan(0);
    r = SpectralChannelResult{};
    r.insufficient_samples = true;
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("<div class=\"htext\"><h3>Spectral Fidelity</h3></div>\n"),
              std::string::npos);
    EXPECT_NE(card.find("<div class=\"card-body\">\n<p class=\"chart-note\">Not enough aligned "
                        "samples for a snapshot frame.</p>\n</div>\n</section>\n"),
              std::string::npos);
}

TEST(SpectralCard, StereoShowsOneHeadedBlockPerChannelWithSuffixes) {
    const SpectralCardCase run(2);
    const std::string card = spectral_card(run);
    const std::size_t left = card.find("<h4 class=\"channel-gallery-heading\">Left Channel</h4>\n"
                                       "<div>\n<div class=\"scope\">\n");
    const std::size_t right = card.find("<h4 class=\"channel-gallery-heading\">Right "
                                        "Channel</h4>\n<div>\n<div class=\"scope\">\n");
    ASSERT_NE(left, std::string::npos);
    ASSERT_NE(right, std::string::npos);
    EXPECT_LT(left, right);
    EXPECT_LT(left, card.find("id=\"sx-spectral-frame-ch0\""));
    EXPECT_LT(card.find("id=\"sx-spectral-data-ch0\""), right);
    EXPECT_GT(card.find("id=\"sx-spectral-frame-ch1\""), right);
    EXPECT_GT(card.find("id=\"sx-spectral-data-ch1\""), right);
    EXPECT_EQ(count_of(card, kPassingTileRow), 2u);
}

TEST(SpectralCard, NotRunShowsSkippedBadgeAndEmptyBody) {
    SpectralCardCase run(1);
    run.results.spectral.ran = false;
    const std::string card = spectral_card(run);
    EXPECT_EQ(card, "<section class=\"card\" id=\"spectral\">\n<div class=\"card-head\">\n<div "
                    "class=\"htext\"><h3>Spectral Fidelity</h3></div>\n<span class=\"badge "
                    "info\">Skipped</span>\n</div>\n<div class=\"card-body\">\n</div>\n"
                    "</section>\n");
}

} // namespace
