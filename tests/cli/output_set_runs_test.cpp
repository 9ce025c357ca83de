// A run's outputs are one set: when one of them cannot be written (here the JSON path is taken by
// a folder), the run exits 1 with one line and leaves none of them behind; a report that was
// there before keeps its contents. The ERROR page and ERROR JSON are a set of their own.
#include "analyze_fixture.h"
#include "cli_test_support.h"
#include "folder_snapshot.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

const std::string kPrevious = "the previous report\n";

struct SetFolder {
    TempDir dir;
    SetFolder() {
        const std::vector<double> ref = test_noise(21, 4800);
        write_wav(dir.file("ref.wav"), 48000, 1, ref);
        write_wav(dir.file("dut.wav"), 48000, 1, delayed(ref, 1));
        EXPECT_TRUE(write_text_file(dir.file("out.html"), kPrevious));
        EXPECT_EQ(::mkdir(dir.file("out.json").c_str(), 0755), 0);
    }
    // Runs in the folder and checks that it is exactly as before.
    ProcessOutput run_unchanged(const std::vector<std::string>& args) const {
        const FolderSnapshot before = snapshot_folder(dir.path());
        const ProcessOutput run = run_sonalyx_in(dir.path(), args);
        EXPECT_EQ(snapshot_folder(dir.path()), before);
        EXPECT_EQ(run.out, "");
        return run;
    }
};

TEST(OutputSetRuns, AnalyzeWritesNeitherFileWhenTheJsonCannotBeWritten) {
    const SetFolder f;
    const ProcessOutput run = f.run_unchanged({"analyze", "--ref", "ref.wav", "--dut", "dut.wav",
                                               "--out", "out.html", "--json", "--quiet"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: failed to write 'out.json'\n");
}

TEST(OutputSetRuns, PlotWritesNeitherFileWhenTheJsonCannotBeWritten) {
    const SetFolder f;
    const ProcessOutput run =
        f.run_unchanged({"plot", "--input", "ref.wav", "--out", "out.html", "--json"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: failed to write 'out.json'\n");
}

TEST(OutputSetRuns, TheErrorPageAndItsJsonAreWrittenTogetherOrNotAtAll) {
    const SetFolder f;
    const ProcessOutput run = f.run_unchanged(
        {"analyze", "--ref", "ref.wav", "--dut", "absent.wav", "--out", "out.html", "--json"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: failed to read --dut 'absent.wav' (file not found or not readable)\n"
                       "warning: could not write the error report 'out.json' (neither the page "
                       "nor its JSON was written)\n");
}

TEST(OutputSetRuns, TheErrorPageAloneKeepsItsOneLineWarning) {
    const SetFolder f;
    const ProcessOutput run = f.run_unchanged(
        {"analyze", "--ref", "ref.wav", "--dut", "absent.wav", "--out", "absent/x.html"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: failed to read --dut 'absent.wav' (file not found or not readable)\n"
                       "warning: could not write the error report 'absent/x.html'\n");
}

TEST(OutputSetRuns, BothErrorFilesAreWrittenWhenTheyCanBe) {
    const SetFolder f;
    const ProcessOutput run =
        run_sonalyx_in(f.dir.path(), {"analyze", "--ref", "ref.wav", "--dut", "absent.wav", "--out",
                                      "err.html", "--json"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_TRUE(has(read_text_file(f.dir.file("err.html")), "Run Error"));
    EXPECT_TRUE(has(read_text_file(f.dir.file("err.json")), "\"overall_verdict\": \"ERROR\""));
}

} // namespace
