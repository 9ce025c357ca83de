#include "cli/options.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

namespace {

void expect_usage_error(const ProcessOutput& run, const std::string& message) {
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, message + "\n" + usage_text());
}

void expect_help(const ProcessOutput& run) {
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, usage_text());
}

std::string unrecognized(const std::string& arg) {
    return "error: unrecognized argument '" + arg + "'\n";
}

const std::string kTrimRequires = "error: trim requires --input and --out\n";
const std::string kPlotRequires = "error: plot requires --input and --out\n";

TEST(TrimOptions, NothingAfterTrimAsksForTheRequiredOptions) {
    expect_usage_error(run_sonalyx({"trim"}), kTrimRequires);
}

TEST(TrimOptions, MissingOutIsReported) {
    expect_usage_error(run_sonalyx({"trim", "--input", "a.wav"}), kTrimRequires);
    expect_usage_error(run_sonalyx({"trim", "--out", "b.wav", "--report", "r.json"}),
                       kTrimRequires);
}

TEST(TrimOptions, OddTrailingArgumentIsUnrecognized) {
    expect_usage_error(run_sonalyx({"trim", "--input", "a.wav", "--out", "b.wav", "extra"}),
                       unrecognized("extra"));
    expect_usage_error(run_sonalyx({"trim", "--input", "a.wav", "--out"}), unrecognized("--out"));
}

TEST(TrimOptions, ArgumentsAreReadInPairs) {
    // A flag-like word at a value position is taken as the value; at a pair position it is
    // examined as an option.
    expect_usage_error(run_sonalyx({"trim", "--json", "--input", "a.wav", "--out", "b.wav"}),
                       unrecognized("--json"));
    expect_usage_error(run_sonalyx({"trim", "x", "--help"}), unrecognized("x"));
    expect_help(run_sonalyx({"trim", "--input", "a.wav", "--help"}));
    expect_help(run_sonalyx({"trim", "-h", "--bogus"}));
}

TEST(TrimOptions, EveryOptionFillsItsField) {
    std::vector<std::string> storage{"sonalyx",        "trim",    "--input",  "in.wav",
                                     "--out",          "out.wav", "--report", "r.json",
                                     "--defaults-cfg", "d.cfg",   "--input",  "--help"};
    std::vector<char*> argv;
    for (std::string& a : storage)
        argv.push_back(a.data());
    TrimOptions o;
    ASSERT_EQ(scan_trim_options(argv, o).status, ScanStatus::ok);
    EXPECT_STREQ(o.input_path, "--help");
    EXPECT_STREQ(o.out_path, "out.wav");
    EXPECT_STREQ(o.report_path, "r.json");
    EXPECT_STREQ(o.defaults_path, "d.cfg");
}

TEST(PlotOptions, NothingAfterPlotAsksForTheRequiredOptions) {
    expect_usage_error(run_sonalyx({"plot"}), kPlotRequires);
    expect_usage_error(run_sonalyx({"plot", "--input", "a.wav", "--json"}), kPlotRequires);
    expect_usage_error(run_sonalyx({"plot", "--out", "a.html"}), kPlotRequires);
}

TEST(PlotOptions, ValueOptionStandingLastIsUnrecognized) {
    expect_usage_error(run_sonalyx({"plot", "--input", "a.wav", "--out"}), unrecognized("--out"));
}

TEST(PlotOptions, AnalyzeOnlyOptionsAreUnrecognized) {
    expect_usage_error(run_sonalyx({"plot", "--input", "a.wav", "--out", "p.html", "--dut", "b"}),
                       unrecognized("--dut"));
}

TEST(PlotOptions, HelpAnywhereAmongOptions) {
    expect_help(run_sonalyx({"plot", "--json", "-h", "--bogus"}));
}

TEST(PlotOptions, EveryOptionFillsItsField) {
    std::vector<std::string> storage{"sonalyx", "plot",   "--json",         "--input", "in.wav",
                                     "--out",   "p.html", "--defaults-cfg", "d.cfg"};
    std::vector<char*> argv;
    for (std::string& a : storage)
        argv.push_back(a.data());
    PlotOptions o;
    ASSERT_EQ(scan_plot_options(argv, o).status, ScanStatus::ok);
    EXPECT_STREQ(o.input_path, "in.wav");
    EXPECT_STREQ(o.out_path, "p.html");
    EXPECT_STREQ(o.defaults_path, "d.cfg");
    EXPECT_TRUE(o.json);
}

} // namespace
