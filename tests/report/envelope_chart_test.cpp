// The waveform envelope chart: the 4096-column reduction, the one-pass outline, the grids and
// their labels, markers, the detail line and the data element.
#include "report/envelope_chart.h"

#include "chart_text.h"
#include "support/memory_wav.h"
#include "text_buffer_fixture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace {

using EnvelopeChart = TextBufferTest;

constexpr std::size_t kLast = kEnvelopeColumns - 1;

// The d attribute of the shape drawn for `trace` ("ref" or "dut").
std::string path_of(const std::string& page, const std::string& trace) {
    const std::string key = "data-trace=\"" + trace + "\" d=\"";
    const std::size_t start = page.find(key);
    if (start == std::string::npos) return "<missing>";
    const std::size_t from = start + key.size();
    return page.substr(from, page.find('"', from) - from);
}

// A chart's view of in-memory files; drawing it reduces their envelopes first, as the page's
// figures would hold them (the DUT read `dut_offset` frames later).
struct ChartCase : EnvelopeView {
    const WavFile* ref_file = nullptr;
    const WavFile* dut_file = nullptr;
    std::int64_t dut_offset = 0;
    unsigned channel = 0;
};

ChartCase view_of(const WavFile& ref, std::int64_t first, std::size_t count) {
    ChartCase view;
    view.ref_file = &ref;
    view.first_frame = first;
    view.frame_count = count;
    view.id_suffix = "-t";
    view.title = "Full-file waveform overview";
    return view;
}

bool draw(TextBuffer& page, ChartCase chart) {
    const Envelope ref = reduce_envelope(*chart.ref_file, chart.channel, chart.first_frame,
                                         chart.frame_count, 0, chart.scale);
    Envelope dut;
    if (chart.dut_file != nullptr) {
        dut = reduce_envelope(*chart.dut_file, chart.channel, chart.first_frame, chart.frame_count,
                              chart.dut_offset, chart.scale);
    }
    chart.ref = &ref;
    chart.dut = chart.dut_file != nullptr ? &dut : nullptr;
    chart.sample_rate = chart.ref_file->sample_rate;
    return append_envelope_chart(page, chart);
}

TEST_F(EnvelopeChart, OutlineOfThreeFramesGivesOnlyTheLastPieceItsLowerEdge) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    ASSERT_TRUE(draw(buffer, view_of(file, 0, 3)));
    EXPECT_EQ(path_of(content(), "ref"), "M368.59,52.58 L368.82,52.58 Z "
                                         "M679.18,98.21 L679.41,98.21 Z "
                                         "M989.77,37.38 L990.00,37.38 L989.77,37.38 Z ");
    EXPECT_NE(content().find("<path fill=\"var(--ref-trace)\" fill-opacity=\"0.85\" "
                             "stroke=\"none\" data-trace=\"ref\" d=\"M368.59"),
              std::string::npos);
}

TEST_F(EnvelopeChart, InvalidLastColumnLeavesEveryPieceWithoutLowerEdge) {
    const WavFile file = memory_wav({{0.5, -0.25}}, 48000);
    ASSERT_TRUE(draw(buffer, view_of(file, 0, 3)));
    EXPECT_EQ(path_of(content(), "ref"),
              "M368.59,52.58 L368.82,52.58 Z M679.18,98.21 L679.41,98.21 Z ");
}

TEST_F(EnvelopeChart, FullViewWalksTheLowerEdgeBackToTheFirstColumn) {
    const WavFile file = memory_wav({std::vector<double>(kEnvelopeColumns, 0.6)}, 48000);
    ASSERT_TRUE(draw(buffer, view_of(file, 0, kEnvelopeColumns)));
    const std::string d = path_of(content(), "ref");
    EXPECT_EQ(d.rfind("M58.00,46.50 L58.23,46.50 L58.46,46.50 ", 0), 0U);
    EXPECT_EQ(count_of(d, "L"), 2 * kEnvelopeColumns);
    EXPECT_EQ(count_of(d, "Z "), 1U);
    EXPECT_EQ(d.substr(d.size() - 28), "L58.23,46.50 L58.00,46.50 Z ");
}

