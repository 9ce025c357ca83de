// The Time Domain and Impulse Template cards: tiles per channel, the worst sample rows, the full
// and detail charts with their ids, and the detail window.
#include "report/cards/cards.h"
#include "report/cards/worst_sample_view.h"

#include "page_text.h"
#include "report_case.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string time_domain_of(const ReportCase& run) {
    return render_text(
        [&](TextBuffer& page) { return append_time_domain_card(page, run.inputs()); });
}

std::string impulse_of(const ReportCase& run) {
    return render_text(
        [&](TextBuffer& page) { return append_impulse_template_card(page, run.inputs()); });
}

TimeDomainChannel failing_scan() {
    TimeDomainChannel c;
    c.samples_included = 4700;
    c.samples_excluded = 100;
    c.total_fails = 3;
    c.has_failures = true;
    c.worst_sample = 2400;
    c.worst_diff_pct = 62.5;
    c.worst_ref_amp = 0.4;
    c.worst_dut_amp = -0.15;
    c.worst_tolerance_pct = 50.0;
    c.fails_low_level_signal_tier = 1;
    c.fails_signal_tier = 2;
    return c;
}

} // namespace

TEST(TimeDomainCard, LeftOutUnlessEnabled) {
    ReportCase run(1, 64);
    EXPECT_EQ(time_domain_of(run), "");
    EXPECT_EQ(impulse_of(run), "");
}

TEST(TimeDomainCard, MonoTilesWorstSampleAndCharts) {
    ReportCase run(1);
    run.results.config.time_domain.enabled.value = true;
    run.results.time_domain.ran = true;
    run.results.time_domain.result.channels = 1;
    run.results.time_domain.result.channel[0] = failing_scan();
    const std::string text = time_domain_of(run);
    EXPECT_TRUE(text.starts_with(
        "<section class=\"card\" id=\"timedomain\">\n<div class=\"card-head\">\n<div "
        "class=\"htext\"><h3>Time Domain</h3></div>\n<span class=\"badge fail\">Fail</span>\n"
        "</div>\n<div class=\"card-body\">\n<div class=\"tile-row\">\n"
        "<div class=\"tile\"><div class=\"k\">Channel</div><div class=\"v\">Mono</div></div>\n"
        "<div class=\"tile\"><div class=\"k\">Samples Included</div><div "
        "class=\"v\">4700</div></div>\n"
        "<div class=\"tile\"><div class=\"k\">Samples Excluded</div><div "
        "class=\"v\">100</div></div>\n"
        "<div class=\"tile\"><div class=\"k\">Total Fails</div><div class=\"v "
        "fail\">3</div></div>\n</div>\n"
        "<div class=\"tile-row\">\n<div class=\"tile\"><div class=\"k\">Fails: Low-Level Signal "
        "Tier</div><div class=\"v\">1</div></div>\n<div class=\"tile\"><div class=\"k\">Fails: "
        "Signal Tier</div><div class=\"v\">2</div></div>\n<div class=\"tile\"><div "
        "class=\"k\">Fails: Peak Tier</div><div class=\"v\">0</div></div>\n</div>\n"
        "<div class=\"tile-row\">\n<div class=\"tile\"><div class=\"k\">Worst Sample</div><div "
        "class=\"v\">2400 (0.050 s)</div></div>\n<div class=\"tile\"><div class=\"k\">Diff / "
        "Tolerance</div><div class=\"v fail\">62.50% / 50.00%</div></div>\n<div "
        "class=\"tile\"><div class=\"k\">Ref / DUT Amplitude</div><div class=\"v\">0.400000 / "
        "-0.150000</div></div>\n</div>\n<div>\n<div class=\"scope\">\n"));
    EXPECT_NE(text.find("<span class=\"title\">Full signal</span>"), std::string::npos);
    EXPECT_NE(text.find("data-zoom-kind=\"waveform\" id=\"sx-timedomain-frame\">\n"),
              std::string::npos);
    EXPECT_NE(text.find("id=\"sx-envelope-svg-timedomain\""), std::string::npos);
    EXPECT_NE(text.find("aria-label=\"Full-file waveform overview, reference vs. DUT\""),
              std::string::npos);
    EXPECT_NE(text.find("<span class=\"title\">Detail around worst sample</span>"),
              std::string::npos);
    EXPECT_NE(text.find("data-zoom-kind=\"waveform\" id=\"sx-timedomain-zoom-frame\">\n"),
              std::string::npos);
    EXPECT_NE(text.find("aria-label=\"Detail view around worst point, reference vs. DUT\""),
              std::string::npos);
    // The whole file of 4800 frames fits the detail view: the worst sample sits at its middle.
    EXPECT_NE(text.find("\"markers\":[{\"label\":\"Time Domain\",\"frac\":0.500000}]"),
              std::string::npos);
    EXPECT_TRUE(text.ends_with("</div>\n</section>\n"));
}

