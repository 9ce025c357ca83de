// The analyze page: the signal row, the KPI grid, the navigation tabs, the embedded results JSON
// and the whole page written in one piece.
#include "report/page/analyze_parts.h"
#include "report/page/analyze_report.h"

#include "page_text.h"
#include "report_case.h"
#include "support/temp_dir.h"
#include "written_file.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string kpi_of(const RunResults& results) {
    return render_text([&](TextBuffer& page) { return append_kpi_grid(page, results); });
}

std::string nav_of(const RunResults& results) {
    return render_text([&](TextBuffer& page) { return append_nav_tabs(page, results); });
}

std::string embedded(std::string_view json) {
    return render_text([&](TextBuffer& page) { return append_results_element(page, json); });
}

std::string mode_value(const RunResults& results) {
    return slice_of(kpi_of(results), "Analysis Mode</div>\n", "</div>\n</div>\n");
}

} // namespace

TEST(AnalyzeSignalRow, SixChannelReferenceIsLabelledMono) {
    ReportCase run(6, 64);
    const std::string text =
        render_text([&](TextBuffer& page) { return append_signal_row(page, run.inputs()); });
    EXPECT_TRUE(text.ends_with("</span>\n</div>\n<div class=\"signal-meta\">48000 Hz &middot; "
                               "64-bit float &middot; Mono</div>\n</div>\n"));
}

TEST(AnalyzeSignalRow, StereoReferenceWithItsFormatWord) {
    ReportCase run(2, 64);
    run.ref.format = kWavFormatInt24;
    const std::string text =
        render_text([&](TextBuffer& page) { return append_signal_row(page, run.inputs()); });
    EXPECT_NE(text.find("<div class=\"signal-meta\">48000 Hz &middot; 24-bit &middot; "
                        "Stereo</div>\n</div>\n"),
              std::string::npos);
}

TEST(AnalyzeKpi, DefaultRunShowsTheSpectralProfileTitle) {
    ReportCase run(1, 64);
    EXPECT_EQ(mode_value(run.results),
              "Analysis Mode</div>\n<div class=\"v\">Frequency Domain</div>\n</div>\n");
    run.results.config.spectral_fidelity.profile.value = "freq_sweep";
    run.results.config.time_domain.enabled.value = true;
    run.results.config.impulse_template.enabled.value = true;
    EXPECT_EQ(mode_value(run.results), "Analysis Mode</div>\n<div class=\"v\">Frequency Sweep + "
                                       "Deepscan + Impulse</div>\n</div>\n");
    run.results.config.spectral_fidelity.profile.value = "amp_sweep";
    run.results.config.time_domain.enabled.value = false;
    EXPECT_EQ(mode_value(run.results),
              "Analysis Mode</div>\n<div class=\"v\">Amplitude Sweep + Impulse</div>\n</div>\n");
}

TEST(AnalyzeKpi, BitModesAddTheProfileAsSubLine) {
    ReportCase run(1, 64);
    run.results.bit_exact.ran = true;
    run.results.config.bit_exact.gates_overall.value = true;
    run.results.config.bit_accuracy.enabled.value = true;
    EXPECT_EQ(mode_value(run.results),
              "Analysis Mode</div>\n<div class=\"v\">Bit-Exact + Bit Accuracy</div>\n<div "
              "class=\"kpi-sub\">Frequency Domain</div>\n</div>\n");
    run.results.config.bit_accuracy.enabled.value = false;
    run.results.config.time_domain.enabled.value = true;
    EXPECT_EQ(mode_value(run.results),
              "Analysis Mode</div>\n<div class=\"v\">Bit-Exact + Deepscan</div>\n<div "
              "class=\"kpi-sub\">Frequency Domain</div>\n</div>\n");
    // Ran but not gating: not a bit mode.
    run.results.config.bit_exact.gates_overall.value = false;
    run.results.config.bit_accuracy.enabled.value = true;
    EXPECT_EQ(mode_value(run.results),
              "Analysis Mode</div>\n<div class=\"v\">Bit Accuracy + Deepscan</div>\n<div "
              "class=\"kpi-sub\">Frequency Domain</div>\n</div>\n");
}