TEST_F(EnvelopeChart, SilentFileOnTheDbScaleDrawsBothShapesAtTheFloor) {
    const WavFile silent = memory_wav({std::vector<double>(10, 0.0)}, 48000);
    ChartCase view = view_of(silent, 0, 10);
    view.dut_file = &silent;
    view.scale = EnvelopeScale::db;
    ASSERT_TRUE(draw(buffer, view));
    for (const char* trace : {"ref", "dut"}) {
        const std::string d = path_of(content(), trace);
        const std::vector<std::string> heights = texts_after(d, ",", ' ');
        for (const std::string& y : heights) {
            EXPECT_EQ(y, "156.00") << trace;
        }
        // Ten two-point pieces and one lower-edge point.
        EXPECT_EQ(heights.size(), 2 * 10U + 1U) << trace;
    }
    EXPECT_NE(content().find("<path fill=\"var(--dut-trace)\" fill-opacity=\"0.55\" "
                             "stroke=\"none\" data-trace=\"dut\" d=\""),
              std::string::npos);
}

TEST_F(EnvelopeChart, AmplitudeAboveTheScaleIsDrawnAtTheTop) {
    const WavFile file = memory_wav({{1.5}}, 48000);
    ASSERT_TRUE(draw(buffer, view_of(file, 0, 1)));
    EXPECT_EQ(path_of(content(), "ref"), "M989.77,10.00 L990.00,10.00 L989.77,10.00 Z ");
}

TEST_F(EnvelopeChart, DataElementOfATinyView) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    const std::vector<ChartMarker> markers{{"Level Fidelity", 0.5}, {"a\"b", 1.5}};
    ChartCase view = view_of(file, 0, 3);
    view.markers = markers;
    ASSERT_TRUE(draw(buffer, view));
    std::string min_values;
    std::string max_values;
    std::string valid;
    for (std::size_t i = 0; i < kEnvelopeColumns; ++i) {
        const char* value = i == 1365    ? "0.5000"
                            : i == 2730  ? "-0.2500"
                            : i == kLast ? "0.7500"
                                         : "0.0000";
        const bool holds_frame = i == 1365 || i == 2730 || i == kLast;
        min_values += (i == 0 ? "" : ",") + std::string(value);
        valid += (i == 0 ? "" : ",") + std::string(holds_frame ? "1" : "0");
    }
    max_values = min_values;
    const std::string expected =
        "<script type=\"application/json\" id=\"sx-envelope-data-t\">{\"chartLeft\":58.0,"
        "\"chartRight\":990.0,\"chartTop\":10.0,\"chartBottom\":156.0,\"sampleRate\":48000,"
        "\"totalFrames\":3,\"yScale\":\"amp\",\"dbMin\":-140.0,\"dbMax\":20.0,\"ref\":{\"min\":[" +
        min_values + "],\"max\":[" + max_values + "],\"valid\":[" + valid +
        "]},\"dut\":null,\"markers\":[{\"label\":\"Level Fidelity\",\"frac\":0.500000},"
        "{\"label\":\"a\\\"b\",\"frac\":1.500000}]}</script>\n";
    const std::string page = content();
    const std::size_t start = page.find("<script");
    ASSERT_NE(start, std::string::npos);
    EXPECT_EQ(page.substr(start), expected);
    EXPECT_EQ(page.substr(start - 7, 7), "</svg>\n");
}

TEST_F(EnvelopeChart, MarkersPastTheViewStopAtTheRightEdge) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    const std::vector<ChartMarker> markers{{"<b>", 1.5}, {"Artifact", 0.25}};
    ChartCase view = view_of(file, 0, 3);
    view.markers = markers;
    ASSERT_TRUE(draw(buffer, view));
    EXPECT_NE(content().find("<line x1=\"990.00\" y1=\"10.00\" x2=\"990.00\" y2=\"156.00\" "
                             "stroke=\"var(--fail)\" stroke-width=\"1\" "
                             "stroke-dasharray=\"3,2\"/>\n<text x=\"993.00\" y=\"12.00\" "
                             "font-size=\"9\" fill=\"var(--fail)\" transform=\"rotate(-90 993.00 "
                             "12.00)\" text-anchor=\"start\">&lt;b&gt;</text><line x1=\"291.00\""),
              std::string::npos);
    EXPECT_NE(content().find("{\"label\":\"<b>\",\"frac\":1.500000}"), std::string::npos);
}

TEST_F(EnvelopeChart, DetailLineAtItsPosition) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    ChartCase view = view_of(file, 0, 3);
    view.detail_frac = 0.5;
    ASSERT_TRUE(draw(buffer, view));
    EXPECT_NE(content().find("<line x1=\"524.00\" y1=\"10.00\" x2=\"524.00\" y2=\"156.00\" "
                             "stroke=\"var(--line)\" stroke-width=\"1.5\" "
                             "stroke-dasharray=\"4,3\" opacity=\"0.8\"/>\n</svg>\n"),
              std::string::npos);
}

