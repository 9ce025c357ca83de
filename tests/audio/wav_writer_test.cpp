// The writers' listed edge cases, the integer encoder, and the refusals made before any file is
// created.
#include "audio/wav_encode.h"
#include "audio/wav_writer.h"
#include "wav_test_util.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using WavWriter = WavTest;

// The signed 16-bit codes of a written plain-header file.
std::vector<std::int64_t> int16_codes(const Bytes& bytes) {
    std::vector<std::int64_t> codes;
    for (std::size_t at = 44; at + 1 < bytes.size(); at += 2) {
        codes.push_back(static_cast<std::int16_t>(fixture_u16_at(bytes, at)));
    }
    return codes;
}

TEST_F(WavWriter, OverRangeClampsBeforeScaling) {
    const std::vector<double> samples = {1.5, -1.5};
    ASSERT_TRUE(wav_write(path_of("clamp.wav").c_str(), 48000, 1, 16, samples, 2));
    EXPECT_EQ(int16_codes(fixture_read_file(path_of("clamp.wav"))),
              (std::vector<std::int64_t>{32767, -32767}));
}

TEST_F(WavWriter, HalfRoundsAwayFromZero) {
    const std::vector<double> samples = {0.5, -0.5};
    ASSERT_TRUE(wav_write(path_of("half.wav").c_str(), 48000, 1, 16, samples, 2));
    EXPECT_EQ(int16_codes(fixture_read_file(path_of("half.wav"))),
              (std::vector<std::int64_t>{16384, -16384}));
}

TEST_F(WavWriter, Float32ByWavWriteHasFmt18CbSize0AndFact) {
    const std::vector<double> samples = {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7};
    ASSERT_TRUE(wav_write(path_of("f32.wav").c_str(), 44100, 1, 288, samples, 7));
    const Bytes bytes = fixture_read_file(path_of("f32.wav"));
    ASSERT_EQ(bytes.size(), 58u + 28u);
    EXPECT_EQ(fixture_u32_at(bytes, 16), 18u);
    EXPECT_EQ(fixture_u16_at(bytes, 20), 3u);
    EXPECT_EQ(fixture_u16_at(bytes, 36), 0u);
    EXPECT_EQ(Bytes(bytes.begin() + 38, bytes.begin() + 42), (Bytes{'f', 'a', 'c', 't'}));
    EXPECT_EQ(fixture_u32_at(bytes, 42), 4u);
    EXPECT_EQ(fixture_u32_at(bytes, 46), 7u);
    EXPECT_EQ(Bytes(bytes.begin() + 50, bytes.begin() + 54), (Bytes{'d', 'a', 't', 'a'}));
    EXPECT_EQ(fixture_u32_at(bytes, 54), 28u);
}

TEST_F(WavWriter, FloatWithExtraKeepsOnlyNonFactChunksAfterSamples) {
    Bytes extra = fixture_chunk_bytes(fixture_chunk("fact", Bytes{5, 0, 0, 0}));
    const Bytes list = fixture_chunk_bytes(fixture_chunk("LIST", Bytes{'I', 'N', 'F', 'O', 'x'}));
    extra.insert(extra.end(), list.begin(), list.end());
    const std::vector<double> samples = {0.25, -0.25};
    ASSERT_TRUE(wav_write_with_extra(path_of("x.wav").c_str(), 48000, 2, 288, samples, 1, extra));
    const Bytes bytes = fixture_read_file(path_of("x.wav"));
    ASSERT_EQ(bytes.size(), 58u + 8u + list.size());
    EXPECT_EQ(fixture_u32_at(bytes, 4), 18u + 8u + 32u + list.size());
    EXPECT_EQ(fixture_u32_at(bytes, 46), 1u); // the writer's own fact chunk: one frame
    EXPECT_EQ(Bytes(bytes.begin() + 66, bytes.end()), list);
}

TEST_F(WavWriter, UnknownFormatCodesAreRefusedWithoutAFile) {
    const std::vector<double> samples = {0.0};
    const std::string path = path_of("refused.wav");
    for (const std::uint32_t format : {20u, 0x121u, 0u, 8u, 64u, 0x110u}) {
        EXPECT_FALSE(wav_write(path.c_str(), 48000, 1, format, samples, 1)) << format;
        EXPECT_FALSE(wav_write_with_extra(path.c_str(), 48000, 1, format, samples, 1, {}))
            << format;
        EXPECT_FALSE(wav_write_extensible(path.c_str(), 48000, 1, format, samples, 1, 4)) << format;
        EXPECT_FALSE(wav_write_float(path.c_str(), 48000, 1, format, false, 0, samples, 1, {}))
            << format;
        EXPECT_FALSE(path_exists(path)) << format;
    }
}

