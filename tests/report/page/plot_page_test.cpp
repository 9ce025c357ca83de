#include "report/page/page_assets.h"
#include "report/page/plot_page.h"

#include "page_text.h"
#include "support/memory_wav.h"
#include "support/signal_gen.h"
#include "support/temp_dir.h"
#include "written_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 8000;
constexpr std::size_t kFft = 1024;

// `channels` copies of a 1000 Hz tone at amplitude 0.5, 16000 frames (2.00 s), 16-bit.
WavFile tone_file(unsigned channels, std::size_t frames = 16000) {
    const std::vector<double> tone = signal_sine(1000.0, 0.5, kRate, frames);
    WavFile file = memory_wav(std::vector<std::vector<double>>(channels, tone), kRate);
    file.format = kWavFormatInt16;
    return file;
}

std::string plot_page(const WavFile& file, const TesterInfo* tester = nullptr) {
    const TempDir dir;
    PlotData plot;
    plot.input_path = "/data/takes/tone.wav";
    plot.file = &file;
    plot.fft_size = kFft;
    plot.noise_floor_db = -90.0;
    plot.tester = tester;
    build_plot_figures(file, plot.fft_size, plot.figures);
    const std::string path = dir.file("plot.html");
    EXPECT_TRUE(write_to_path(path, [&](FileReplacement& f) { return write_plot_page(f, plot); }));
    return read_text_file(path);
}

// The largest value of the spectrum that the spectral data element with id suffix `suffix` names
// as its "ref".
double spectral_data_peak(const std::string& page, const std::string& suffix) {
    const std::string data = slice_of(page, "id=\"sx-spectral-data" + suffix + "\">", "</script>");
    const std::string ref_key = "\"ref\":\"";
    const std::string named = slice_of(data, ref_key, "\",");
    const std::string set_key =
        "id=\"" + named.substr(ref_key.size(), named.size() - ref_key.size() - 2) + "\">[";
    const std::string values = slice_of(page, set_key, "]");
    double peak = -1000.0;
    const char* at = values.c_str() + set_key.size();
    while (*at != ']' && *at != '\0') {
        char* end = nullptr;
        peak = std::max(peak, std::strtod(at, &end));
        at = *end == ',' ? end + 1 : end;
    }
    return peak;
}

TEST(PlotPage, HeadTopBarSignalRowAndNavigation) {
    const std::string page = plot_page(tone_file(1));
    EXPECT_EQ(page.rfind("<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                         "<meta name=\"viewport\" content=\"width=device-width, "
                         "initial-scale=1\">\n<title>tone -- Sonalyx Plot</title>\n<style>",
                         0),
              0u);
    EXPECT_NE(page.find("<span class=\"name\">Sonalyx Plot</span>"), std::string::npos);
    EXPECT_NE(page.find(std::string("<b>v") + kSonalyxVersion + "</b></div>\n"), std::string::npos);
    EXPECT_NE(page.find("</div>\n</div>\n<div class=\"signal-row\">\n<div class=\"signal-id "
                        "single\">\n<span class=\"tag\">Signal</span>\n<span "
                        "class=\"fname\">/<wbr>data/<wbr>takes/<wbr>tone.wav</span>\n</div>\n<div "
                        "class=\"signal-meta\">8000 Hz &middot; 16-bit &middot; Mono &middot; "
                        "2.00s</div>\n</div>\n<nav class=\"nav-tabs\">\n<a "
                        "href=\"#spectral\">Spectrum</a>\n<a href=\"#spectral-linear\">Frequency "
                        "(Linear)</a>\n<a href=\"#overview\">Signal Overview</a>\n<a "
                        "href=\"#energy\">Time Energy</a>\n</nav>\n<section class=\"card\" "
                        "id=\"spectral\">\n"),
              std::string::npos);
}