TEST_F(EnvelopeChart, SvgHeadAxesAndTitles) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    ChartCase view = view_of(file, 0, 3);
    view.dut_file = &file;
    view.title = "Detail view around worst point";
    view.scale = EnvelopeScale::db;
    ASSERT_TRUE(draw(buffer, view));
    EXPECT_EQ(content().rfind("<svg viewBox=\"0 0 1000 200\" preserveAspectRatio=\"none\" "
                              "class=\"sx-envelope\" id=\"sx-envelope-svg-t\" role=\"img\" "
                              "aria-label=\"Detail view around worst point, reference vs. "
                              "DUT\">\n<line x1=\"58.00\" y1=\"10.00\" x2=\"58.00\" "
                              "y2=\"156.00\" stroke=\"var(--ink-soft)\" stroke-width=\"1.4\"/>\n"
                              "<line x1=\"58.00\" y1=\"156.00\" x2=\"990.00\" y2=\"156.00\" "
                              "stroke=\"var(--ink-soft)\" stroke-width=\"1.4\"/>\n",
                              0),
              0U);
    EXPECT_NE(content().find("<text x=\"524.00\" y=\"184.00\" font-size=\"10.5\" "
                             "fill=\"var(--ink-soft)\" text-anchor=\"middle\">Time (s)</text>\n"
                             "<text x=\"14.00\" y=\"83.00\" font-size=\"10.5\" "
                             "fill=\"var(--ink-soft)\" text-anchor=\"middle\" "
                             "transform=\"rotate(-90 14.00 83.00)\">Amplitude (dB)</text>\n"),
              std::string::npos);
    EXPECT_NE(content().find("\"yScale\":\"db\""), std::string::npos);
}

TEST_F(EnvelopeChart, DbGridEveryTwentyDbWithLabels) {
    const WavFile file = memory_wav({{0.5}}, 48000);
    ChartCase view = view_of(file, 0, 1);
    view.scale = EnvelopeScale::db;
    ASSERT_TRUE(draw(buffer, view));
    EXPECT_EQ(count_of(content(), "opacity=\"0.55\"/>\n<text x=\"52.00\""), 9U);
    EXPECT_NE(content().find("<line x1=\"58.00\" y1=\"10.00\" x2=\"990.00\" y2=\"10.00\" "
                             "stroke=\"var(--ink-soft)\" stroke-width=\"1\" opacity=\"0.55\"/>\n"
                             "<text x=\"52.00\" y=\"13.00\" font-size=\"9.5\" "
                             "fill=\"var(--muted)\" text-anchor=\"end\">20</text>\n"),
              std::string::npos);
    EXPECT_NE(content().find("y=\"159.00\" font-size=\"9.5\" fill=\"var(--muted)\" "
                             "text-anchor=\"end\">-140</text>\n"),
              std::string::npos);
}

TEST_F(EnvelopeChart, LinearGridRunsFromPlusToMinusOnePointTwoWithAStrongerZeroLine) {
    const WavFile file = memory_wav({{0.5}}, 48000);
    ASSERT_TRUE(draw(buffer, view_of(file, 0, 1)));
    const std::string page = content();
    EXPECT_EQ(count_of(page, "text-anchor=\"end\">"), 13U);
    EXPECT_NE(page.find("text-anchor=\"end\">+1.2</text>"), std::string::npos);
    EXPECT_NE(page.find("<line x1=\"58.00\" y1=\"83.00\" x2=\"990.00\" y2=\"83.00\" "
                        "stroke=\"var(--ink-soft)\" stroke-width=\"1\" opacity=\"0.9\"/>\n"
                        "<text x=\"52.00\" y=\"86.00\" font-size=\"9.5\" fill=\"var(--muted)\" "
                        "text-anchor=\"end\">+0.0</text>\n"),
              std::string::npos);
    EXPECT_NE(page.find("<line x1=\"58.00\" y1=\"156.00\" x2=\"990.00\" y2=\"156.00\" "
                        "stroke=\"var(--ink-soft)\" stroke-width=\"1\" opacity=\"0.55\"/>\n"
                        "<text x=\"52.00\" y=\"159.00\" font-size=\"9.5\" fill=\"var(--muted)\" "
                        "text-anchor=\"end\">-1.2</text>\n"),
              std::string::npos);
    EXPECT_NE(page.find(">Amplitude</text>"), std::string::npos);
}

