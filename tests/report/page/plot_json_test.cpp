#include "report/page/plot_page.h"

#include "support/memory_wav.h"
#include "support/python_json.h"
#include "support/temp_dir.h"
#include "written_file.h"

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
    if (!write_to_path(path,
                       [&](FileReplacement& f) { return write_plot_json(f, input_path, file); })) {
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

TEST(PlotJson, VeryLongInputPathIsWrittenWhole) {
    // 5,000 characters, of which 1,000 quotes that become backslash pairs.
    const std::string path = std::string(4000, 'p') + std::string(1000, '"');
    std::string escaped(4000, 'p');
    for (int i = 0; i < 1000; ++i)
        escaped += "\\\"";
    const std::string json = plot_json(path, silent_file(kWavFormatInt16, 1, 10));
    EXPECT_NE(json.find("    \"input_file\": \"" + escaped + "\",\n    \"sample_rate\": 48000,\n"),
              std::string::npos);
    EXPECT_TRUE(json.ends_with("    \"duration_seconds\": 0.000208\n}\n"));
}

TEST(PlotJson, ControlBytesInThePathBecomeUnicodeEscapes) {
    const std::string json =
        plot_json("in\x01\x1b\x1f\x7f.wav", silent_file(kWavFormatInt16, 1, 10));
    EXPECT_NE(json.find("    \"input_file\": \"in\\u0001\\u001b\\u001f\x7f.wav\",\n"),
              std::string::npos);
}

// The text parses with a strict JSON parser, which refuses raw control bytes, and gives the path
// back byte for byte.
TEST(PlotJson, StrictParserReadsThePathBack) {
    const std::string path = awkward_path(1000);
    const PythonJson parsed = python_json(plot_json(path, silent_file(kWavFormatFloat32, 2, 480)),
                                          {"input_file", "status", "sample_format"});
    ASSERT_TRUE(parsed.parsed) << parsed.error;
    EXPECT_EQ(parsed.values, (std::vector<std::string>{path, "plotted", "float"}));
}

TEST(PlotJson, AFailedWriteFails) {
    FileReplacement full;
    if (!open_full_device(full)) GTEST_SKIP() << "no /dev/full";
    EXPECT_FALSE(write_plot_json(full, "x.wav", silent_file(kWavFormatInt16, 1, 10)));
}

} // namespace
