#include "report/cards/cards.h"
#include "report/page/page_assets.h"

#include "page_text.h"
#include "spectral_card_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Snapshots centred at 0.5, 1.0 and 1.5 s; on channel 0 the second and third fail.
SpectralCardCase snapshot_run(unsigned channels) {
    SpectralCardCase run(channels);
    SpectralOutcome& outcome = run.results.spectral.result;
    outcome.snapshot_mode = true;
    outcome.snapshots.channels = channels;
    const double worst_db[] = {0.25, 3.24, -0.54};
    for (std::size_t i = 0; i < 3; ++i) {
        SpectralSnapshot snapshot;
        snapshot.start_frame = 3488 + 4000 * i;
        snapshot.time_sec = static_cast<double>(snapshot.start_frame + kCardFft / 2) / kCardRate;
        for (unsigned c = 0; c < channels; ++c) {
            SpectralChannelResult r = card_record();
            r.chart_frame_start = snapshot.start_frame;
            r.worst_frame_start = snapshot.start_frame;
            r.worst_diff_db = worst_db[i];
            r.passed = c != 0 || i == 0;
            snapshot.channel[c] = r;
        }
        outcome.snapshots.snapshots.push_back(snapshot);
    }
    outcome.snapshots.passed = false;
    return run;
}

std::string spectral_card(const SpectralCardCase& run) {
    const ReportInputs in = run.inputs();
    return render_text([&](TextBuffer& page) { return append_spectral_card(page, in); });
}

std::string tab_script(const char* widget_id) {
    return render_text(
        [&](TextBuffer& page) { return append_snapshot_tab_script(page, widget_id); });
}

TEST(SnapshotWidget, HeadCountsTheSnapshots) {
    const std::string card = spectral_card(snapshot_run(1));
    EXPECT_NE(card.find("<div class=\"htext\"><h3>Spectral Fidelity</h3><span class=\"sub\">3 "
                        "independent snapshots</span></div>\n<span class=\"badge "
                        "fail\">Fail</span>\n"),
              std::string::npos);
}

TEST(SnapshotWidget, RollUpNamesTheFirstFailingSnapshot) {
    const std::string card = spectral_card(snapshot_run(1));
    EXPECT_NE(card.find("<div class=\"card-body\">\n<p class=\"spectral-rollup\">1/3 snapshots "
                        "passed &mdash; <span class=\"fail-detail\">snapshot 2 at 0:01.0 "
                        "failed</span></p>\n<div id=\"sx-snap-widget\">\n<div "
                        "class=\"spectral-snap-tabs\" role=\"tablist\">\n"),
              std::string::npos);
}

TEST(SnapshotWidget, TabsSelectTheFirstFailingSnapshotAndShowFailedDeviations) {
    const std::string card = spectral_card(snapshot_run(1));
    EXPECT_NE(
        card.find("role=\"tablist\">\n"
                  "<button type=\"button\" class=\"snap-tab\" data-snap-idx=\"0\" role=\"tab\" "
                  "aria-selected=\"false\"><span class=\"snap-tab-dot pass\"></span><span>Snapshot "
                  "1 &middot; 0:00.5</span></button>\n"
                  "<button type=\"button\" class=\"snap-tab active\" data-snap-idx=\"1\" "
                  "role=\"tab\" aria-selected=\"true\"><span class=\"snap-tab-dot "
                  "fail\"></span><span>Snapshot 2 &middot; 0:01.0</span><span "
                  "class=\"snap-tab-db\">+3.2dB</span></button>\n"
                  "<button type=\"button\" class=\"snap-tab\" data-snap-idx=\"2\" role=\"tab\" "
                  "aria-selected=\"false\"><span class=\"snap-tab-dot fail\"></span><span>Snapshot "
                  "3 &middot; 0:01.5</span><span class=\"snap-tab-db\">-0.5dB</span></button>\n"
                  "</div>\n<div class=\"spectral-snap-panels\">\n"
                  "<div class=\"snap-panel\" data-snap-idx=\"0\" hidden>\n<div class=\"scope\">\n"),
        std::string::npos);
}