TEST(AnalyzeKpi, SpectralTileForEachMode) {
    ReportCase run(2, 64);
    const std::string head = "Spectral Fidelity</div>\n<div class=\"v\">";
    EXPECT_NE(kpi_of(run.results).find(head + "&mdash;<small> n/a</small></div>\n</div>\n"),
              std::string::npos);
    run.results.spectral.ran = true;
    SpectralScanResult& scan = run.results.spectral.result.scan;
    scan.channels = 2;
    scan.channel[0].p99_ratio = 0.5;
    scan.channel[1].p99_ratio = 1.256;
    EXPECT_NE(kpi_of(run.results).find(head + "1.26<small> p99 ratio</small></div>\n</div>\n"),
              std::string::npos);
    scan.channel[1].insufficient_samples = true;
    EXPECT_NE(kpi_of(run.results).find(head + "&mdash;<small> n/a</small></div>\n</div>\n"),
              std::string::npos);
    SpectralOutcome& outcome = run.results.spectral.result;
    outcome.snapshot_mode = true;
    outcome.snapshots.channels = 2;
    outcome.snapshots.snapshots.resize(3);
    outcome.snapshots.snapshots[1].channel[1].passed = false;
    EXPECT_NE(kpi_of(run.results).find(head + "2/3<small> snapshots</small></div>\n</div>\n"),
              std::string::npos);
}

TEST(AnalyzeKpi, ThdnTileForEachState) {
    ReportCase run(2, 64);
    const std::string head = "THD+N</div>\n<div class=\"v\">";
    run.results.config.distortion.enabled.value = false;
    EXPECT_NE(kpi_of(run.results).find(head + "&mdash;<small> skipped</small></div>\n</div>\n"),
              std::string::npos);
    run.results.config.distortion.enabled.value = true;
    run.results.distortion.ran = true;
    DistortionResult& d = run.results.distortion.result;
    d.channels = 2;
    d.channel[0] = {true, false, false, 4, 0, 0, 1000.0, 0.0012, -58.4, 0.001, 0.0012};
    d.channel[1] = {false, false, false, 4, 0, 0, 1000.0, 0.0234, -32.6, 0.02, 0.0234};
    EXPECT_NE(kpi_of(run.results).find(head + "2.34<small> %</small></div>\n</div>\n"),
              std::string::npos);
    d.channel[1].frame_gated = true;
    EXPECT_NE(kpi_of(run.results).find(head + "0.12<small> %</small></div>\n</div>\n"),
              std::string::npos);
    d.channel[0].insufficient_samples = true;
    EXPECT_NE(kpi_of(run.results).find(head + "&mdash;<small> n/a</small></div>\n</div>\n"),
              std::string::npos);
}

TEST(AnalyzeKpi, VerdictTileClosesTheGrid) {
    ReportCase run(1, 64);
    EXPECT_TRUE(kpi_of(run.results)
                    .ends_with("<div class=\"kpi verdict ok\">\n<div class=\"k\">Overall "
                               "Verdict</div>\n<div class=\"v\">PASS</div>\n</div>\n</div>\n"));
    run.results.overall.passed = false;
    EXPECT_TRUE(kpi_of(run.results)
                    .ends_with("<div class=\"kpi verdict\">\n<div class=\"k\">Overall "
                               "Verdict</div>\n<div class=\"v\">FAIL</div>\n</div>\n</div>\n"));
}

