#include "report/cards/cards.h"
#include "report/charts/overview_markers.h"

#include "page_text.h"
#include "support/memory_wav.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr std::size_t kFrames = 8000;

struct OverviewCase {
    RunResults results;
    WavFile ref;
    WavFile dut;

    explicit OverviewCase(unsigned channels) {
        const std::vector<std::vector<double>> samples(channels,
                                                       std::vector<double>(kFrames, 0.25));
        ref = memory_wav(samples, 8000);
        dut = memory_wav(samples, 8000);
        results.alignment.aligned = true;
    }

    std::string card() const {
        RunResults prepared = results;
        build_page_figures(prepared, ref, dut, prepared.figures);
        ChartDataSets chart_data;
        const ReportInputs in{prepared, ref, dut, "", &chart_data};
        return render_text([&](TextBuffer& page) { return append_overview_card(page, in); });
    }
};

// Every check failed with a located worst point, each at its own frame.
void fail_every_check(RunResults& r) {
    r.bit_exact = {true, {}};
    r.bit_exact.result.samples_differing = 3;
    r.bit_exact.result.worst_diff_frame = 800;
    r.bit_accuracy = {true, {}};
    r.bit_accuracy.result.samples_differing = 3;
    r.bit_accuracy.result.worst_diff_frame = 1600;
    r.time_domain = {true, {}};
    r.time_domain.result.channels = 2;
    r.time_domain.result.channel[0].passed = true;
    r.time_domain.result.channel[1].has_failures = true;
    r.time_domain.result.channel[1].worst_sample = 2000;
    r.impulse_template = {true, {}};
    r.impulse_template.result.channels = 1;
    r.impulse_template.result.channel[0].has_failures = true;
    r.impulse_template.result.channel[0].worst_sample = 4000;
    r.level_fidelity = {true, {}};
    r.level_fidelity.result.channels = 1;
    r.level_fidelity.result.channel[0].has_data = true;
    r.level_fidelity.result.channel[0].worst_sample = 6000;
    r.artifact = {true, {}};
    r.artifact.result.channels = 1;
    r.artifact.result.channel[0].event_count = 1;
    r.artifact.result.channel[0].worst_event_start_frame = 7200;
    r.spectral.ran = true;
    r.spectral.result.scan.passed = false;
    r.spectral.result.scan.channels = 1;
    r.spectral.result.scan.channel[0].passed = false;
    r.spectral.result.scan.channel[0].bins_compared = 10;
    r.spectral.result.scan.channel[0].worst_frame_start = 400;
    r.distortion = {true, {}};
    r.distortion.result.channels = 1;
    r.distortion.result.channel[0].frames_scanned = 1;
    r.distortion.result.channel[0].worst_frame_start = 8000;
}

TEST(OverviewMarkers, OnePerFailedCheckInFixedOrderAtWorstFrameOverReferenceFrames) {
    RunResults results;
    fail_every_check(results);
    const std::vector<ChartMarker> markers = overview_failure_markers(results, kFrames);
    const std::vector<std::string> labels = {"Bit-Exact", "Bit Accuracy",   "Time Domain",
                                             "Impulse",   "Level Fidelity", "Artifact",
                                             "Spectral",  "Distortion"};
    const std::vector<double> fracs = {0.1, 0.2, 0.25, 0.5, 0.75, 0.9, 0.05, 1.0};
    ASSERT_EQ(markers.size(), labels.size());
    for (std::size_t i = 0; i < markers.size(); ++i) {
        EXPECT_EQ(markers[i].label, labels[i]);
        EXPECT_DOUBLE_EQ(markers[i].frac, fracs[i]);
    }
}

TEST(OverviewMarkers, PassingOrUnlocatedFailuresGetNoMarker) {
    RunResults results;
    fail_every_check(results);
    results.bit_exact.result.samples_differing = 0;            // failed without a difference
    results.bit_accuracy.result.passed = true;                 // passed
    results.level_fidelity.result.channel[0].has_data = false; // nothing measured
    results.artifact.ran = false;                              // not run
    results.distortion.result.channel[0].frames_gated = 1;     // every frame gated
    const std::vector<ChartMarker> markers = overview_failure_markers(results, kFrames);
    ASSERT_EQ(markers.size(), 3u);
    EXPECT_EQ(markers[0].label, "Time Domain");
    EXPECT_EQ(markers[1].label, "Impulse");
    EXPECT_EQ(markers[2].label, "Spectral");
}