TEST(SnapshotWidget, OnlyTheSelectedPanelIsVisible) {
    const std::string card = spectral_card(snapshot_run(1));
    EXPECT_NE(
        card.find("<div class=\"snap-panel\" data-snap-idx=\"0\" hidden>\n<div "
                  "class=\"scope\">\n<div class=\"scope-head\"><span class=\"title\">Snapshot "
                  "1 &middot; 0:00.5 &middot; Pass</span>\n"),
        std::string::npos);
    EXPECT_NE(
        card.find("<div class=\"snap-panel\" data-snap-idx=\"1\">\n<div "
                  "class=\"scope\">\n<div class=\"scope-head\"><span class=\"title\">Snapshot "
                  "2 &middot; 0:01.0 &middot; Fail</span>\n"),
        std::string::npos);
    EXPECT_NE(card.find("<div class=\"snap-panel\" data-snap-idx=\"2\" hidden>\n"),
              std::string::npos);
    EXPECT_EQ(count_of(card, " hidden>\n"), 2u);
}

TEST(SnapshotWidget, EachPanelHoldsItsOwnChart) {
    const std::string card = spectral_card(snapshot_run(1));
    for (const char* id : {"snap0", "snap1", "snap2"}) {
        EXPECT_NE(card.find(std::string("<div class=\"zoom-frame\" data-zoom-kind=\"spectral\" "
                                        "id=\"sx-spectral-frame-") +
                            id + "\">\n"),
                  std::string::npos);
        EXPECT_NE(card.find(std::string("id=\"sx-spectral-data-") + id + "\">"), std::string::npos);
    }
    // Only the failing snapshots carry a fail marker.
    EXPECT_EQ(count_of(card, "\"failMarker\":null"), 1u);
    EXPECT_NE(card.find("\"failMarker\":{\"freqHz\":1000.000,\"diffDb\":3.24}"), std::string::npos);
}

TEST(SnapshotWidget, TabScriptFollowsThePanelsAndEveryDivIsClosed) {
    const std::string card = spectral_card(snapshot_run(1));
    EXPECT_NE(card.find("Device under test</span>\n</div>\n</div>\n</div>\n</div>\n</div>\n" +
                        tab_script("sx-snap-widget") + "</div>\n</section>\n"),
              std::string::npos);
    EXPECT_EQ(count_of(card, "<div"), count_of(card, "</div>"));
}

TEST(SnapshotWidget, AllPassedSelectsTheFirstSnapshot) {
    SpectralCardCase run = snapshot_run(1);
    for (SpectralSnapshot& snapshot : run.results.spectral.result.snapshots.snapshots)
        snapshot.channel[0].passed = true;
    run.results.spectral.result.snapshots.passed = true;
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("<p class=\"spectral-rollup\">3/3 snapshots passed</p>\n"),
              std::string::npos);
    EXPECT_NE(card.find("class=\"snap-tab active\" data-snap-idx=\"0\""), std::string::npos);
    EXPECT_NE(card.find("<div class=\"snap-panel\" data-snap-idx=\"0\">\n"), std::string::npos);
    EXPECT_EQ(count_of(card, "snap-tab-db"), 0u);
}

TEST(SnapshotWidget, StereoGivesEachChannelItsOwnWidget) {
    const std::string card = spectral_card(snapshot_run(2));
    const std::size_t right = card.find("<h4 class=\"channel-gallery-heading\">Right "
                                        "Channel</h4>\n<p class=\"spectral-rollup\">3/3 snapshots "
                                        "passed</p>\n<div id=\"sx-snap-widget-ch1\">\n");
    ASSERT_NE(right, std::string::npos);
    EXPECT_EQ(card.find("<h4 class=\"channel-gallery-heading\">Left Channel</h4>\n<p "
                        "class=\"spectral-rollup\">1/3 snapshots passed"),
              card.find("<h4"));
    EXPECT_LT(card.find("id=\"sx-spectral-frame-snap2-ch0\""), right);
    EXPECT_GT(card.find("id=\"sx-spectral-frame-snap0-ch1\""), right);
    EXPECT_NE(card.find(tab_script("sx-snap-widget-ch0")), std::string::npos);
    EXPECT_NE(card.find(tab_script("sx-snap-widget-ch1")), std::string::npos);
}

TEST(SnapshotWidget, NoSnapshotsShowTheShortOverlapNote) {
    SpectralCardCase run(1);
    run.results.spectral.result.snapshot_mode = true;
    run.results.spectral.result.snapshots.insufficient_samples = true;
    const std::string card = spectral_card(run);
    EXPECT_NE(card.find("<span class=\"sub\">0 independent snapshots</span>"), std::string::npos);
    EXPECT_NE(card.find("<div class=\"card-body\">\n<p class=\"chart-note\">Not enough aligned "
                        "samples for a snapshot frame.</p>\n</div>\n</section>\n"),
              std::string::npos);
}

} // namespace
