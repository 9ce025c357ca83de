// The waveform envelope chart: the 4096-column reduction, the embedded traces, the grids and
// their labels, markers, the detail line and the data element.
#include "report/charts/envelope_chart.h"

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

// The id the chart's data element names for `trace` ("ref" or "dut"), or "null".
std::string trace_id(const std::string& page, const std::string& trace) {
    const std::string key = "\"" + trace + "\":";
    const std::size_t start = page.find(key, page.find("id=\"sx-envelope-data"));
    if (start == std::string::npos) return "<missing>";
    const std::size_t from = start + key.size();
    return page.substr(from, page.find_first_of(",}", from) - from);
}

// The JSON text of the trace element with id `id` (quoted, as the data element names it).
std::string trace_set(const std::string& page, const std::string& id) {
    const std::string key = "id=" + id + ">";
    const std::size_t start = page.find(key);
    if (start == std::string::npos) return "<missing>";
    const std::size_t from = start + key.size();
    return page.substr(from, page.find("</script>", from) - from);
}

// The JSON array text of `name` in a trace element.
std::string set_array(const std::string& set, const std::string& name) {
    const std::string key = "\"" + name + "\":[";
    const std::size_t start = set.find(key);
    if (start == std::string::npos) return "<missing>";
    const std::size_t from = start + key.size();
    return set.substr(from, set.find(']', from) - from);
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
    ChartDataSets sets;
    chart.data_sets = &sets;
    return append_envelope_chart(page, chart);
}

// The page script draws the outlines from the data; the server writes only the chart's frame.
TEST_F(EnvelopeChart, ServerDrawsNoTraceShape) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    ChartCase view = view_of(file, 0, 3);
    view.dut_file = &file;
    ASSERT_TRUE(draw(buffer, view));
    const std::string svg = content().substr(0, content().find("</svg>"));
    EXPECT_EQ(svg.find("<path"), std::string::npos);
    EXPECT_EQ(svg.find("data-trace"), std::string::npos);
    EXPECT_EQ(svg.find("-trace)"), std::string::npos);
}

TEST_F(EnvelopeChart, SilentFileOnTheDbScaleHoldsTheFloorInBothTraces) {
    const WavFile silent = memory_wav({std::vector<double>(10, 0.0)}, 48000);
    ChartCase view = view_of(silent, 0, 10);
    view.dut_file = &silent;
    view.scale = EnvelopeScale::db;
    ASSERT_TRUE(draw(buffer, view));
    const std::string id = trace_id(content(), "ref");
    // Equal traces are embedded once and named by both.
    EXPECT_EQ(id, "\"sx-envelope-set-0\"");
    EXPECT_EQ(trace_id(content(), "dut"), id);
    EXPECT_EQ(count_of(content(), "id=\"sx-envelope-set-"), 1U);
    const std::string set = trace_set(content(), id);
    // Every column, valid or not, stands at the floor.
    EXPECT_EQ(count_of(set_array(set, "min"), "-140.0000"), kEnvelopeColumns);
    EXPECT_EQ(count_of(set_array(set, "max"), "-140.0000"), kEnvelopeColumns);
    EXPECT_EQ(count_of(set_array(set, "valid"), "1"), 10U);
    EXPECT_NE(content().find("\"yScale\":\"db\""), std::string::npos);
}

// Every distinct trace of a page is embedded once, before the first chart that names it.
TEST_F(EnvelopeChart, TracesOfSeveralChartsAreEmbeddedOnce) {
    const WavFile file = memory_wav({{0.5, -0.25, 0.75}}, 48000);
    const Envelope whole = reduce_envelope(file, 0, 0, 3, 0, EnvelopeScale::linear);
    const Envelope copy = whole;
    const Envelope part = reduce_envelope(file, 0, 0, 2, 0, EnvelopeScale::linear);
    ChartDataSets sets;
    EnvelopeView first;
    first.ref = &whole;
    first.dut = &part;
    first.sample_rate = 48000;
    first.frame_count = 3;
    first.id_suffix = "-one";
    first.data_sets = &sets;
    EnvelopeView second = first;
    second.ref = &part;
    second.dut = &copy;
    second.id_suffix = "-two";
    ASSERT_TRUE(append_envelope_chart(buffer, first) && append_envelope_chart(buffer, second));
    const std::string page = content();
    EXPECT_EQ(count_of(page, "id=\"sx-envelope-set-"), 2U);
    EXPECT_NE(page.find("\"ref\":\"sx-envelope-set-0\",\"dut\":\"sx-envelope-set-1\",\"markers\""),
              std::string::npos);
    EXPECT_NE(page.find("\"ref\":\"sx-envelope-set-1\",\"dut\":\"sx-envelope-set-0\",\"markers\""),
              std::string::npos);
    EXPECT_LT(page.find("id=\"sx-envelope-set-1\""), page.find("id=\"sx-envelope-data-one\""));
    EXPECT_EQ(sets.envelopes.size(), 2U);
}

// A chart without the page's record of embedded traces is refused rather than drawn half.
TEST_F(EnvelopeChart, ChartWithoutDataSetsFails) {
    const WavFile file = memory_wav({{0.5}}, 48000);
    const Envelope envelope = reduce_envelope(file, 0, 0, 1, 0, EnvelopeScale::linear);
    EnvelopeView view;
    view.ref = &envelope;
    view.frame_count = 1;
    EXPECT_FALSE(append_envelope_chart(buffer, view));
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
        "<script type=\"application/json\" id=\"sx-envelope-set-0\">{\"min\":[" + min_values +
        "],\"max\":[" + max_values + "],\"valid\":[" + valid +
        "]}</script>\n"
        "<script type=\"application/json\" id=\"sx-envelope-data-t\">{\"chartLeft\":58.0,"
        "\"chartRight\":990.0,\"chartTop\":10.0,\"chartBottom\":156.0,\"sampleRate\":48000,"
        "\"totalFrames\":3,\"yScale\":\"amp\",\"dbMin\":-140.0,\"dbMax\":20.0,"
        "\"ref\":\"sx-envelope-set-0\",\"dut\":null,\"markers\":[{\"label\":\"Level "
        "Fidelity\",\"frac\":0.500000},"
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
    EXPECT_EQ(trace_id(content(), "dut"), trace_id(content(), "ref"));
    EXPECT_EQ(count_of(content(), "id=\"sx-envelope-set-"), 1U);
    EXPECT_NE(content().find("aria-label=\"Full-file waveform overview, reference vs. DUT\">\n"),
              std::string::npos);
}

} // namespace
