#include "report/plot_page.h"

#include "support/memory_wav.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

WavFile silent_file(std::uint32_t format, unsigned channels, std::size_t frames) {
    WavFile file =
        memory_wav(std::vector<std::vector<double>>(channels, std::vector<double>(frames)), 48000);
    file.format = format;
    return file;
}

// The JSON written for `file`, or "<failed>" when the writer returned false.
std::string plot_json(const std::string& input_path, const WavFile& file) {
    const TempDir dir;
    const std::string path = dir.file("plot.json");
    if (!write_plot_json(path, input_path, file)) {
        EXPECT_FALSE(path_exists(path));
        return "<failed>";
    }
    return read_text_file(path);
}

TEST(PlotJson, ExactTextForA16BitStereoFile) {
    EXPECT_EQ(plot_json("in/tone \"A\".wav", silent_file(kWavFormatInt16, 2, 96000)),
              "{\n"
              "    \"status\": \"plotted\",\n"
              "    \"input_file\": \"in/tone \\\"A\\\".wav\",\n"
              "    \"sample_rate\": 48000,\n"
              "    \"channels\": 2,\n"
              "    \"bit_depth\": 16,\n"
              "    \"sample_format\": \"integer\",\n"
              "    \"frame_count\": 96000,\n"
              "    \"duration_seconds\": 2.000000\n"
              "}\n");
}

TEST(PlotJson, ThirtyTwoBitFloatIsBitDepth32Float) {
    const std::string json = plot_json("f.wav", silent_file(kWavFormatFloat32, 1, 12000));
    EXPECT_NE(json.find("    \"bit_depth\": 32,\n    \"sample_format\": \"float\",\n"),
              std::string::npos);
    EXPECT_NE(json.find("    \"duration_seconds\": 0.250000\n}\n"), std::string::npos);
}

TEST(PlotJson, SixtyFourBitFloatIsBitDepth64Float) {
    const std::string json = plot_json("f.wav", silent_file(kWavFormatFloat64, 1, 10));
    EXPECT_NE(json.find("    \"bit_depth\": 64,\n    \"sample_format\": \"float\",\n"),
              std::string::npos);
}

TEST(PlotJson, TwentyFourAndThirtyTwoBitIntegers) {
    EXPECT_NE(plot_json("i.wav", silent_file(kWavFormatInt24, 1, 10))
                  .find("    \"bit_depth\": 24,\n    \"sample_format\": \"integer\",\n"),
              std::string::npos);
    EXPECT_NE(plot_json("i.wav", silent_file(kWavFormatInt32, 1, 10))
                  .find("    \"bit_depth\": 32,\n    \"sample_format\": \"integer\",\n"),
              std::string::npos);
}

// A path of 510 characters is the longest text value an entry takes; one more fails the whole
// JSON, which stays far below 1024 bytes even at the longest path.
TEST(PlotJson, VeryLongInputPathFails) {
    const WavFile file = silent_file(kWavFormatInt16, 1, 10);
    const std::string longest = plot_json(std::string(510, 'p'), file);
    EXPECT_NE(longest, "<failed>");
    EXPECT_LT(longest.size(), 1024u);
    EXPECT_EQ(plot_json(std::string(511, 'p'), file), "<failed>");
    EXPECT_NE(plot_json(std::string(255, '"'), file), "<failed>"); // 510 once escaped
    EXPECT_EQ(plot_json(std::string(256, '"'), file), "<failed>"); // 512 once escaped
}

TEST(PlotJson, UnwritablePathFails) {
    const TempDir dir;
    const std::string path = dir.file("missing/plot.json");
    EXPECT_FALSE(write_plot_json(path, "x.wav", silent_file(kWavFormatInt16, 1, 10)));
    EXPECT_FALSE(path_exists(path));
}

} // namespace