TEST(OverviewMarkers, SnapshotModeUsesTheFirstFailingSnapshot) {
    RunResults results;
    results.spectral.ran = true;
    SpectralSnapshotsResult& snapshots = results.spectral.result.snapshots;
    results.spectral.result.snapshot_mode = true;
    snapshots.channels = 1;
    snapshots.passed = false;
    snapshots.snapshots.resize(3);
    for (std::size_t i = 0; i < 3; ++i) {
        SpectralChannelResult& record = snapshots.snapshots[i].channel[0];
        record.bins_compared = 5;
        record.worst_frame_start = 1000 * (i + 1);
        record.passed = i == 0;
    }
    const std::vector<ChartMarker> markers = overview_failure_markers(results, kFrames);
    ASSERT_EQ(markers.size(), 1u);
    EXPECT_EQ(markers[0].label, "Spectral");
    EXPECT_DOUBLE_EQ(markers[0].frac, 0.25);
}

TEST(OverviewCard, HasReferenceOnlyBadgeAndOneOverviewFrameForMono) {
    const OverviewCase run(1);
    const std::string card = run.card();
    EXPECT_EQ(card.rfind("<section class=\"card\" id=\"overview\">\n<div class=\"card-head\">\n"
                         "<div class=\"htext\"><h3>Signal Overview</h3></div>\n<span class=\"badge "
                         "info\">Reference Only</span>\n</div>\n<div class=\"card-body\">\n"
                         "<div>\n<div class=\"scope overview\">\n<div class=\"scope-head\"><span "
                         "class=\"title\">Full signal</span>\n",
                         0),
              0u);
    EXPECT_NE(card.find("<div class=\"zoom-frame\" data-zoom-kind=\"waveform\" "
                        "id=\"sx-envelope-frame\">\n<svg"),
              std::string::npos);
    EXPECT_NE(card.find("id=\"sx-envelope-svg-overview\""), std::string::npos);
    EXPECT_NE(card.find("aria-label=\"Full-file waveform overview, reference vs. DUT\""),
              std::string::npos);
    EXPECT_NE(card.find("\"yScale\":\"amp\""), std::string::npos);
    EXPECT_NE(card.find("\"totalFrames\":8000,"), std::string::npos);
    EXPECT_EQ(count_of(card, "zoom-frame\""), 1u);
    EXPECT_EQ(count_of(card, "channel-gallery-heading"), 0u);
    EXPECT_TRUE(card.ends_with("</div>\n</section>\n"));
}

TEST(OverviewCard, StereoDrawsFailureMarkersOnTheLeftChannelOnly) {
    OverviewCase run(2);
    fail_every_check(run.results);
    const std::string card = run.card();
    const std::string left = slice_of(card, "id=\"sx-envelope-data-overview-ch0\">", "</script>");
    const std::string right = slice_of(card, "id=\"sx-envelope-data-overview-ch1\">", "</script>");
    ASSERT_FALSE(left.empty());
    ASSERT_FALSE(right.empty());
    EXPECT_NE(left.find(",\"markers\":[{\"label\":\"Bit-Exact\",\"frac\":0.100000},"
                        "{\"label\":\"Bit Accuracy\",\"frac\":0.200000},"),
              std::string::npos);
    EXPECT_NE(left.find("{\"label\":\"Distortion\",\"frac\":1.000000}]}"), std::string::npos);
    EXPECT_NE(right.find(",\"markers\":[]}"), std::string::npos);
    const std::size_t heading =
        card.find("<h4 class=\"channel-gallery-heading\">Right Channel</h4>");
    ASSERT_NE(heading, std::string::npos);
    EXPECT_EQ(count_of(card.substr(0, heading), "stroke=\"var(--fail)\" stroke-width=\"1\" "
                                                "stroke-dasharray=\"3,2\""),
              8u);
    EXPECT_EQ(count_of(card.substr(heading), "stroke=\"var(--fail)\""), 0u);
    EXPECT_NE(card.find("<h4 class=\"channel-gallery-heading\">Left Channel</h4>\n<div>\n<div "
                        "class=\"scope overview\">\n"),
              std::string::npos);
    EXPECT_NE(card.find("id=\"sx-envelope-frame-ch1\""), std::string::npos);
}

} // namespace
