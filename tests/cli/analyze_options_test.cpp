#include "cli/options.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

namespace {

const std::string kRequires = "error: analyze requires --ref, --dut, and --out\n";

std::string unrecognized(const std::string& arg) {
    return "error: unrecognized argument '" + arg + "'\n";
}

void expect_usage_error(const ProcessOutput& run, const std::string& message) {
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, message + "\n" + usage_text());
}

ScanResult scan(std::vector<std::string> args, AnalyzeOptions& options) {
    static std::vector<std::string> storage;
    storage = std::move(args);
    static std::vector<char*> argv;
    argv.clear();
    for (std::string& a : storage)
        argv.push_back(a.data());
    return scan_analyze_options(argv, options);
}

TEST(AnalyzeOptions, NothingAfterAnalyzeAsksForTheRequiredOptions) {
    expect_usage_error(run_sonalyx({"analyze"}), kRequires);
}

TEST(AnalyzeOptions, EachMissingRequiredOptionIsReported) {
    expect_usage_error(run_sonalyx({"analyze", "--dut", "b.wav", "--out", "r.html"}), kRequires);
    expect_usage_error(run_sonalyx({"analyze", "--ref", "a.wav", "--out", "r.html"}), kRequires);
    expect_usage_error(run_sonalyx({"analyze", "--ref", "a.wav", "--dut", "b.wav"}), kRequires);
}

TEST(AnalyzeOptions, ValueOptionStandingLastIsUnrecognized) {
    expect_usage_error(run_sonalyx({"analyze", "--ref", "a.wav", "--dut", "b.wav", "--out"}),
                       unrecognized("--out"));
    expect_usage_error(run_sonalyx({"analyze", "--snapshots"}), unrecognized("--snapshots"));
}

TEST(AnalyzeOptions, UnknownArgumentIsReported) {
    expect_usage_error(run_sonalyx({"analyze", "--ref", "a.wav", "--verbose", "--dut", "b.wav"}),
                       unrecognized("--verbose"));
    expect_usage_error(run_sonalyx({"analyze", "-H"}), unrecognized("-H"));
}

TEST(AnalyzeOptions, HelpAnywhereAmongOptionsPrintsUsage) {
    for (const char* help : {"--help", "-h"}) {
        const ProcessOutput run = run_sonalyx(
            {"analyze", "--ref", "a.wav", help, "--bogus", "--ampsweep", "--freqsweep"});
        EXPECT_EQ(run.exit_status, 0);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.out, usage_text());
    }
}

TEST(AnalyzeOptions, UnknownArgumentBeforeHelpWins) {
    expect_usage_error(run_sonalyx({"analyze", "--bogus", "--help"}), unrecognized("--bogus"));
}

TEST(AnalyzeOptions, HelpTakenAsAValueIsNotAHelpRequest) {
    // "--out --help" makes "--help" the output path; the scan then completes normally.
    AnalyzeOptions options;
    const ScanResult result =
        scan({"sonalyx", "analyze", "--ref", "a", "--dut", "b", "--out", "--help"}, options);
    EXPECT_EQ(result.status, ScanStatus::ok);
    EXPECT_STREQ(options.out_path, "--help");
}

void expect_refused(const std::vector<std::string>& extra, const std::string& message) {
    std::vector<std::string> args{"analyze", "--ref", "a.wav", "--dut", "b.wav", "--out", "r.html"};
    args.insert(args.end(), extra.begin(), extra.end());
    const ProcessOutput run = run_sonalyx(args);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, message);
}

const std::string kSweepConflict =
    "error: --ampsweep and --freqsweep cannot both be set -- spectral_fidelity.profile is a "
    "single choice, not an independent toggle\n";
const std::string kBitexactConflict =
    "error: --bitexact and --no-bitexact cannot both be set -- one asks for strict gating, the "
    "other asks to skip the check entirely\n";
const std::string kLoudnessConflict =
    "error: --loudness and --no-loudness cannot both be set -- one asks for strict gating, the "
    "other asks to skip the check entirely\n";

TEST(AnalyzeOptions, MutuallyExclusivePairsAreRefusedWithoutUsage) {
    expect_refused({"--freqsweep", "--ampsweep"}, kSweepConflict);
    expect_refused({"--no-bitexact", "--bitexact"}, kBitexactConflict);
    expect_refused({"--loudness", "--no-loudness"}, kLoudnessConflict);
}

