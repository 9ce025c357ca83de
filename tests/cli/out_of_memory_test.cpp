// Memory that cannot be had ends a run with one line naming what it was doing and the request
// that failed, exit 1, and no output: never a diagnosis, a verdict or a partial file. The runs are
// held to a small address space, which the sanitizer build cannot run under (it reserves far more
// for its own bookkeeping), so there the stop itself is tested instead.
#include "analyze_fixture.h"
#include "cli/run_stage.h"
#include "cli_test_support.h"
#include "folder_snapshot.h"

#include <gtest/gtest.h>

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool kAddressSpaceLimitWorks = false;
#else
constexpr bool kAddressSpaceLimitWorks = true;
#endif

// Five minutes of mono 16-bit audio: 28.8 MB in the file, 115.2 MB once decoded.
constexpr std::size_t kFrames = 48000 * 300;

struct MemoryFolder {
    TempDir dir;
    MemoryFolder() { write_wav(dir.file("long.wav"), 48000, 1, std::vector<double>(kFrames, 0.1)); }
    // Runs in the folder within 100 MB of address space and checks that nothing was written.
    ProcessOutput run(const std::vector<std::string>& args) const {
        const FolderSnapshot before = snapshot_folder(dir.path());
        ProcessLimits limits;
        limits.address_space = 100ul << 20;
        limits.seconds = 60;
        const ProcessOutput result = run_sonalyx_in(dir.path(), args, limits);
        EXPECT_EQ(snapshot_folder(dir.path()), before);
        EXPECT_EQ(result.out, "");
        return result;
    }
};

const std::string kReadFailure = "could not allocate " + std::to_string(kFrames * 8) + " bytes\n";

TEST(OutOfMemory, AnalyzeStopsWithOneLineAndNoReport) {
    if (!kAddressSpaceLimitWorks) GTEST_SKIP() << "no address-space limit under the sanitizers";
    const MemoryFolder f;
    const ProcessOutput run =
        f.run({"analyze", "--ref", "long.wav", "--dut", "long.wav", "--out", "r.html", "--json"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: out of memory while reading --ref 'long.wav': " + kReadFailure);
}

TEST(OutOfMemory, PlotAndTrimStopTheSameWay) {
    if (!kAddressSpaceLimitWorks) GTEST_SKIP() << "no address-space limit under the sanitizers";
    const MemoryFolder f;
    for (const char* command : {"plot", "trim"}) {
        const ProcessOutput run = f.run({command, "--input", "long.wav", "--out", "o.x"});
        EXPECT_EQ(run.exit_status, 1) << command;
        EXPECT_EQ(run.err,
                  "error: out of memory while reading --input 'long.wav': " + kReadFailure);
    }
}

TEST(OutOfMemoryStop, NamesTheStageAndTheRequest) {
    EXPECT_EXIT(
        {
            set_run_stage("measuring %s", "loudness");
            stop_out_of_memory(123456789);
        },
        ::testing::ExitedWithCode(1),
        "^error: out of memory while measuring loudness: could not allocate 123456789 bytes\n$");
}

} // namespace
