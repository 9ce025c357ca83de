// Runs whose outputs would land on one of their inputs, or on each other, are refused before any
// work: exit 1, one exact line, and the folder exactly as it was (every file's bytes unchanged and
// no file added), whether the output names the input directly, as "./x", through a symbolic or a
// hard link, through a linked folder or through the --out directory and the input's stem.
#include "analyze_fixture.h"
#include "cli_test_support.h"
#include "folder_snapshot.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

constexpr std::uint32_t kRate = 48000;

// A folder holding a real, comparable pair (ref.wav and dut.wav); runs start inside it.
struct PairFolder {
    TempDir dir;
    PairFolder() {
        const std::vector<double> ref = test_noise(7, 4800);
        write_wav(dir.file("ref.wav"), kRate, 1, ref);
        write_wav(dir.file("dut.wav"), kRate, 1, delayed(ref, 3));
    }
    // Runs sonalyx in the folder and checks the refusal: exit 1, `message` alone on standard
    // error, nothing on standard output, the folder unchanged.
    void expect_refused(const std::vector<std::string>& args, const std::string& message) const {
        const FolderSnapshot before = snapshot_folder(dir.path());
        const ProcessOutput run = run_sonalyx_in(dir.path(), args);
        EXPECT_EQ(run.exit_status, 1);
        EXPECT_EQ(run.err, message);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(snapshot_folder(dir.path()), before);
    }
};

std::vector<std::string> analyze(const std::string& ref, const std::string& dut,
                                 const std::string& out, std::vector<std::string> extra = {}) {
    std::vector<std::string> args{"analyze", "--ref", ref, "--dut", dut, "--out", out};
    args.insert(args.end(), extra.begin(), extra.end());
    return args;
}

TEST(OverwriteRefusal, AnalyzeOutNamingEitherInput) {
    const PairFolder f;
    f.expect_refused(analyze("ref.wav", "dut.wav", "ref.wav"),
                     "error: --out 'ref.wav' is the --ref input; refusing to overwrite it\n");
    f.expect_refused(analyze("ref.wav", "dut.wav", "dut.wav", {"--json"}),
                     "error: --out 'dut.wav' is the --dut input; refusing to overwrite it\n");
}

TEST(OverwriteRefusal, DotSlashAndAbsolutePathsNameTheSameFile) {
    const PairFolder f;
    f.expect_refused(analyze("ref.wav", "dut.wav", "./ref.wav"),
                     "error: --out './ref.wav' is the --ref input; refusing to overwrite it\n");
    const std::string absolute = f.dir.file("dut.wav");
    f.expect_refused(analyze("ref.wav", "./dut.wav", absolute),
                     "error: --out '" + absolute +
                         "' is the --dut input; refusing to overwrite it\n");
}

TEST(OverwriteRefusal, SymbolicAndHardLinksToAnInput) {
    const PairFolder f;
    ASSERT_EQ(::symlink("ref.wav", f.dir.file("soft.wav").c_str()), 0);
    ASSERT_EQ(::link(f.dir.file("ref.wav").c_str(), f.dir.file("hard.wav").c_str()), 0);
    f.expect_refused(analyze("ref.wav", "dut.wav", "soft.wav"),
                     "error: --out 'soft.wav' is the --ref input; refusing to overwrite it\n");
    f.expect_refused(analyze("ref.wav", "dut.wav", "hard.wav"),
                     "error: --out 'hard.wav' is the --ref input; refusing to overwrite it\n");
    f.expect_refused(analyze("soft.wav", "dut.wav", "ref.wav"),
                     "error: --out 'ref.wav' is the --ref input; refusing to overwrite it\n");
}

TEST(OverwriteRefusal, DerivedJsonPathNamingAnInput) {
    const PairFolder f;
    ASSERT_EQ(::link(f.dir.file("ref.wav").c_str(), f.dir.file("r.json").c_str()), 0);
    f.expect_refused(analyze("r.json", "dut.wav", "r.html", {"--json"}),
                     "error: --json 'r.json' is the --ref input; refusing to overwrite it\n");
}