TEST(PlotPage, FourSingleFileCardsWithTheirChartsInOrder) {
    const std::string page = plot_page(tone_file(1));
    const char* const heads[] = {
        "id=\"spectral\">\n<div class=\"card-head\">\n<div class=\"htext\"><h3>Spectrum</h3>",
        "id=\"spectral-linear\">\n<div class=\"card-head\">\n<div class=\"htext\"><h3>Frequency "
        "(Linear)</h3>",
        "id=\"overview\">\n<div class=\"card-head\">\n<div class=\"htext\"><h3>Signal "
        "Overview</h3>",
        "id=\"energy\">\n<div class=\"card-head\">\n<div class=\"htext\"><h3>Time Energy</h3>"};
    const char* const frames[] = {
        "<span class=\"title\">Magnitude spectrum</span>",
        "<span class=\"title\">Magnitude spectrum, linear frequency</span>",
        "<span class=\"title\">Full signal</span>",
        "<span class=\"title\">Full signal, dB scale</span>"};
    const char* const ids[] = {"id=\"sx-spectral-frame\"", "id=\"sx-spectral-linear-frame\"",
                               "id=\"sx-envelope-frame\"", "id=\"sx-energy-frame\""};
    std::size_t previous = 0;
    for (int i = 0; i < 4; ++i) {
        const std::size_t head = page.find(heads[i]);
        ASSERT_NE(head, std::string::npos) << i;
        EXPECT_GT(head, previous);
        EXPECT_EQ(page.find("</div>\n<span class=\"badge info\">Single File</span>\n", head),
                  page.find("</div>\n<span class=\"badge", head));
        EXPECT_GT(page.find(frames[i], head), head);
        EXPECT_GT(page.find(ids[i], head), head);
        previous = head;
    }
    EXPECT_EQ(count_of(page, "<span class=\"badge info\">Single File</span>"), 4u);
    EXPECT_EQ(count_of(page, "<div class=\"zoom-box\" hidden></div>\n</div>\n<div "
                             "class=\"legend-row\">\n<span><span class=\"sw\" "
                             "style=\"background:var(--ref)\"></span>Signal</span>\n</div>\n"
                             "</div>\n"),
              4u);
    EXPECT_EQ(count_of(page, "<div class=\"trace-toggle\""), 0u);
    EXPECT_EQ(count_of(page, "Device under test"), 0u);
    EXPECT_EQ(count_of(page, "<div"), count_of(page, "</div>"));
}

TEST(PlotPage, ChartsAreSingleTraceWithTheirScales) {
    const std::string page = plot_page(tone_file(1));
    EXPECT_NE(page.find("id=\"sx-spectral-data\">"), std::string::npos);
    EXPECT_NE(page.find("id=\"sx-spectral-data-linear\">"), std::string::npos);
    EXPECT_NE(page.find("\"freqScale\":\"log\",\"tierNoiseFloorDb\":-90.00,\"tierNonPeakDb\":null,"
                        "\"tierPeakDb\":null,"),
              std::string::npos);
    EXPECT_NE(page.find("\"freqScale\":\"linear\",\"tierNoiseFloorDb\":-90.00,"),
              std::string::npos);
    EXPECT_EQ(count_of(page, "\"dut\":null"), 4u);
    EXPECT_NE(slice_of(page, "id=\"sx-envelope-data\">", "</script>").find("\"yScale\":\"amp\""),
              std::string::npos);
    EXPECT_NE(
        slice_of(page, "id=\"sx-envelope-data-energy\">", "</script>").find("\"yScale\":\"db\""),
        std::string::npos);
    EXPECT_NE(page.find("\"binHz\":7.812500,\"nyquistHz\":4000.000,"), std::string::npos);
    // Both frequency scales draw the same spectrum, embedded once.
    EXPECT_EQ(count_of(page, "id=\"sx-spectrum-set-"), 1u);
    EXPECT_EQ(count_of(page, "\"ref\":\"sx-spectrum-set-0\""), 2u);
}

TEST(PlotPage, SpectralFrameIsCentredInTheFile) {
    // Silence, one frame of tone, silence: only the centred frame sees the tone at -6.02 dB.
    WavFile file = tone_file(1, 3 * kFft);
    for (std::size_t f = 0; f < file.frames; ++f) {
        if (f < kFft || f >= 2 * kFft) file.samples[f] = 0.0;
    }
    const std::string page = plot_page(file);
    EXPECT_NEAR(spectral_data_peak(page, ""), -6.02, 0.005);
    EXPECT_NEAR(spectral_data_peak(page, "-linear"), -6.02, 0.005);
}