TEST(TimeDomainCard, StereoGalleryWithSuffixes) {
    ReportCase run(2);
    run.results.config.time_domain.enabled.value = true;
    run.results.time_domain.ran = true;
    run.results.time_domain.result.channels = 2;
    run.results.time_domain.result.passed = true;
    run.results.time_domain.result.channel[0].passed = true;
    run.results.time_domain.result.channel[1].passed = true;
    const std::string text = time_domain_of(run);
    EXPECT_NE(text.find("<span class=\"badge pass\">Pass</span>"), std::string::npos);
    EXPECT_NE(text.find("<div class=\"card-body\">\n<h4 class=\"channel-gallery-heading\">Left "
                        "Channel</h4>\n<div class=\"tile-row\">\n<div class=\"tile\"><div "
                        "class=\"k\">Channel</div><div class=\"v\">L</div></div>\n"),
              std::string::npos);
    EXPECT_NE(text.find("<h4 class=\"channel-gallery-heading\">Right Channel</h4>\n<div "
                        "class=\"tile-row card-row-gap\">\n<div class=\"tile\"><div "
                        "class=\"k\">Channel</div><div class=\"v\">R</div></div>\n"),
              std::string::npos);
    for (const char* id :
         {"id=\"sx-timedomain-frame-ch0\"", "id=\"sx-timedomain-zoom-frame-ch0\"",
          "id=\"sx-timedomain-frame-ch1\"", "id=\"sx-timedomain-zoom-frame-ch1\"",
          "id=\"sx-envelope-data-timedomain-ch1\"", "id=\"sx-envelope-data-timedomain-zoom-ch1\""})
        EXPECT_EQ(count_of(text, id), 1u) << id;
    EXPECT_EQ(text.find("Worst Sample"), std::string::npos);
    EXPECT_EQ(count_of(text, "\"markers\":[]"), 4u);
}

TEST(ImpulseTemplateCard, TilesWorstSampleAndCharts) {
    ReportCase run(1);
    run.results.config.impulse_template.enabled.value = true;
    run.results.impulse_template.ran = true;
    ImpulseTemplateResult& r = run.results.impulse_template.result;
    r.channels = 1;
    r.channel[0] = {false, 7, true, 48000, 0.031416, 0.5, 0.656};
    const std::string text = impulse_of(run);
    EXPECT_TRUE(text.starts_with(
        "<section class=\"card\" id=\"impulsetemplate\">\n<div class=\"card-head\">\n<div "
        "class=\"htext\"><h3>Impulse Template</h3></div>\n<span class=\"badge "
        "fail\">Fail</span>\n</div>\n<div class=\"card-body\">\n<div class=\"tile-row\">\n"
        "<div class=\"tile\"><div class=\"k\">Channel</div><div class=\"v\">Mono</div></div>\n"
        "<div class=\"tile\"><div class=\"k\">Total Fails</div><div class=\"v "
        "fail\">7</div></div>\n</div>\n<div class=\"tile-row\">\n<div class=\"tile\"><div "
        "class=\"k\">Worst Sample</div><div class=\"v\">48000 (1.000 s)</div></div>\n<div "
        "class=\"tile\"><div class=\"k\">Diff (linear)</div><div class=\"v "
        "fail\">0.031416</div></div>\n<div class=\"tile\"><div class=\"k\">Ref / DUT "
        "Amplitude</div><div class=\"v\">0.500000 / 0.656000</div></div>\n</div>\n"));
    EXPECT_NE(text.find("id=\"sx-impulsetemplate-frame\""), std::string::npos);
    EXPECT_NE(text.find("id=\"sx-impulsetemplate-zoom-frame\""), std::string::npos);
    EXPECT_NE(text.find("\"markers\":[{\"label\":\"Impulse\","), std::string::npos);
}

TEST(ImpulseTemplateCard, SkippedWhenEnabledButNotRun) {
    ReportCase run(1, 64);
    run.results.config.impulse_template.enabled.value = true;
    EXPECT_EQ(impulse_of(run),
              "<section class=\"card\" id=\"impulsetemplate\">\n<div class=\"card-head\">\n<div "
              "class=\"htext\"><h3>Impulse Template</h3></div>\n<span class=\"badge "
              "info\">Skipped</span>\n</div>\n<div class=\"card-body\">\n</div>\n</section>\n");
}
