// End-to-end runs of `sonalyx plot`: the page and its JSON, the input checks, and the transform
// size taken from the defaults file.
#include "analyze_fixture.h"
#include "cli_test_support.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct PlotRun {
    TempDir dir;
    std::string input = dir.file("take.wav");
    std::string html = dir.file("take.html");
    std::string json = dir.file("take.json");

    ProcessOutput run(std::vector<std::string> extra = {}) const {
        std::vector<std::string> args{"plot", "--input", input, "--out", dir.path() + "/"};
        args.insert(args.end(), extra.begin(), extra.end());
        return run_sonalyx(args);
    }
};

TEST(PlotCommand, WritesThePageIntoTheOutDirectory) {
    const PlotRun r;
    write_wav(r.input, 48000, 2, interleaved({test_noise(1, 24000), test_noise(2, 24000)}));
    const ProcessOutput run = r.run();
    EXPECT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.out, "wrote " + r.html + "\n");
    EXPECT_EQ(run.err, "");
    const std::string page = read_text_file(r.html);
    EXPECT_NE(page.find("<title>take -- Sonalyx Plot</title>"), std::string::npos);
    EXPECT_NE(page.find("48000 Hz &middot; 16-bit &middot; Stereo &middot; 0.50s"),
              std::string::npos);
    EXPECT_NE(page.find("id=\"sx-spectral-frame-ch1\""), std::string::npos);
    EXPECT_FALSE(path_exists(r.json));
}

TEST(PlotCommand, JsonSummaryBesideThePage) {
    const PlotRun r;
    write_wav(r.input, 44100, 1, test_noise(3, 44100));
    const ProcessOutput run = r.run({"--json"});
    EXPECT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.out, "wrote " + r.html + " + " + r.json + "\n");
    EXPECT_EQ(read_text_file(r.json), "{\n"
                                      "    \"status\": \"plotted\",\n"
                                      "    \"input_file\": \"" +
                                          r.input +
                                          "\",\n"
                                          "    \"sample_rate\": 44100,\n"
                                          "    \"channels\": 1,\n"
                                          "    \"bit_depth\": 16,\n"
                                          "    \"sample_format\": \"integer\",\n"
                                          "    \"frame_count\": 44100,\n"
                                          "    \"duration_seconds\": 1.000000\n"
                                          "}\n");
}

TEST(PlotCommand, TransformSizeComesFromTheDefaultsFile) {
    const PlotRun r;
    write_wav(r.input, 48000, 1, test_noise(4, 48000));
    const std::string defaults = r.dir.file("d.cfg");
    ASSERT_TRUE(write_text_file(
        defaults, "{ \"analysis\": { \"spectral_fidelity\": { \"fft_size\": 1024 } } }"));
    ASSERT_EQ(r.run({"--defaults-cfg", defaults}).exit_status, 0);
    EXPECT_NE(read_text_file(r.html).find("\"binHz\":46.875000"), std::string::npos);

    ASSERT_TRUE(write_text_file(
        defaults, "{ \"analysis\": { \"spectral_fidelity\": { \"fft_size\": 1000 } } }"));
    const ProcessOutput run = r.run({"--defaults-cfg", defaults});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: spectral_fidelity.fft_size 1000 not supported -- must be one of "
                       "1024, 2048, 4096, 8192, 16384, 32768\n");
}

TEST(PlotCommand, InputsSonalyxDoesNotTakeAreRefused) {
    const PlotRun r;
    ProcessOutput run = r.run();
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err,
              "error: failed to read --input '" + r.input +
                  "' (not a supported 16/24/32-bit integer or 32/64-bit float PCM WAV file)\n");

    write_wav(r.input, 16000, 3, std::vector<double>(3 * 1600, 0.25));
    run = r.run();
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: --input sample rate 16000 Hz is outside the supported range [22050, "
                       "192000] Hz\nerror: --input has 3 channel(s) -- sonalyx only accepts mono "
                       "or stereo input\n");
    EXPECT_FALSE(path_exists(r.html));
}

} // namespace
