// The Artifact Detection card: per-channel tiles, the worst event's severity forms and the
// minor-events paragraph.
#include "report/cards/cards.h"

#include "page_text.h"
#include "report_case.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string card_of(const ReportCase& run) {
    return render_text([&](TextBuffer& page) { return append_artifact_card(page, run.inputs()); });
}

// A channel whose worst event has the given local and whole-file severities.
ArtifactChannelResult with_event(double local, double global) {
    ArtifactChannelResult c;
    c.samples_checked = 4800;
    c.samples_excluded = 12;
    c.samples_flagged = 3;
    c.event_count = 2;
    c.counted_event_count = 1;
    c.minor_event_count = 1;
    c.worst_event_start_frame = 2400;
    c.worst_event_length = 3;
    c.worst_event_counted = true;
    c.worst_event_severity = local;
    c.worst_event_global_severity = global;
    return c;
}

std::string worst_event(double local, double global) {
    ReportCase run(1, 64);
    run.results.artifact.ran = true;
    run.results.artifact.result.channels = 1;
    run.results.artifact.result.channel[0] = with_event(local, global);
    return slice_of(card_of(run), "<div class=\"k\">Worst Event</div>", "</div></div>\n");
}

} // namespace

TEST(ArtifactCard, WholeFileOnlySeverityInPowerOfTenForm) {
    EXPECT_EQ(worst_event(3.0, 250000.0),
              "<div class=\"k\">Worst Event</div><div class=\"v\">frame 2400, 3 smp &middot; "
              "2.5&times;10<sup>5</sup>&times; file-wide</div></div>\n");
}

TEST(ArtifactCard, WholeFileOnlySeverityBelowOneHundredThousand) {
    EXPECT_EQ(worst_event(4.0, 99999.4),
              "<div class=\"k\">Worst Event</div><div class=\"v\">frame 2400, 3 smp &middot; "
              "99999&times; file-wide</div></div>\n");
}

TEST(ArtifactCard, LocalSeverityForms) {
    EXPECT_NE(worst_event(12.34, 50.0).find("3 smp &middot; 12.3&times;</div>"), std::string::npos);
    EXPECT_NE(worst_event(250.4, 50.0).find("3 smp &middot; 250&times;</div>"), std::string::npos);
    // Severe both ways: the local figure is shown.
    EXPECT_NE(worst_event(12.0, 500.0).find("3 smp &middot; 12.0&times;</div>"), std::string::npos);
    EXPECT_NE(worst_event(1.0, 0.0).find("3 smp &middot; silence/full scale</div>"),
              std::string::npos);
}

TEST(ArtifactCard, StereoRowsAndTheMinorEventsParagraph) {
    ReportCase run(2, 64);
    ArtifactResult& r = run.results.artifact.result;
    run.results.artifact.ran = true;
    r.channels = 2;
    r.passed = false;
    r.channel[0].passed = true;
    r.channel[0].samples_checked = 4800;
    r.channel[1] = with_event(8.0, 20.0);
    EXPECT_EQ(card_of(run),
              "<section class=\"card\" id=\"artifact\">\n<div class=\"card-head\">\n<div "
              "class=\"htext\"><h3>Artifact Detection</h3></div>\n<span class=\"badge "
              "fail\">Fail</span>\n</div>\n<div class=\"card-body\">\n"
              "<div class=\"tile-row\">\n"
              "<div class=\"tile\"><div class=\"k\">Channel</div><div class=\"v\">L</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Events Counted</div><div "
              "class=\"v\">0</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Minor Events</div><div "
              "class=\"v\">0</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Samples Flagged</div><div class=\"v\">0 / "
              "4800</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Samples Excluded</div><div "
              "class=\"v\">0</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Worst Event</div><div class=\"v\">frame 0, "
              "0 smp &middot; silence/full scale</div></div>\n</div>\n"
              "<div class=\"tile-row card-row-gap\">\n"
              "<div class=\"tile\"><div class=\"k\">Channel</div><div class=\"v\">R</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Events Counted</div><div class=\"v "
              "fail\">1</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Minor Events</div><div "
              "class=\"v\">1</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Samples Flagged</div><div class=\"v\">3 / "
              "4800</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Samples Excluded</div><div "
              "class=\"v\">12</div></div>\n"
              "<div class=\"tile\"><div class=\"k\">Worst Event</div><div class=\"v\">frame 2400, "
              "3 smp &middot; 8.0&times;</div></div>\n</div>\n"
              "<p class=\"desc\">Minor events are outlier samples no more than 4&times; over the "
              "detection threshold (and no more than 100&times; over it measured against the "
              "whole file), or runs of exact silence or full scale shorter than 8 samples. They "
              "are listed, but only counted events fail the check.</p>\n</div>\n</section>\n");
}

TEST(ArtifactCard, ChannelWithoutEventsStillShowsTheWorstEventTile) {
    ReportCase run(1, 64);
    run.results.artifact.ran = true;
    run.results.artifact.result.channels = 1;
    run.results.artifact.result.channel[0].passed = true;
    run.results.artifact.result.channel[0].samples_checked = 64;
    EXPECT_NE(card_of(run).find("<div class=\"tile\"><div class=\"k\">Samples Excluded</div><div "
                                "class=\"v\">0</div></div>\n<div class=\"tile\"><div "
                                "class=\"k\">Worst Event</div><div class=\"v\">frame 0, 0 smp "
                                "&middot; silence/full scale</div></div>\n</div>\n<p "
                                "class=\"desc\">Minor events"),
              std::string::npos);
}

TEST(ArtifactCard, MonoRowAndReferenceOnlyNote) {
    ReportCase run(1, 64);
    run.results.artifact.ran = true;
    run.results.artifact.result.channels = 1;
    run.results.config.artifact.gates_overall.value = false;
    const std::string text = card_of(run);
    EXPECT_NE(text.find("<div class=\"card-body\">\n<p class=\"desc\">Reference only -- this run "
                        "used <code>--artifact-ref-only</code>, so a failure here doesn't affect "
                        "the overall verdict. Omit the flag to restore strict gating (the "
                        "built-in default).</p>\n<div class=\"tile-row\">\n<div "
                        "class=\"tile\"><div class=\"k\">Channel</div><div "
                        "class=\"v\">Mono</div></div>\n"),
              std::string::npos);
    EXPECT_EQ(count_of(text, "tile-row"), 1u);
}