TEST(AnalyzeKpi, NoteOnlyForANonGatingBitExactFailure) {
    ReportCase run(1, 64);
    const std::string note = "<div class=\"kpi-note\">Bit-Exactness failed but is not gating the "
                             "overall verdict &mdash; run with <code>--bitexact</code> to require "
                             "an exact match. See the Bit-Exactness section below for "
                             "details.</div>\n";
    run.results.bit_exact.ran = true;
    run.results.bit_exact.result.passed = false;
    EXPECT_TRUE(kpi_of(run.results).ends_with("</div>\n</div>\n" + note));
    run.results.config.bit_exact.gates_overall.value = true;
    EXPECT_EQ(kpi_of(run.results).find("kpi-note"), std::string::npos);
    run.results.config.bit_exact.gates_overall.value = false;
    run.results.bit_exact.result.passed = true;
    EXPECT_EQ(kpi_of(run.results).find("kpi-note"), std::string::npos);
}

TEST(AnalyzeNav, PassingDefaultRunHasNoMarks) {
    ReportCase run(1, 64);
    EXPECT_EQ(nav_of(run.results),
              "<nav class=\"nav-tabs\">\n<a href=\"#alignment\">Signal Alignment</a>\n<a "
              "href=\"#spectral\">Spectral Fidelity</a>\n<a href=\"#overview\">Signal "
              "Overview</a>\n<a href=\"#level\">Level Fidelity</a>\n<a href=\"#artifact\">Artifact "
              "Detection</a>\n<a href=\"#distortion\">Distortion</a>\n<a "
              "href=\"#loudness\">Loudness</a>\n</nav>\n");
}

TEST(AnalyzeNav, FailuresAreMarkedAndNonGatingOnesSaySo) {
    ReportCase run(2, 64);
    RunResults& r = run.results;
    r.alignment.aligned = false;
    r.spectral.ran = true;
    r.spectral.result.scan.passed = false;
    r.bit_exact.ran = true;      // fails, not gating by default
    r.level_fidelity.ran = true; // fails, gating by default
    r.artifact.ran = true;
    r.artifact.result.passed = true;
    r.distortion.ran = true; // fails, always gating
    r.loudness.ran = true;   // fails, reference-only by default
    r.config.time_domain.enabled.value = true;
    r.time_domain.ran = true;
    r.config.impulse_template.enabled.value = true;
    r.impulse_template.ran = true;
    r.impulse_template.result.passed = true;
    EXPECT_EQ(nav_of(r),
              "<nav class=\"nav-tabs\">\n<a href=\"#alignment\" data-fail>Signal Alignment</a>\n"
              "<a href=\"#spectral\" data-fail>Spectral Fidelity</a>\n<a href=\"#overview\">Signal "
              "Overview</a>\n<a href=\"#bitexact\" data-fail data-nongating>Bit-Exactness</a>\n"
              "<a href=\"#level\" data-fail>Level Fidelity</a>\n<a href=\"#artifact\">Artifact "
              "Detection</a>\n<a href=\"#distortion\" data-fail>Distortion</a>\n<a "
              "href=\"#loudness\" data-fail data-nongating>Loudness</a>\n<a href=\"#timedomain\" "
              "data-fail>Time Domain</a>\n<a href=\"#impulsetemplate\">Impulse Template</a>\n"
              "</nav>\n");
}

TEST(AnalyzeNav, BitAccuracyLinkWhenOnlyItRan) {
    ReportCase run(1, 64);
    RunResults& r = run.results;
    r.config.bit_accuracy.enabled.value = true;
    r.bit_accuracy.ran = true;
    EXPECT_NE(nav_of(r).find("<a href=\"#bitexact\" data-fail data-nongating>Bit Accuracy</a>\n"),
              std::string::npos);
    r.bit_accuracy.result.passed = true;
    EXPECT_NE(nav_of(r).find("<a href=\"#bitexact\">Bit Accuracy</a>\n"), std::string::npos);
    r.config.level_fidelity.gates_overall.value = false;
    r.level_fidelity.ran = true;
    EXPECT_NE(nav_of(r).find("<a href=\"#level\" data-fail data-nongating>Level Fidelity</a>\n"),
              std::string::npos);
}

