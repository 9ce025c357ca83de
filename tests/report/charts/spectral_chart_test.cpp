// The spectral chart: the grid with its labels and right edge, the
// linear nice-number steps, tier bands and lines, the embedded spectra, the fail marker, labelled
// peaks and the data element.
#include "report/charts/spectral_chart.h"

#include "chart_text.h"
#include "report/charts/spectral_parts.h"
#include "support/memory_wav.h"
#include "text_buffer_fixture.h"

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace {

// Each test's charts share one record of the page's embedded spectra, as a page's charts do.
struct SpectralChart : TextBufferTest {
    ChartDataSets sets;
};

// The labels of the frequency lines centred under the plot, left to right.
std::vector<std::string> frequency_labels(const std::string& page) {
    return texts_after(page,
                       "y=\"290.00\" font-size=\"9.5\" fill=\"var(--muted)\" "
                       "text-anchor=\"middle\">",
                       '<');
}

constexpr const char* kRightEdge48k =
    "<line x1=\"990.00\" y1=\"12.00\" x2=\"990.00\" y2=\"276.00\" stroke=\"var(--ink-soft)\" "
    "stroke-width=\"1\" opacity=\"0.55\"/>\n<text x=\"990.00\" y=\"290.00\" font-size=\"9.5\" "
    "fill=\"var(--muted)\" text-anchor=\"end\">48.0k</text>\n";

TEST(SpectralGrid, LinearNiceNumberSteps) {
    EXPECT_EQ(linear_tick_step(24000.0), 10000.0); // nice range 50000, rough step 10000
    EXPECT_EQ(linear_tick_step(22050.0), 10000.0);
    EXPECT_EQ(linear_tick_step(1000.0), 200.0); // nice range 1000, rough step 200
    EXPECT_EQ(linear_tick_step(96000.0), 20000.0);
    EXPECT_EQ(linear_tick_step(0.0), 0.0);
    EXPECT_EQ(linear_tick_step(-5.0), 0.0);
    EXPECT_NEAR(linear_tick_step(1.0), 0.2, 1e-15);
}

TEST(SpectralGrid, MajorFrequenciesOnBothScales) {
    EXPECT_EQ(major_frequencies(48000.0, FrequencyScale::log),
              (std::vector<double>{20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000}));
    EXPECT_EQ(major_frequencies(1000.0, FrequencyScale::linear),
              (std::vector<double>{0, 200, 400, 600, 800, 1000}));
    EXPECT_EQ(major_frequencies(24000.0, FrequencyScale::linear),
              (std::vector<double>{0, 10000, 20000}));
    EXPECT_EQ(major_frequencies(1e12, FrequencyScale::log).size(), 16U);
    EXPECT_TRUE(major_frequencies(0.0, FrequencyScale::linear).empty());
}

// A chart of `bins` silent bins reaching `nyquist` Hz.
SpectralChartData silent_chart(const std::vector<double>& levels, double nyquist,
                               FrequencyScale scale, ChartDataSets& sets) {
    SpectralChartData chart;
    chart.ref_db = levels;
    chart.bin_hz = nyquist / static_cast<double>(levels.size());
    chart.nyquist_hz = nyquist;
    chart.scale = scale;
    chart.data_sets = &sets;
    return chart;
}

TEST_F(SpectralChart, LogScaleAt24kHzHasNoRightEdgeLabel) {
    const std::vector<double> levels(8, -140.0);
    ASSERT_TRUE(
        append_spectral_chart(buffer, silent_chart(levels, 24000.0, FrequencyScale::log, sets)));
    EXPECT_EQ(content().find("text-anchor=\"end\">24.0k"), std::string::npos);
    EXPECT_EQ(frequency_labels(content()),
              (std::vector<std::string>{"20", "50", "100", "200", "500", "1k", "2k", "5k", "10k",
                                        "20k"}));
    EXPECT_EQ(count_of(content(), "stroke=\"var(--line-strong)\" stroke-width=\"1\" "
                                  "opacity=\"0.55\"/>"),
              18U); // 30 to 9000 Hz: six minor lines in each of three decades
}

// The minor lines follow the level lines at 3, 4, 6, ... times each power of ten on the log scale.
TEST_F(SpectralChart, LogMinorLinesFollowTheLevelLinesAtTheirFrequencies) {
    const std::vector<double> levels(8, -140.0);
    ASSERT_TRUE(
        append_spectral_chart(buffer, silent_chart(levels, 24000.0, FrequencyScale::log, sets)));
    std::string expected = "<line x1=\"58.00\" y1=\"276.00\" x2=\"990.00\" y2=\"276.00\" "
                           "stroke=\"var(--line-strong)\" stroke-width=\"1\" opacity=\"0.6\"/>\n";
    for (const char* x : {"111.30", "149.12", "202.41"}) {
        expected += std::string("<line x1=\"") + x + "\" y1=\"12.00\" x2=\"" + x +
                    "\" y2=\"276.00\" stroke=\"var(--line-strong)\" stroke-width=\"1\" "
                    "opacity=\"0.55\"/>\n";
    }
    EXPECT_NE(content().find(expected), std::string::npos);
}

TEST_F(SpectralChart, LogScaleAt48kHzLabelsTheRightEdge) {
    const std::vector<double> levels(8, -140.0);
    ASSERT_TRUE(
        append_spectral_chart(buffer, silent_chart(levels, 48000.0, FrequencyScale::log, sets)));
    EXPECT_NE(
        content().find(std::string("<line x1=\"885.17\" y1=\"12.00\" x2=\"885.17\" "
                                   "y2=\"276.00\" stroke=\"var(--ink-soft)\" "
                                   "stroke-width=\"1\" opacity=\"0.55\"/>\n<text "
                                   "x=\"885.17\" y=\"290.00\" font-size=\"9.5\" "
                                   "fill=\"var(--muted)\" text-anchor=\"middle\">20k</text>\n") +
                       kRightEdge48k),
        std::string::npos);
    EXPECT_EQ(count_of(content(), "stroke=\"var(--line-strong)\" stroke-width=\"1\" "
                                  "opacity=\"0.55\"/>"),
              20U); // plus 30 and 40 kHz
}

TEST_F(SpectralChart, LinearScaleStepsLabelsAndRightEdge) {
    const std::vector<double> levels(8, -140.0);
    ASSERT_TRUE(
        append_spectral_chart(buffer, silent_chart(levels, 24000.0, FrequencyScale::linear, sets)));
    EXPECT_EQ(frequency_labels(content()), (std::vector<std::string>{"0", "10k", "20k"}));
    EXPECT_NE(content().find("text-anchor=\"end\">24.0k</text>\n"), std::string::npos);
    EXPECT_EQ(count_of(content(), "opacity=\"0.55\"/>"), 4U); // three major lines and the edge
    text_buffer_free(buffer);
    ASSERT_TRUE(
        append_spectral_chart(buffer, silent_chart(levels, 1000.0, FrequencyScale::linear, sets)));
    EXPECT_EQ(frequency_labels(content()),
              (std::vector<std::string>{"0", "200", "400", "600", "800", "1k"}));
    EXPECT_EQ(content().find("text-anchor=\"end\">1.0k"), std::string::npos);
}

TEST_F(SpectralChart, HeadAxesLevelLabelsAndTitles) {
    const std::vector<double> levels(4, -140.0);
    SpectralChartData chart = silent_chart(levels, 4000.0, FrequencyScale::linear, sets);
    chart.dut_db = levels;
    chart.id_suffix = "-ch1";
    ASSERT_TRUE(append_spectral_chart(buffer, chart));
    const std::string page = content();
    EXPECT_EQ(page.rfind("<svg viewBox=\"0 0 1000 320\" preserveAspectRatio=\"none\" "
                         "class=\"sx-spectral-chart\" id=\"sx-spectral-svg-ch1-linear\" "
                         "role=\"img\" aria-label=\"Spectral snapshot, reference vs. DUT\">\n"
                         "<line x1=\"58.00\" y1=\"12.00\" x2=\"990.00\" y2=\"12.00\" "
                         "stroke=\"var(--line-strong)\" stroke-width=\"1\" opacity=\"0.6\"/>\n",
                         0),
              0U);
    EXPECT_EQ(count_of(page, "opacity=\"0.6\"/>"), 9U);
    EXPECT_NE(page.find("<line x1=\"58.00\" y1=\"12.00\" x2=\"58.00\" y2=\"276.00\" "
                        "stroke=\"var(--ink-soft)\" stroke-width=\"1.4\"/>\n<line x1=\"58.00\" "
                        "y1=\"276.00\" x2=\"990.00\" y2=\"276.00\" stroke=\"var(--ink-soft)\" "
                        "stroke-width=\"1.4\"/>\n<text x=\"52.00\" y=\"15.00\" font-size=\"9.5\" "
                        "fill=\"var(--muted)\" text-anchor=\"end\">20</text>\n"),
              std::string::npos);
    EXPECT_NE(page.find("text-anchor=\"end\">-140</text>\n<text x=\"524.00\" y=\"304.00\" "
                        "font-size=\"10.5\" fill=\"var(--ink-soft)\" text-anchor=\"middle\">"
                        "Frequency (Hz)</text>\n<text x=\"14.00\" y=\"144.00\" "
                        "font-size=\"10.5\" fill=\"var(--ink-soft)\" text-anchor=\"middle\" "
                        "transform=\"rotate(-90 14.00 144.00)\">Amplitude (dB)</text>\n"),
              std::string::npos);
    EXPECT_NE(page.find("<script type=\"application/json\" id=\"sx-spectral-data-ch1-linear\">"),
              std::string::npos);
}

TEST_F(SpectralChart, TinyLinearChartWithTiersFailMarkerAndPeak) {
    const std::vector<double> ref{-10.0, -20.125, -140.0, 5.0};
    const std::vector<double> dut{-11.0, -21.0, -140.0, 4.0};
    const std::vector<SpectralPeakLabel> peaks{{1000.0, -20.125, 2}};
    SpectralChartData chart = silent_chart(ref, 4000.0, FrequencyScale::linear, sets);
    chart.dut_db = dut;
    chart.id_suffix = "-t";
    chart.tiers.noise_floor_db = -100.0;
    chart.tiers.peak_db = -20.0;
    chart.fail = SpectralFailMarker{2000.0, -3.25};
    chart.peaks = peaks;
    ASSERT_TRUE(append_spectral_chart(buffer, chart));
    const std::string page = content();
    const std::string marks =
        "<rect x=\"58.00\" y=\"210.00\" width=\"932.00\" height=\"66.00\" fill=\"var(--accent)\" "
        "opacity=\"0.05\"/>"
        "<line x1=\"58.00\" y1=\"210.00\" x2=\"990.00\" y2=\"210.00\" stroke=\"var(--gate)\" "
        "stroke-width=\"1\" stroke-dasharray=\"4,3\"/>\n<text x=\"64.00\" y=\"207.00\" "
        "font-size=\"10\" fill=\"var(--gate)\" text-anchor=\"start\">noise floor -100dB</text>\n"
        "<line x1=\"58.00\" y1=\"78.00\" x2=\"990.00\" y2=\"78.00\" stroke=\"var(--gate)\" "
        "stroke-width=\"1\" stroke-dasharray=\"4,3\"/>\n<text x=\"64.00\" y=\"75.00\" "
        "font-size=\"10\" fill=\"var(--gate)\" text-anchor=\"start\">peak threshold -20dB</text>\n"
        "<path d=\"M524.00,276.00 l-5,-9 l10,0 Z\" fill=\"var(--fail)\" "
        "stroke=\"var(--fail-line)\" stroke-width=\"1\"/>"
        "<rect x=\"486.00\" y=\"248.00\" width=\"76.00\" height=\"16\" rx=\"4\" "
        "fill=\"var(--fail-soft)\" stroke=\"var(--fail-line)\" stroke-width=\"1\"/>"
        "<text x=\"524.00\" y=\"260.00\" font-size=\"10\" font-weight=\"700\" "
        "fill=\"var(--fail)\" text-anchor=\"middle\">Fail -3.2dB</text>\n"
        "<circle cx=\"291.00\" cy=\"78.21\" r=\"2.6\" fill=\"var(--accent)\"/>"
        "<line x1=\"291.00\" y1=\"74.21\" x2=\"291.00\" y2=\"67.21\" stroke=\"var(--accent)\" "
        "stroke-width=\"1\" opacity=\"0.7\"/>\n<text x=\"291.00\" y=\"54.21\" "
        "font-size=\"9.5\" font-weight=\"700\" fill=\"var(--ink)\" text-anchor=\"middle\">"
        "1.00k</text>\n<text x=\"291.00\" y=\"64.21\" font-size=\"8.5\" fill=\"var(--muted)\" "
        "text-anchor=\"middle\">-20.1dB</text>\n</svg>\n"
        "<script type=\"application/json\" id=\"sx-spectrum-set-0\">"
        "[-10.00,-20.12,-140.00,5.00]</script>\n"
        "<script type=\"application/json\" id=\"sx-spectrum-set-1\">"
        "[-11.00,-21.00,-140.00,4.00]</script>\n"
        "<script type=\"application/json\" id=\"sx-spectral-data-t-linear\">{\"chartLeft\":58.0,"
        "\"chartRight\":990.0,\"chartTop\":12.0,\"chartBottom\":276.0,\"binHz\":1000.000000,"
        "\"nyquistHz\":4000.000,\"freqMinHz\":20.0,\"dbMin\":-140.0,\"dbMax\":20.0,"
        "\"freqScale\":\"linear\",\"tierNoiseFloorDb\":-100.00,\"tierNonPeakDb\":null,"
        "\"tierPeakDb\":-20.00,\"ref\":\"sx-spectrum-set-0\","
        "\"dut\":\"sx-spectrum-set-1\",\"markers\":[{\"db\":-100.00,\"text\":\"noise "
        "floor -100dB\",\"color\":\"--gate\",\"dash\":\"4,3\",\"align\":\"start\"},"
        "{\"db\":-20.00,\"text\":\"peak threshold -20dB\",\"color\":\"--gate\",\"dash\":\"4,3\","
        "\"align\":\"start\"}],\"failMarker\":{\"freqHz\":2000.000,\"diffDb\":-3.25},"
        "\"peaks\":[{\"freqHz\":1000.000,\"levelDb\":-20.12,\"tier\":2}]}</script>\n";
    const std::size_t start = page.find("<rect");
    ASSERT_NE(start, std::string::npos);
    EXPECT_EQ(page.substr(start), marks);
}

TEST_F(SpectralChart, NullTiersNoMarksAndAbsentDut) {
    const std::vector<double> levels{-50.0, -60.0};
    ASSERT_TRUE(
        append_spectral_chart(buffer, silent_chart(levels, 2000.0, FrequencyScale::log, sets)));
    const std::string page = content();
    EXPECT_EQ(page.find("<rect"), std::string::npos);
    EXPECT_EQ(page.find("var(--gate)"), std::string::npos);
    EXPECT_NE(page.find("aria-label=\"Spectral snapshot\">\n"), std::string::npos);
    EXPECT_NE(page.find("\"freqScale\":\"log\",\"tierNoiseFloorDb\":null,\"tierNonPeakDb\":null,"
                        "\"tierPeakDb\":null,\"ref\":\"sx-spectrum-set-0\",\"dut\":null,"
                        "\"markers\":[],\"failMarker\":null,\"peaks\":[]}</script>\n"),
              std::string::npos);
}

TEST_F(SpectralChart, BandBetweenTheLowLevelAndPeakThresholds) {
    const std::vector<double> levels{-50.0};
    SpectralChartData chart = silent_chart(levels, 2000.0, FrequencyScale::log, sets);
    chart.tiers.low_level_db = -60.0;
    chart.tiers.peak_db = -20.0;
    ASSERT_TRUE(append_spectral_chart(buffer, chart));
    EXPECT_NE(content().find("<rect x=\"58.00\" y=\"78.00\" width=\"932.00\" height=\"66.00\" "
                             "fill=\"var(--accent)\" opacity=\"0.05\"/><line x1=\"58.00\" "
                             "y1=\"144.00\" x2=\"990.00\" y2=\"144.00\" stroke=\"var(--gate)\""),
              std::string::npos);
    EXPECT_EQ(count_of(content(), "<rect"), 1U);
    EXPECT_NE(content().find(">low-level signal threshold -60dB</text>\n"), std::string::npos);
    EXPECT_NE(content().find("\"tierNoiseFloorDb\":null,\"tierNonPeakDb\":-60.00,"
                             "\"tierPeakDb\":-20.00,"),
              std::string::npos);
}

TEST_F(SpectralChart, EmptySpectrumGivesAnEmptySet) {
    ASSERT_TRUE(
        append_spectral_chart(buffer, silent_chart({}, 24000.0, FrequencyScale::log, sets)));
    EXPECT_NE(content().find("</svg>\n<script type=\"application/json\" "
                             "id=\"sx-spectrum-set-0\">[]</script>\n"),
              std::string::npos);
    EXPECT_NE(content().find("\"ref\":\"sx-spectrum-set-0\",\"dut\":null,"), std::string::npos);
}

// The page script draws the spectra; the server writes only the chart's frame and marks.
TEST_F(SpectralChart, ServerDrawsNoTrace) {
    const std::vector<double> levels{-50.0, -60.0};
    SpectralChartData chart = silent_chart(levels, 2000.0, FrequencyScale::log, sets);
    chart.dut_db = levels;
    ASSERT_TRUE(append_spectral_chart(buffer, chart));
    EXPECT_EQ(content().find("<polyline"), std::string::npos);
    EXPECT_EQ(content().find("-trace)"), std::string::npos);
}

// Equal spectra, in one chart or in several, are embedded once and named by every chart.
TEST_F(SpectralChart, EqualSpectraAreEmbeddedOnce) {
    const std::vector<double> levels{-50.0, -60.0};
    const std::vector<double> same = levels;
    const std::vector<double> other{-50.0, -61.0};
    SpectralChartData first = silent_chart(levels, 2000.0, FrequencyScale::log, sets);
    first.dut_db = same;
    SpectralChartData second = silent_chart(other, 2000.0, FrequencyScale::linear, sets);
    second.dut_db = levels;
    ASSERT_TRUE(append_spectral_chart(buffer, first) && append_spectral_chart(buffer, second));
    const std::string page = content();
    EXPECT_EQ(count_of(page, "id=\"sx-spectrum-set-"), 2U);
    EXPECT_NE(page.find("id=\"sx-spectrum-set-1\">[-50.00,-61.00]</script>"), std::string::npos);
    EXPECT_NE(page.find("\"ref\":\"sx-spectrum-set-0\",\"dut\":\"sx-spectrum-set-0\","),
              std::string::npos);
    EXPECT_NE(page.find("\"ref\":\"sx-spectrum-set-1\",\"dut\":\"sx-spectrum-set-0\","),
              std::string::npos);
    EXPECT_LT(page.find("id=\"sx-spectrum-set-1\""), page.find("id=\"sx-spectral-data-linear\""));
}

TEST_F(SpectralChart, LogScaleLeavesOutMarksBelow20Hz) {
    const std::vector<double> levels{0.0, -10.0, -20.0, 30.0};
    const std::vector<SpectralPeakLabel> peaks{{10.0, -10.0, 1}, {30.0, 30.0, 2}};
    SpectralChartData chart = silent_chart(levels, 40.0, FrequencyScale::log, sets);
    chart.fail = SpectralFailMarker{10.0, 2.5};
    chart.peaks = peaks;
    ASSERT_TRUE(append_spectral_chart(buffer, chart));
    const std::string page = content();
    EXPECT_NE(page.find("<circle cx=\"603.19\" cy=\"12.00\" r=\"2.6\" fill=\"var(--accent)\"/>"),
              std::string::npos);
    EXPECT_EQ(count_of(page, "<circle"), 1U);
    EXPECT_EQ(page.find("<path d="), std::string::npos);
    EXPECT_NE(page.find(">30</text>\n<text x=\"603.19\" y=\"-2.00\" font-size=\"8.5\" "
                        "fill=\"var(--muted)\" text-anchor=\"middle\">30.0dB</text>\n"),
              std::string::npos);
    EXPECT_NE(page.find("\"failMarker\":{\"freqHz\":10.000,\"diffDb\":2.50},\"peaks\":["
                        "{\"freqHz\":10.000,\"levelDb\":-10.00,\"tier\":1},{\"freqHz\":30.000,"
                        "\"levelDb\":30.00,\"tier\":2}]}"),
              std::string::npos);
}

TEST_F(SpectralChart, FailMarkerUsesTheReferenceWithoutDutAndStaysInsideThePlot) {
    const std::vector<double> levels{-140.0, -140.0, 20.0, -140.0};
    SpectralChartData chart = silent_chart(levels, 4000.0, FrequencyScale::linear, sets);
    chart.fail = SpectralFailMarker{3900.0, 12.0};
    ASSERT_TRUE(append_spectral_chart(buffer, chart));
    // 3900 Hz is nearest bin 4, past the last bin 3 (-140 dB); the box keeps inside x 990.
    EXPECT_NE(content().find("<path d=\"M966.70,276.00 l-5,-9 l10,0 Z\" fill=\"var(--fail)\" "
                             "stroke=\"var(--fail-line)\" stroke-width=\"1\"/><rect "
                             "x=\"908.00\" y=\"248.00\" width=\"82.00\""),
              std::string::npos);
    EXPECT_NE(content().find(">Fail +12.0dB</text>\n"), std::string::npos);
    text_buffer_free(buffer);
    chart.fail = SpectralFailMarker{2000.0, 12.0};
    ASSERT_TRUE(append_spectral_chart(buffer, chart));
    EXPECT_NE(content().find("<path d=\"M524.00,12.00 l-5,-9 l10,0 Z\""), std::string::npos);
    EXPECT_NE(content().find("<rect x=\"483.00\" y=\"0.00\" width=\"82.00\""), std::string::npos);
}

TEST_F(SpectralChart, PeakLabelsBelowAndAbove1kHz) {
    const std::vector<double> levels(4, -140.0);
    const std::vector<SpectralPeakLabel> peaks{{999.4, -3.04, 0}, {12345.0, -6.0, 1}};
    SpectralChartData chart = silent_chart(levels, 24000.0, FrequencyScale::linear, sets);
    chart.peaks = peaks;
    ASSERT_TRUE(append_spectral_chart(buffer, chart));
    EXPECT_NE(content().find("text-anchor=\"middle\">999</text>"), std::string::npos);
    EXPECT_NE(content().find("text-anchor=\"middle\">-3.0dB</text>"), std::string::npos);
    EXPECT_NE(content().find("text-anchor=\"middle\">12.35k</text>"), std::string::npos);
}

TEST_F(SpectralChart, NoteForTooShortAnOverlap) {
    ASSERT_TRUE(append_spectral_chart_note(buffer));
    EXPECT_EQ(content(), "<p class=\"sx-chart-note\">Not enough overlapping samples to render a "
                         "spectral snapshot.</p>\n");
}

} // namespace