TEST(AnalyzeOptions, ExclusionsAreCheckedInTheirOrder) {
    expect_refused(
        {"--loudness", "--no-loudness", "--bitexact", "--no-bitexact", "--ampsweep", "--freqsweep"},
        kSweepConflict);
    expect_refused({"--loudness", "--no-loudness", "--bitexact", "--no-bitexact"},
                   kBitexactConflict);
}

TEST(AnalyzeOptions, MissingRequiredOptionComesBeforeExclusions) {
    expect_usage_error(run_sonalyx({"analyze", "--ampsweep", "--freqsweep"}), kRequires);
}

TEST(AnalyzeOptions, EveryOptionFillsItsField) {
    AnalyzeOptions o;
    const ScanResult result = scan({"sonalyx",
                                    "analyze",
                                    "--ref",
                                    "r.wav",
                                    "--dut",
                                    "d.wav",
                                    "--out",
                                    "o/",
                                    "--json",
                                    "--config",
                                    "c.json",
                                    "--defaults-cfg",
                                    "d.cfg",
                                    "--snapshots",
                                    "7",
                                    "--deepscan",
                                    "--impulse",
                                    "--ampsweep",
                                    "--bitaccuracy",
                                    "--bitexact",
                                    "--no-distortion",
                                    "--levelfidelity-ref-only",
                                    "--loudness",
                                    "--artifact-ref-only",
                                    "--exit-code",
                                    "--quiet"},
                                   o);
    ASSERT_EQ(result.status, ScanStatus::ok) << result.message;
    EXPECT_STREQ(o.ref_path, "r.wav");
    EXPECT_STREQ(o.dut_path, "d.wav");
    EXPECT_STREQ(o.out_path, "o/");
    EXPECT_STREQ(o.config_path, "c.json");
    EXPECT_STREQ(o.defaults_path, "d.cfg");
    const CommandLineSettings& f = o.settings;
    EXPECT_EQ(f.snapshots, 7);
    EXPECT_TRUE(o.json && o.exit_code && o.quiet);
    EXPECT_TRUE(f.deepscan && f.impulse && f.ampsweep && f.bitaccuracy && f.bitexact &&
                f.no_distortion && f.levelfidelity_ref_only && f.loudness && f.artifact_ref_only);
    EXPECT_FALSE(f.freqsweep || f.no_bitexact || f.no_loudness);
}

TEST(AnalyzeOptions, FlagsStartFalseAndSnapshotsUnset) {
    AnalyzeOptions o;
    ASSERT_EQ(scan({"sonalyx", "analyze", "--ref", "r", "--dut", "d", "--out", "o"}, o).status,
              ScanStatus::ok);
    EXPECT_FALSE(o.settings.snapshots.has_value());
    EXPECT_EQ(o.config_path, nullptr);
    EXPECT_EQ(o.defaults_path, nullptr);
    EXPECT_FALSE(o.json || o.quiet || o.exit_code);
    const CommandLineSettings& f = o.settings;
    EXPECT_FALSE(f.deepscan || f.impulse || f.ampsweep || f.freqsweep || f.bitaccuracy ||
                 f.bitexact || f.no_bitexact || f.no_distortion || f.levelfidelity_ref_only ||
                 f.no_loudness || f.loudness || f.artifact_ref_only);
}

TEST(AnalyzeOptions, SnapshotsIsReadAsASignedBase10Integer) {
    const std::pair<const char*, long> cases[] = {{"-3", -3}, {"012", 12}, {"abc", 0}, {"4x", 4}};
    for (const auto& [text, value] : cases) {
        AnalyzeOptions o;
        ASSERT_EQ(scan({"sonalyx", "analyze", "--snapshots", text, "--ref", "r", "--dut", "d",
                        "--out", "o"},
                       o)
                      .status,
                  ScanStatus::ok);
        ASSERT_TRUE(o.settings.snapshots.has_value());
        EXPECT_EQ(*o.settings.snapshots, value) << text;
    }
}

TEST(AnalyzeOptions, LaterOccurrenceOverridesEarlier) {
    AnalyzeOptions o;
    ASSERT_EQ(scan({"sonalyx", "analyze", "--ref", "a", "--ref", "b", "--dut", "d", "--out", "o",
                    "--snapshots", "2", "--snapshots", "5"},
                   o)
                  .status,
              ScanStatus::ok);
    EXPECT_STREQ(o.ref_path, "b");
    EXPECT_EQ(o.settings.snapshots, 5);
}

} // namespace
