#include "cli_test_support.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

const std::vector<std::string> kAnalyzeArgs{"analyze", "--ref", "a.wav", "--dut",
                                            "b.wav",   "--out", "r.html"};
const std::vector<std::string> kTrimArgs{"trim", "--input", "a.wav", "--out", "b.wav"};
const std::vector<std::string> kPlotArgs{"plot", "--input", "a.wav", "--out", "p.html"};

std::vector<std::string> with(std::vector<std::string> args, const std::vector<std::string>& more) {
    args.insert(args.end(), more.begin(), more.end());
    return args;
}

// A copy of the executable in its own directory, so that a defaults file can sit beside it.
struct RelocatedExecutable {
    TempDir dir;
    std::string exe = dir.file("sonalyx");
    RelocatedExecutable() {
        std::filesystem::copy_file(SONALYX_EXE, exe);
        std::filesystem::permissions(exe, std::filesystem::perms::owner_all);
    }
    void place_defaults(const std::string& text) const {
        ASSERT_TRUE(write_text_file(dir.file("sonalyx-defaults.cfg"), text));
    }
};

// trim and plot give the reader's own reason for a file that is not there.
std::string missing_input() {
    return "error: failed to read --input 'a.wav' (not a supported 16/24/32-bit integer or "
           "32/64-bit float PCM WAV file)\n";
}

TEST(DefaultsFile, NamedFileThatDoesNotExistIsRefused) {
    for (const auto& args : {kAnalyzeArgs, kTrimArgs, kPlotArgs}) {
        const ProcessOutput run = run_sonalyx(with(args, {"--defaults-cfg", "/nonexistent.cfg"}));
        EXPECT_EQ(run.exit_status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(
            run.err,
            "error: --defaults-cfg '/nonexistent.cfg' does not exist or could not be parsed\n");
    }
}

TEST(DefaultsFile, NamedFileThatDoesNotParseIsRefused) {
    const TempDir tmp;
    const std::string path = tmp.file("broken.cfg");
    ASSERT_TRUE(write_text_file(path, "{ \"alignment\": { \"sync_psr_threshold\": 5.0 }"));
    const ProcessOutput run = run_sonalyx(with(kTrimArgs, {"--defaults-cfg", path}));
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err,
              "error: --defaults-cfg '" + path + "' does not exist or could not be parsed\n");
}

TEST(DefaultsFile, NamedFileThatParsesIsAccepted) {
    const TempDir tmp;
    const std::string path = tmp.file("good.cfg");
    ASSERT_TRUE(
        write_text_file(path, "{ // tester\n \"alignment\": { \"sync_psr_threshold\": 5 } }"));
    const ProcessOutput run = run_sonalyx(with(kPlotArgs, {"--defaults-cfg", path}));
    // The run gets past the settings and stops at the missing input.
    EXPECT_EQ(run.err, missing_input());
}

TEST(DefaultsFile, FileNextToTheExecutableIsLoaded) {
    const RelocatedExecutable relocated;
    relocated.place_defaults(
        "{ \"analysis\": { \"general\": { \"default_profile\": \"nope\" } } }");
    const ProcessOutput run = run_sonalyx_at(relocated.exe, kAnalyzeArgs);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err,
              "error: sonalyx-defaults.cfg's general.default_profile 'nope' not recognized "
              "-- must be one of \"bit_exact\", \"bit_accuracy\", \"amplitude_sweep\", "
              "\"frequency_sweep\", \"frequency_domain\", \"impulse_domain\", "
              "\"time_domain\" (--deepscan)\n");
}

TEST(DefaultsFile, BrokenFileNextToTheExecutableIsRefused) {
    const RelocatedExecutable relocated;
    relocated.place_defaults("{ \"general\": { \"test_engineer\": \"unterminated } }");
    for (const auto& args : {kAnalyzeArgs, kTrimArgs, kPlotArgs}) {
        const ProcessOutput run = run_sonalyx_at(relocated.exe, args);
        EXPECT_EQ(run.exit_status, 1);
        EXPECT_EQ(run.err, "error: failed to read or parse sonalyx-defaults.cfg\n");
    }
}

TEST(DefaultsFile, NamedFileReplacesTheOneNextToTheExecutable) {
    const RelocatedExecutable relocated;
    relocated.place_defaults("{");
    const std::string named = relocated.dir.file("named.cfg");
    ASSERT_TRUE(write_text_file(named, "{}"));
    const ProcessOutput run =
        run_sonalyx_at(relocated.exe, with(kTrimArgs, {"--defaults-cfg", named}));
    EXPECT_EQ(run.err, missing_input()); // got past the settings
}

TEST(DefaultsFile, MissingFileNextToTheExecutableIsNotAnError) {
    const RelocatedExecutable relocated;
    const ProcessOutput run = run_sonalyx_at(relocated.exe, kTrimArgs);
    EXPECT_EQ(run.err, missing_input()); // got past the settings
}

TEST(ConfigFile, UnreadableOverrideFileIsRefused) {
    const ProcessOutput run = run_sonalyx(with(kAnalyzeArgs, {"--config", "/nonexistent.json"}));
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "error: failed to read or parse --config '/nonexistent.json'\n");
}

TEST(ConfigFile, OverrideFileIsReadBeforeTheDefaultsFile) {
    const ProcessOutput run = run_sonalyx(
        with(kAnalyzeArgs, {"--config", "/nonexistent.json", "--defaults-cfg", "/none.cfg"}));
    EXPECT_EQ(run.err, "error: failed to read or parse --config '/nonexistent.json'\n");
}

TEST(ConfigFile, UnknownDefaultProfileInOverrideFileNamesIt) {
    const TempDir tmp;
    const std::string path = tmp.file("run.json");
    ASSERT_TRUE(write_text_file(path, "{ \"general\": { \"default_profile\": \"loud\" } }"));
    const ProcessOutput run = run_sonalyx(with(kAnalyzeArgs, {"--config", path}));
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: --config's general.default_profile 'loud' not recognized -- must be "
                       "one of \"bit_exact\", \"bit_accuracy\", \"amplitude_sweep\", "
                       "\"frequency_sweep\", \"frequency_domain\", \"impulse_domain\", "
                       "\"time_domain\" (--deepscan)\n");
}

TEST(ConfigFile, KnownProfilesPassTheSettingsStage) {
    const TempDir tmp;
    const std::string path = tmp.file("run.json");
    ASSERT_TRUE(write_text_file(path, "{ \"general\": { \"default_profile\": \"time_domain\" } }"));
    const ProcessOutput run = run_sonalyx(with(kAnalyzeArgs, {"--config", path}));
    EXPECT_EQ(run.err, "error: failed to read --ref 'a.wav' (file not found or not readable)\n"
                       "error: failed to read --dut 'b.wav' (file not found or not readable)\n"
                       "wrote an error report to r.html (overall: ERROR)\n");
}

} // namespace