TEST(AnalyzeResultsElement, LowerCaseScriptEndIsRewritten) {
    EXPECT_EQ(embedded("{\"a\": \"x</script>y</scripts\"}"),
              "<script type=\"application/json\" id=\"sonalyx-results\">\n{\"a\": "
              "\"x<\\/script>y<\\/scripts\"}\n</script>\n");
}

TEST(AnalyzeResultsElement, OtherCasesAndPiecesAreCopied) {
    EXPECT_EQ(embedded("</SCRIPT </Script <script </scrip"),
              "<script type=\"application/json\" id=\"sonalyx-results\">\n</SCRIPT </Script "
              "<script </scrip\n</script>\n");
    EXPECT_EQ(embedded(""),
              "<script type=\"application/json\" id=\"sonalyx-results\">\n\n</script>\n");
}

TEST(AnalyzeReport, WholePageInOrder) {
    ReportCase run(1);
    run.json = "{\"note\": \"</script>\"}";
    run.results.ref.path = "/a/b/.hidden";
    run.results.tester = {"Ann", "", ""};
    TempDir dir;
    const std::string path = dir.file("report.html");
    ASSERT_TRUE(write_to_path(
        path, [&](FileReplacement& f) { return write_analyze_report(f, run.inputs()); }));
    const std::string page = read_text_file(path);
    EXPECT_TRUE(page.starts_with("<!doctype html>"));
    EXPECT_NE(page.find("<title>.hidden -- Sonalyx Report</title>\n<style>"), std::string::npos);
    const char* order[] = {"<div class=\"topbar\">",
                           "<div class=\"signal-row\">",
                           "<div class=\"kpi-grid\">",
                           "<nav class=\"nav-tabs\">",
                           "id=\"alignment\"",
                           "id=\"spectral\"",
                           "id=\"overview\"",
                           "id=\"level\"",
                           "id=\"artifact\"",
                           "id=\"distortion\"",
                           "id=\"loudness\"",
                           "id=\"configuration\"",
                           "<footer>",
                           "Tested by <b>Ann</b>",
                           "</footer>\n</div>\n<script type=\"application/json\" "
                           "id=\"sonalyx-results\">\n{\"note\": \"<\\/script>\"}\n</script>\n"
                           "<script>",
                           "sonalyx-report-theme"};
    std::size_t at = 0;
    for (const char* piece : order) {
        const std::size_t found = page.find(piece, at);
        ASSERT_NE(found, std::string::npos) << piece;
        at = found;
    }
    EXPECT_TRUE(page.ends_with("</script>\n</body>\n</html>\n"));
    EXPECT_EQ(count_of(page, "id=\"sonalyx-results\""), 1u);
}

TEST(AnalyzeReport, AFailedWriteFails) {
    ReportCase run(1, 64);
    FileReplacement full;
    if (!open_full_device(full)) GTEST_SKIP() << "no /dev/full";
    EXPECT_FALSE(write_analyze_report(full, run.inputs()));
}

namespace {

// Opening tags "<div>" and "<div ..." against closing tags "</div>".
bool divs_balance(const std::string& page) {
    return count_of(page, "<div>") + count_of(page, "<div ") == count_of(page, "</div>");
}

TEST(AnalyzeReport, EveryElementOfAStereoPageIsClosed) {
    ReportCase run(2);
    run.results.config.time_domain.enabled.value = true;
    run.results.time_domain.ran = true;
    run.results.time_domain.result.channels = 2;
    TempDir dir;
    const std::string path = dir.file("report.html");
    ASSERT_TRUE(write_to_path(
        path, [&](FileReplacement& f) { return write_analyze_report(f, run.inputs()); }));
    const std::string page = read_text_file(path);
    ASSERT_NE(page.find("<div class=\"scope overview\">"), std::string::npos);
    ASSERT_NE(page.find("id=\"sx-timedomain-zoom-frame-ch1\""), std::string::npos);
    EXPECT_TRUE(divs_balance(page));
    EXPECT_EQ(count_of(page, "<section "), count_of(page, "</section>"));
}

} // namespace