TEST(OverwriteRefusal, OutDirectoryAndInputStemReachingTheInput) {
    const PairFolder f;
    ASSERT_EQ(::rename(f.dir.file("ref.wav").c_str(), f.dir.file("take.html").c_str()), 0);
    f.expect_refused(analyze("take.html", "dut.wav", "./"),
                     "error: --out './take.html' is the --ref input; refusing to overwrite it\n");
}

TEST(OverwriteRefusal, OutputThroughALinkedFolder) {
    const PairFolder f;
    ASSERT_EQ(::symlink(".", f.dir.file("same").c_str()), 0);
    f.expect_refused(analyze("ref.wav", "dut.wav", "same/dut.wav"),
                     "error: --out 'same/dut.wav' is the --dut input; refusing to overwrite it\n");
}

TEST(OverwriteRefusal, TwoOutputsOnOneFile) {
    const PairFolder f;
    f.expect_refused(analyze("ref.wav", "dut.wav", "x.json", {"--json"}),
                     "error: --json 'x.json' and --out 'x.json' are the same file; refusing to "
                     "write one over the other\n");
}

TEST(OverwriteRefusal, ErrorReportOfAMissingInputNeverTakesItsName) {
    // The DUT does not exist yet: the ERROR page would otherwise be written under its name.
    const PairFolder f;
    f.expect_refused(analyze("ref.wav", "later.wav", "./later.wav"),
                     "error: --out './later.wav' is the --dut input; refusing to overwrite it\n");
}

TEST(OverwriteRefusal, SettingsFilesAreInputsToo) {
    const PairFolder f;
    ASSERT_TRUE(write_text_file(f.dir.file("run.cfg"), "{}"));
    f.expect_refused(analyze("ref.wav", "dut.wav", "run.cfg", {"--config", "run.cfg"}),
                     "error: --out 'run.cfg' is the --config file; refusing to overwrite it\n");
    f.expect_refused(
        analyze("ref.wav", "dut.wav", "o.html", {"--json", "--defaults-cfg", "o.json"}),
        "error: --json 'o.json' is the --defaults-cfg file; refusing to overwrite it\n");
}

TEST(OverwriteRefusal, PlotPageOrJsonOnItsInput) {
    const PairFolder f;
    f.expect_refused({"plot", "--input", "ref.wav", "--out", "ref.wav"},
                     "error: --out 'ref.wav' is the --input file; refusing to overwrite it\n");
    ASSERT_EQ(::link(f.dir.file("ref.wav").c_str(), f.dir.file("p.json").c_str()), 0);
    f.expect_refused({"plot", "--input", "p.json", "--out", "p.html", "--json"},
                     "error: --json 'p.json' is the --input file; refusing to overwrite it\n");
}

TEST(OverwriteRefusal, TrimOutputsOnItsInputOrOnEachOther) {
    const PairFolder f;
    f.expect_refused({"trim", "--input", "ref.wav", "--out", "./ref.wav"},
                     "error: --out './ref.wav' is the --input file; refusing to overwrite it\n");
    f.expect_refused({"trim", "--input", "ref.wav", "--out", "t.wav", "--report", "ref.wav"},
                     "error: --report 'ref.wav' is the --input file; refusing to overwrite it\n");
    f.expect_refused({"trim", "--input", "ref.wav", "--out", "t.wav", "--report", "t.wav"},
                     "error: --report 't.wav' and --out 't.wav' are the same file; refusing to "
                     "write one over the other\n");
}

TEST(OverwriteRefusal, DistinctOutputsStillRun) {
    // The same folder and names that differ only slightly are not refused.
    const PairFolder f;
    const ProcessOutput run = run_sonalyx_in(
        f.dir.path(), analyze("ref.wav", "dut.wav", "ref.html", {"--json", "--quiet"}));
    EXPECT_EQ(run.exit_status, 0) << run.err;
    EXPECT_TRUE(path_exists(f.dir.file("ref.html")));
    EXPECT_TRUE(path_exists(f.dir.file("ref.json")));
}

} // namespace
