#include "cli_test_support.h"

#include <gtest/gtest.h>

namespace {

TEST(Dispatch, NoArgumentPrintsUsageToStandardErrorAndFails) {
    const ProcessOutput run = run_sonalyx({});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, usage_text());
}

TEST(Dispatch, HelpRequestsPrintUsageToStandardOutput) {
    for (const char* flag : {"-h", "--help"}) {
        const ProcessOutput run = run_sonalyx({flag});
        EXPECT_EQ(run.exit_status, 0) << flag;
        EXPECT_EQ(run.err, "") << flag;
        EXPECT_EQ(run.out, usage_text()) << flag;
    }
}

TEST(Dispatch, VersionBanner) {
    const ProcessOutput run = run_sonalyx({"--version"});
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.out, "sonalyx v0.7.1-beta\n");
    EXPECT_EQ(run.err, "");
}

TEST(Dispatch, UnknownSubcommandsAreRefusedWithUsage) {
    for (const char* command : {"-hx", "bogus", "--version2", "Analyze", "-help"}) {
        const ProcessOutput run = run_sonalyx({command, "--ref", "a.wav"});
        EXPECT_EQ(run.exit_status, 1) << command;
        EXPECT_EQ(run.out, "") << command;
        EXPECT_EQ(run.err, std::string("error: unknown subcommand '") + command +
                               "' (expected 'analyze', 'trim', 'plot', or 'batch')\n\n" +
                               usage_text())
            << command;
    }
}

TEST(Dispatch, HelpMustBeTheWholeFirstArgument) {
    // "-h" only as the exact argument; extra options after a help request are ignored.
    const ProcessOutput run = run_sonalyx({"--help", "--bogus"});
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.out, usage_text());
}

} // namespace