// The labels of the six major time lines, left to right.
std::vector<std::string> time_labels(const std::string& page) {
    return texts_after(page,
                       "y=\"170.00\" font-size=\"9.5\" fill=\"var(--muted)\" "
                       "text-anchor=\"middle\">",
                       '<');
}

TEST_F(EnvelopeChart, ShortViewLabelsSecondsWithOneDecimal) {
    const WavFile file = memory_wav({std::vector<double>(50, 0.1)}, 10);
    ASSERT_TRUE(draw(buffer, view_of(file, 0, 50)));
    EXPECT_EQ(time_labels(content()),
              (std::vector<std::string>{"0.0s", "1.0s", "2.0s", "3.0s", "4.0s", "5.0s"}));
    EXPECT_EQ(count_of(content(), "stroke=\"var(--line-strong)\" stroke-width=\"1\" "
                                  "opacity=\"0.5\"/>"),
              15U);
    EXPECT_NE(content().find("<line x1=\"244.40\" y1=\"10.00\" x2=\"244.40\" y2=\"156.00\" "
                             "stroke=\"var(--ink-soft)\" stroke-width=\"1\" opacity=\"0.5\"/>\n"
                             "<text x=\"244.40\" y=\"170.00\""),
              std::string::npos);
}

// Three minor lines at quarter steps between neighbouring major lines (x = 58 + 932 t / 20 for
// t not a multiple of 4), all drawn before the first major line.
TEST_F(EnvelopeChart, MinorTimeLinesStandAtQuarterStepsBetweenMajorLines) {
    const WavFile file = memory_wav({std::vector<double>(50, 0.1)}, 10);
    ASSERT_TRUE(draw(buffer, view_of(file, 0, 50)));
    const char* minor = "\" y1=\"10.00\" x2=\"";
    const char* style = "\" y2=\"156.00\" stroke=\"var(--line-strong)\" stroke-width=\"1\" "
                        "opacity=\"0.5\"/>\n";
    std::string expected;
    for (const char* x : {"104.60", "151.20", "197.80", "291.00"}) {
        expected += std::string("<line x1=\"") + x + minor + x + style;
    }
    EXPECT_NE(content().find("-1.2</text>\n" + expected), std::string::npos);
    EXPECT_NE(content().find(std::string("<line x1=\"943.40") + minor + "943.40" + style +
                             "<line x1=\"58.00\" y1=\"10.00\" x2=\"58.00\" y2=\"156.00\" "
                             "stroke=\"var(--ink-soft)\" stroke-width=\"1\" opacity=\"0.5\"/>\n"
                             "<text x=\"58.00\" y=\"170.00\""),
              std::string::npos);
}

TEST_F(EnvelopeChart, ViewEndingAtAMinuteLabelsMinutesAndRoundedSeconds) {
    const WavFile file = memory_wav({std::vector<double>(700, 0.1)}, 10);
    ASSERT_TRUE(draw(buffer, view_of(file, 0, 600)));
    EXPECT_EQ(time_labels(content()),
              (std::vector<std::string>{"0:00", "0:12", "0:24", "0:36", "0:48", "1:00"}));
    text_buffer_free(buffer);
    ASSERT_TRUE(draw(buffer, view_of(file, 5, 600)));
    EXPECT_EQ(time_labels(content()),
              (std::vector<std::string>{"0:01", "0:13", "0:25", "0:37", "0:49", "1:01"}));
    text_buffer_free(buffer);
    ASSERT_TRUE(draw(buffer, view_of(file, 0, 599)));
    EXPECT_EQ(time_labels(content()).back(), "59.9s");
}

TEST_F(EnvelopeChart, DutTraceReadsAtItsOffset) {
    const WavFile ref = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    const WavFile dut = memory_wav({{0.9, 0.5, -0.25, 0.75}}, 48000);
    ChartCase view = view_of(ref, 0, 3);
    view.dut_file = &dut;
    view.dut_offset = 1;
    ASSERT_TRUE(draw(buffer, view));
    EXPECT_EQ(path_of(content(), "dut"), path_of(content(), "ref"));
    EXPECT_NE(content().find("aria-label=\"Full-file waveform overview, reference vs. DUT\">\n"),
              std::string::npos);
    EXPECT_EQ(count_of(content(), "\"dut\":{\"min\":[0.0000,"), 1U);
}

} // namespace