// Calls every entry point with the given arguments; none may succeed or create the file.
void expect_all_refused(const char* path, std::uint32_t rate, std::uint32_t channels,
                        std::span<const double> samples, std::size_t frames) {
    for (const std::uint32_t format : {16u, 24u, 32u, 288u, 320u}) {
        EXPECT_FALSE(wav_write(path, rate, channels, format, samples, frames)) << format;
        EXPECT_FALSE(wav_write_with_extra(path, rate, channels, format, samples, frames, {}))
            << format;
        EXPECT_FALSE(wav_write_extensible(path, rate, channels, format, samples, frames, 3))
            << format;
    }
    for (const std::uint32_t format : {288u, 320u}) {
        EXPECT_FALSE(wav_write_float(path, rate, channels, format, true, 3, samples, frames, {}))
            << format;
    }
}

TEST_F(WavWriter, NullPathIsRefused) {
    const std::vector<double> samples = {0.0, 0.0};
    expect_all_refused(nullptr, 48000, 2, samples, 1);
}

TEST_F(WavWriter, ZeroRateIsRefusedWithoutAFile) {
    const std::vector<double> samples = {0.0, 0.0};
    expect_all_refused(path_of("rate.wav").c_str(), 0, 2, samples, 1);
    EXPECT_FALSE(path_exists(path_of("rate.wav")));
}

TEST_F(WavWriter, ZeroChannelsIsRefusedWithoutAFile) {
    const std::vector<double> samples = {0.0, 0.0};
    expect_all_refused(path_of("channels.wav").c_str(), 48000, 0, samples, 1);
    EXPECT_FALSE(path_exists(path_of("channels.wav")));
}

TEST_F(WavWriter, TooFewSamplesIsRefusedWithoutAFile) {
    const std::vector<double> samples = {0.0, 0.0, 0.0};
    expect_all_refused(path_of("short.wav").c_str(), 48000, 2, samples, 2);
    expect_all_refused(path_of("short.wav").c_str(), 48000, 2, samples,
                       std::numeric_limits<std::size_t>::max() / 2 + 1);
    EXPECT_FALSE(path_exists(path_of("short.wav")));
}

TEST_F(WavWriter, FloatWriterRefusesIntegerFormatsWithoutAFile) {
    const std::vector<double> samples = {0.0};
    for (const std::uint32_t format : {16u, 24u, 32u}) {
        EXPECT_FALSE(wav_write_float(path_of("int.wav").c_str(), 48000, 1, format, false, 0,
                                     samples, 1, {}));
    }
    EXPECT_FALSE(path_exists(path_of("int.wav")));
}

TEST_F(WavWriter, LongerSpanWritesOnlyTheRequestedFrames) {
    const std::vector<double> samples = {0.5, -0.5, 1.0, 1.0};
    ASSERT_TRUE(wav_write(path_of("long.wav").c_str(), 48000, 1, 16, samples, 2));
    EXPECT_EQ(int16_codes(fixture_read_file(path_of("long.wav"))),
              (std::vector<std::int64_t>{16384, -16384}));
}

TEST_F(WavWriter, UncreatableFileFails) {
    const std::vector<double> samples = {0.0};
    EXPECT_FALSE(wav_write(path_of("no/such/dir.wav").c_str(), 48000, 1, 16, samples, 1));
    EXPECT_FALSE(wav_write(path_of("no/such/dir.wav").c_str(), 48000, 1, 288, samples, 1));
}

TEST_F(WavWriter, FullDeviceFails) {
    if (!path_exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    const std::vector<double> samples(100000, 0.25);
    EXPECT_FALSE(wav_write("/dev/full", 48000, 1, 16, samples, samples.size()));
    EXPECT_FALSE(wav_write("/dev/full", 48000, 1, 320, samples, samples.size()));
}

TEST(WavIntCode, ClampsScalesAndRounds) {
    EXPECT_EQ(wav_int_code(1.0, 16), 32767);
    EXPECT_EQ(wav_int_code(-1.0, 16), -32767);
    EXPECT_EQ(wav_int_code(-32768.0 / 32767.0, 16), -32767);
    EXPECT_EQ(wav_int_code(0.5, 16), 16384);
    EXPECT_EQ(wav_int_code(-0.5, 16), -16384);
    EXPECT_EQ(wav_int_code(0.49, 16), 16056);
    EXPECT_EQ(wav_int_code(1.0, 24), 8388607);
    EXPECT_EQ(wav_int_code(-1e9, 24), -8388607);
    EXPECT_EQ(wav_int_code(0.5, 24), 4194304);
    EXPECT_EQ(wav_int_code(1.0, 32), 2147483647);
    EXPECT_EQ(wav_int_code(-1.0, 32), -2147483647);
    EXPECT_EQ(wav_int_code(std::numeric_limits<double>::infinity(), 32), 2147483647);
    EXPECT_EQ(wav_int_code(-std::numeric_limits<double>::infinity(), 16), -32767);
}

// NaN is neither above 1 nor below -1, so no clamp applies; it is stored as 0.
TEST(WavIntCode, NanStoresZero) {
    EXPECT_EQ(wav_int_code(std::numeric_limits<double>::quiet_NaN(), 16), 0);
    EXPECT_EQ(wav_int_code(std::numeric_limits<double>::quiet_NaN(), 32), 0);
}

} // namespace
