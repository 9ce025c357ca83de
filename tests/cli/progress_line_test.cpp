// On a terminal, a long stage shows one line with its name and the percent done, rewritten in
// place and erased when the stage ends; what stays on the screen is exactly what a run prints
// without a terminal. With --quiet nothing but the result line appears.
#include "analyze_fixture.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

#include <regex>

namespace {

// What the terminal shows once every progress line is erased: each "\r\033[K" wipes the line it
// stands on. The terminal also turns each "\n" into "\r\n".
std::string settled(const std::string& received) {
    std::string screen;
    std::string line;
    for (std::size_t i = 0; i < received.size(); ++i) {
        if (received.compare(i, 4, "\r\033[K") == 0) {
            line.clear();
            i += 3;
        } else if (received.compare(i, 2, "\r\n") == 0) {
            screen += line + "\n";
            line.clear();
            ++i;
        } else {
            line += received[i];
        }
    }
    return screen + line;
}

struct TerminalRun {
    TempDir dir;
    TerminalRun() {
        const std::vector<double> ref = test_noise(41, 48000 * 20);
        write_wav(dir.file("ref.wav"), 48000, 1, ref);
        write_wav(dir.file("dut.wav"), 48000, 1, delayed(ref, 5));
    }
    ProcessOutput run(std::vector<std::string> extra = {}) const {
        std::vector<std::string> argv{SONALYX_EXE, "analyze", "--ref", "ref.wav",
                                      "--dut",     "dut.wav", "--out", "r.html"};
        argv.insert(argv.end(), extra.begin(), extra.end());
        return run_process_on_terminal(argv, dir.path());
    }
};

TEST(ProgressLine, LongStagesShowTheirPercentAndLeaveNothingBehind) {
    const TerminalRun t;
    const ProcessOutput run = t.run();
    ASSERT_EQ(run.exit_status, 0) << run.out;
    EXPECT_TRUE(std::regex_search(run.out, std::regex("\r\033\\[K  aligning the files [0-9]+%")))
        << run.out;
    EXPECT_TRUE(std::regex_search(run.out, std::regex("\r\033\\[K  detecting artifacts [0-9]+%")));
    EXPECT_TRUE(std::regex_search(run.out, std::regex("\r\033\\[K  measuring loudness [0-9]+%")));
    EXPECT_EQ(settled(run.out), "Aligning...\nAnalyzing...\nWriting report...\n"
                                "wrote r.html (overall: PASS)\n");
}

TEST(ProgressLine, QuietShowsOnlyTheResultLine) {
    const TerminalRun t;
    const ProcessOutput run = t.run({"--quiet"});
    ASSERT_EQ(run.exit_status, 0) << run.out;
    EXPECT_EQ(run.out, "wrote r.html (overall: PASS)\r\n");
}

} // namespace
