// A write that fails half-way (here a file-size limit makes the disk "full" after 32 KiB) leaves
// the file that was there before untouched and no partial or temporary file beside it, for the
// analyze report, the plot page and the trimmed WAV alike.
#include "analyze_fixture.h"
#include "cli_test_support.h"
#include "folder_snapshot.h"
#include "trim_fixture.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned long kFileSizeLimit = 32 * 1024;
const std::string kPrevious = "the previous contents\n";

// Runs in `dir` with the file-size limit and checks the failure: exit 1, the one error line,
// the folder exactly as before.
void expect_clean_failure(const TempDir& dir, const std::vector<std::string>& args,
                          const std::string& failed_path) {
    const FolderSnapshot before = snapshot_folder(dir.path());
    ProcessLimits limits;
    limits.file_size = kFileSizeLimit;
    const ProcessOutput run = run_sonalyx_in(dir.path(), args, limits);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_TRUE(has(run.err, "error: failed to write '" + failed_path + "'\n")) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(snapshot_folder(dir.path()), before);
}

TEST(InterruptedWrite, AnalyzeReportKeepsThePreviousOne) {
    const TempDir dir;
    const std::vector<double> ref = test_noise(11, 9600);
    write_wav(dir.file("ref.wav"), 48000, 1, ref);
    write_wav(dir.file("dut.wav"), 48000, 1, delayed(ref, 2));
    ASSERT_TRUE(write_text_file(dir.file("report.html"), kPrevious));
    expect_clean_failure(
        dir, {"analyze", "--ref", "ref.wav", "--dut", "dut.wav", "--out", "report.html", "--quiet"},
        "report.html");
    EXPECT_EQ(read_text_file(dir.file("report.html")), kPrevious);
}

TEST(InterruptedWrite, PlotPageKeepsThePreviousOne) {
    const TempDir dir;
    write_wav(dir.file("in.wav"), 48000, 1, test_noise(12, 9600));
    ASSERT_TRUE(write_text_file(dir.file("plot.html"), kPrevious));
    expect_clean_failure(dir, {"plot", "--input", "in.wav", "--out", "plot.html"}, "plot.html");
    EXPECT_EQ(read_text_file(dir.file("plot.html")), kPrevious);
}

TEST(InterruptedWrite, TrimmedWavKeepsThePreviousOne) {
    TrimRun r;
    SyncCaptureLayout layout;
    layout.channels = 2;
    layout.lead_frames = 5000;
    layout.tail_frames = 7000;
    layout.programme_frames = 24000; // 96 000 bytes of 16-bit stereo: past the limit
    r.write(layout, make_sync_capture(layout, sync_tone(layout.rate)));
    ASSERT_TRUE(write_text_file(r.out, kPrevious));
    expect_clean_failure(r.dir, {"trim", "--input", r.input, "--out", r.out}, r.out);
    EXPECT_EQ(read_text_file(r.out), kPrevious);
}

TEST(InterruptedWrite, TheSameRunsSucceedWithoutTheLimit) {
    // The failures above come from the limit alone.
    const TempDir dir;
    write_wav(dir.file("in.wav"), 48000, 1, test_noise(12, 9600));
    ASSERT_TRUE(write_text_file(dir.file("plot.html"), kPrevious));
    const ProcessOutput run =
        run_sonalyx_in(dir.path(), {"plot", "--input", "in.wav", "--out", "plot.html"});
    EXPECT_EQ(run.exit_status, 0) << run.err;
    EXPECT_GT(read_text_file(dir.file("plot.html")).size(), kFileSizeLimit);
}

} // namespace
