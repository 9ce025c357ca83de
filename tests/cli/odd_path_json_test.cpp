// Every JSON text the program writes stays valid JSON whatever path it names: a path of 1,000
// characters and paths holding the bytes 0x01, ESC and DEL go through analyze (the JSON file, and
// the JSON embedded in the page without --json), plot --json and trim --report, and each text is
// parsed by Python's json module, which refuses raw control characters in strings.
#include "analyze_fixture.h"
#include "cli_test_support.h"
#include "support/python_json.h"
#include "support/wav_fixture.h"
#include "trim_fixture.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

// Folders whose names make the paths odd: each byte in turn, and a deep one of 1,000+ characters.
std::vector<std::string> odd_folders(const TempDir& dir) {
    std::string deep = dir.path();
    while (deep.size() < 1000)
        deep += "/" + std::string(120, 'd');
    return {dir.file(std::string("ctl\x01") + "x"), dir.file("esc\x1b[1m"), dir.file("del\x7f"),
            deep};
}

// Whether Python's json module reads every file as one whole JSON object.
bool python_parses(const std::vector<std::string>& paths) {
    bool all = true;
    for (const std::string& path : paths) {
        const PythonJson parsed = python_json(read_text_file(path));
        EXPECT_TRUE(parsed.parsed) << path << ": " << parsed.error;
        all = all && parsed.parsed;
    }
    return all;
}

// The results JSON the page embeds, written to `path`.
void extract_embedded_json(const std::string& page_path, const std::string& path) {
    const std::string page = read_text_file(page_path);
    const std::string open = "<script type=\"application/json\" id=\"sonalyx-results\">\n";
    const std::size_t start = page.find(open);
    ASSERT_NE(start, std::string::npos);
    const std::size_t end = page.find("\n</script>", start);
    ASSERT_TRUE(write_text_file(path, page.substr(start + open.size(), end - start - open.size())));
}

TEST(OddPathJson, AnalyzeJsonFileAndEmbeddedJson) {
    const TempDir dir;
    const std::vector<double> ref = test_noise(31, 4800);
    for (const std::string& folder : odd_folders(dir)) {
        ASSERT_TRUE(std::filesystem::create_directories(folder));
        write_wav(folder + "/ref.wav", 48000, 1, ref);
        write_wav(folder + "/dut.wav", 48000, 1, delayed(ref, 2));
        const std::vector<std::string> pair{
            "analyze", "--ref", folder + "/ref.wav", "--dut", folder + "/dut.wav",
            "--quiet", "--out"};
        std::vector<std::string> args = pair;
        args.insert(args.end(), {folder + "/with.html", "--json"});
        ASSERT_EQ(run_sonalyx(args).exit_status, 0);
        args = pair;
        args.push_back(folder + "/without.html");
        ASSERT_EQ(run_sonalyx(args).exit_status, 0);
        extract_embedded_json(folder + "/without.html", folder + "/embedded.json");
        EXPECT_TRUE(python_parses({folder + "/with.json", folder + "/embedded.json"})) << folder;
    }
}

TEST(OddPathJson, ErrorJsonOfAnIncomparablePair) {
    const TempDir dir;
    for (const std::string& folder : odd_folders(dir)) {
        ASSERT_TRUE(std::filesystem::create_directories(folder));
        const ProcessOutput run =
            run_sonalyx({"analyze", "--ref", folder + "/absent.wav", "--dut", folder + "/b.wav",
                         "--out", folder + "/err.html", "--json"});
        ASSERT_EQ(run.exit_status, 1);
        EXPECT_TRUE(python_parses({folder + "/err.json"})) << folder;
    }
}

TEST(OddPathJson, PlotJson) {
    const TempDir dir;
    for (const std::string& folder : odd_folders(dir)) {
        ASSERT_TRUE(std::filesystem::create_directories(folder));
        write_wav(folder + "/in.wav", 48000, 2, test_noise(32, 9600));
        const ProcessOutput run = run_sonalyx(
            {"plot", "--input", folder + "/in.wav", "--out", folder + "/p.html", "--json"});
        ASSERT_EQ(run.exit_status, 0) << run.err;
        EXPECT_TRUE(python_parses({folder + "/p.json"})) << folder;
    }
}

TEST(OddPathJson, TrimReport) {
    const TempDir dir;
    SyncCaptureLayout layout;
    layout.lead_frames = 5000;
    layout.tail_frames = 7000;
    layout.programme_frames = 12000;
    const SyncCapture capture = make_sync_capture(layout, sync_tone(layout.rate));
    for (const std::string& folder : odd_folders(dir)) {
        ASSERT_TRUE(std::filesystem::create_directories(folder));
        ASSERT_TRUE(
            fixture_write_file(folder + "/capture.wav", sync_capture_wav_bytes(layout, capture)));
        const ProcessOutput run = run_sonalyx({"trim", "--input", folder + "/capture.wav", "--out",
                                               folder + "/t.wav", "--report", folder + "/t.json"});
        ASSERT_EQ(run.exit_status, 0) << run.err;
        EXPECT_TRUE(python_parses({folder + "/t.json"})) << folder;
    }
}

} // namespace