TEST(PlotPage, FileShorterThanTheFrameShowsTheChartNote) {
    const std::string page = plot_page(tone_file(1, kFft - 1));
    EXPECT_EQ(count_of(page,
                       "<p class=\"sx-chart-note\">Not enough overlapping samples to render a "
                       "spectral snapshot.</p>\n"),
              2u);
    EXPECT_NE(page.find("id=\"sx-spectral-frame\">\n<p class=\"sx-chart-note\">"),
              std::string::npos);
    EXPECT_NE(page.find("id=\"sx-envelope-data\">"), std::string::npos);
}

TEST(PlotPage, StereoShowsHeadedChannelBlocksWithSuffixes) {
    const std::string page = plot_page(tone_file(2));
    EXPECT_NE(page.find("&middot; Stereo &middot;"), std::string::npos);
    EXPECT_EQ(count_of(page, "<h4 class=\"channel-gallery-heading\">Left Channel</h4>\n"), 4u);
    EXPECT_EQ(count_of(page, "<h4 class=\"channel-gallery-heading\">Right Channel</h4>\n"), 4u);
    for (const char* id : {"sx-spectral-frame", "sx-spectral-linear-frame", "sx-envelope-frame",
                           "sx-energy-frame"}) {
        EXPECT_NE(page.find(std::string("id=\"") + id + "-ch0\""), std::string::npos) << id;
        EXPECT_NE(page.find(std::string("id=\"") + id + "-ch1\""), std::string::npos) << id;
    }
    EXPECT_NE(page.find("id=\"sx-envelope-data-energy-ch1\""), std::string::npos);
    EXPECT_NE(page.find("id=\"sx-spectral-data-ch1-linear\""), std::string::npos);
    EXPECT_EQ(count_of(page, "class=\"zoom-frame\""), 8u);
}

TEST(PlotPage, SixChannelFileIsMonoWithOneChartPerCard) {
    const std::string page = plot_page(tone_file(6));
    EXPECT_NE(page.find("<div class=\"signal-meta\">8000 Hz &middot; 16-bit &middot; Mono "
                        "&middot; 2.00s</div>"),
              std::string::npos);
    EXPECT_EQ(count_of(page, "class=\"zoom-frame\""), 4u);
    EXPECT_EQ(count_of(page, "<h4 class=\"channel-gallery-heading\""), 0u);
    EXPECT_EQ(count_of(page, "-ch0"), 0u);
    EXPECT_NE(page.find("id=\"sx-spectral-frame\""), std::string::npos);
}

TEST(PlotPage, FooterScriptsAndNoResultsJson) {
    const TesterInfo tester{"Ada", "Widget", ""};
    const std::string page = plot_page(tone_file(1), &tester);
    const std::string scripts =
        render_text([](TextBuffer& b) { return append_theme_script(b) && append_chart_script(b); });
    EXPECT_NE(page.find("<footer>\n<div class=\"footer-row-top\">\n<span><b>Sonalyx</b> v" +
                        std::string(kSonalyxVersion) + "</span>\n<span>plot generated "),
              std::string::npos);
    EXPECT_NE(page.find(" UTC</span>\n</div>\n<div class=\"footer-row-tester\">Tested by "
                        "<b>Ada</b> &middot; product <b>Widget</b></div>\n</footer>\n</div>\n" +
                        scripts + "</body>\n</html>\n"),
              std::string::npos);
    EXPECT_TRUE(page.ends_with(scripts + "</body>\n</html>\n"));
    EXPECT_EQ(count_of(page, "sonalyx-results"), 0u);
}

TEST(PlotPage, AFailedWriteFails) {
    const WavFile file = tone_file(1);
    PlotData plot;
    plot.input_path = "tone.wav";
    plot.file = &file;
    plot.fft_size = kFft;
    build_plot_figures(file, plot.fft_size, plot.figures);
    FileReplacement full;
    if (!open_full_device(full)) GTEST_SKIP() << "no /dev/full";
    EXPECT_FALSE(write_plot_page(full, plot));
}

} // namespace
