// Samples written by the writer and read back by the reader: integer codes and float values
// survive exactly, as do channel masks and extra chunks.
#include "audio/wav_reader.h"
#include "audio/wav_writer.h"
#include "support/signal_gen.h"
#include "wav_test_util.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using WavRoundTrip = WavTest;

constexpr std::size_t kFrames = 30000; // enough to cross the writer's block boundaries
constexpr std::uint32_t kChannels = 2;

double full_scale(std::uint32_t format) {
    return format == 16 ? 32767.0 : (format == 24 ? 8388607.0 : 2147483647.0);
}

std::int64_t expected_code(double x, double scale) {
    return std::llround(std::clamp(x, -1.0, 1.0) * scale);
}

// Writes seeded random samples (some beyond full scale) and reads them back.
WavFile write_and_read(const std::string& path, std::uint32_t format,
                       const std::vector<double>& samples) {
    EXPECT_TRUE(wav_write(path.c_str(), 48000, kChannels, format, samples, kFrames));
    WavFile file;
    EXPECT_TRUE(wav_read(path.c_str(), file));
    EXPECT_EQ(file.format, format);
    EXPECT_EQ(file.channels, kChannels);
    EXPECT_EQ(file.sample_rate, 48000u);
    EXPECT_EQ(file.frames, kFrames);
    return file;
}

class WavIntRoundTrip : public WavRoundTrip, public ::testing::WithParamInterface<std::uint32_t> {};

TEST_P(WavIntRoundTrip, CodesSurvive) {
    const std::uint32_t format = GetParam();
    const double scale = full_scale(format);
    const std::vector<double> samples = signal_uniform(format, kFrames * kChannels, -1.1, 1.1);
    const WavFile file = write_and_read(path_of("rt.wav"), format, samples);
    ASSERT_EQ(file.samples.size(), samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::int64_t code = expected_code(samples[i], scale);
        ASSERT_EQ(file.samples[i], static_cast<double>(code) / scale) << "index " << i;
        ASSERT_EQ(std::llround(file.samples[i] * scale), code) << "index " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(IntegerFormats, WavIntRoundTrip, ::testing::Values(16u, 24u, 32u));

TEST_F(WavRoundTrip, Float32ValuesAreTheNarrowedDoubles) {
    const std::vector<double> samples = signal_uniform(288, kFrames * kChannels, -2.0, 2.0);
    const WavFile file = write_and_read(path_of("f32.wav"), 288, samples);
    ASSERT_EQ(file.samples.size(), samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        ASSERT_EQ(file.samples[i], static_cast<double>(static_cast<float>(samples[i])))
            << "index " << i;
    }
}

TEST_F(WavRoundTrip, Float64ValuesAreIdentical) {
    const std::vector<double> samples = signal_uniform(320, kFrames * kChannels, -2.0, 2.0);
    const WavFile file = write_and_read(path_of("f64.wav"), 320, samples);
    EXPECT_EQ(file.samples, samples);
}

// Reading a file and writing it again in its own format reproduces every code except the most
// negative one, which the clamp to -1.0 moves up by one.
TEST_F(WavRoundTrip, ReadWriteReproducesFileCodes) {
    const std::vector<std::int64_t> codes = {-8388608, -8388607, -1, 0, 1, 4242, 8388607, -77};
    FixtureFmt fmt;
    fmt.bits = 24;
    fmt.channels = 2;
    const std::string in =
        write_fixture("in.wav", fixture_simple_wav(fmt, fixture_int_data(24, codes)));
    WavFile file;
    ASSERT_TRUE(wav_read(in.c_str(), file));
    const std::string out = path_of("out.wav");
    ASSERT_TRUE(wav_write(out.c_str(), file.sample_rate, file.channels, file.format, file.samples,
                          file.frames));
    const std::vector<std::uint8_t> bytes = fixture_read_file(out);
    ASSERT_EQ(bytes.size(), 44u + codes.size() * 3);
    for (std::size_t i = 0; i < codes.size(); ++i) {
        const std::size_t at = 44 + 3 * i;
        std::int64_t code = bytes[at] | (bytes[at + 1] << 8) | (bytes[at + 2] << 16);
        if (code >= 0x800000) code -= 0x1000000;
        EXPECT_EQ(code, std::max<std::int64_t>(codes[i], -8388607)) << "index " << i;
    }
}

TEST_F(WavRoundTrip, ExtensibleKeepsMaskAndFormat) {
    for (const std::uint32_t format : {16u, 24u, 32u, 288u, 320u}) {
        const std::vector<double> samples = {1.0, -1.0, 0.0, 0.0, -1.0, 1.0};
        const std::string path = path_of("ext.wav");
        ASSERT_TRUE(wav_write_extensible(path.c_str(), 22050, 3, format, samples, 2, 0x107));
        WavFile file;
        ASSERT_TRUE(wav_read(path.c_str(), file)) << format;
        EXPECT_EQ(file.format, format);
        EXPECT_TRUE(file.extensible);
        EXPECT_EQ(file.channel_mask, 0x107u);
        EXPECT_EQ(file.channels, 3u);
        EXPECT_EQ(file.samples, samples) << format; // every value is exact in every format
    }
}

TEST_F(WavRoundTrip, IntegerExtraChunksAreCopiedThrough) {
    FixtureChunk list = fixture_chunk("LIST", std::vector<std::uint8_t>{'a', 'b', 'c'});
    list.pad_byte = 0x20;
    const FixtureChunk chunks[] = {fixture_fmt_chunk(FixtureFmt{}), list,
                                   fixture_int_data(16, std::vector<std::int64_t>{1, 2, 3})};
    WavFile first;
    ASSERT_TRUE(wav_read(write_fixture("in.wav", fixture_wav_bytes(chunks)).c_str(), first));
    const std::string out = path_of("out.wav");
    ASSERT_TRUE(wav_write_with_extra(out.c_str(), first.sample_rate, first.channels, first.format,
                                     first.samples, first.frames, first.extra_chunks));
    WavFile second;
    ASSERT_TRUE(wav_read(out.c_str(), second));
    EXPECT_EQ(second.extra_chunks, first.extra_chunks);
    EXPECT_EQ(second.samples, first.samples);
}

TEST_F(WavRoundTrip, FloatExtraChunksGainTheWritersOwnFact) {
    const FixtureChunk chunks[] = {fixture_fmt_chunk(FixtureFmt{.tag = 3, .bits = 32}),
                                   fixture_chunk("fact", std::vector<std::uint8_t>{99, 0, 0, 0}),
                                   fixture_float32_data(std::vector<float>{0.5f, 0.75f}),
                                   fixture_chunk("LIST", std::vector<std::uint8_t>{'x', 'y'})};
    WavFile first;
    ASSERT_TRUE(wav_read(write_fixture("in.wav", fixture_wav_bytes(chunks)).c_str(), first));
    ASSERT_EQ(first.extra_chunks.size(), 12u + 10u);
    const std::string out = path_of("out.wav");
    ASSERT_TRUE(wav_write_with_extra(out.c_str(), first.sample_rate, first.channels, first.format,
                                     first.samples, first.frames, first.extra_chunks));
    WavFile second;
    ASSERT_TRUE(wav_read(out.c_str(), second));
    const std::vector<std::uint8_t> expected = {'f', 'a', 'c', 't', 4,   0, 0, 0, 2, 0,   0,
                                                0,   'L', 'I', 'S', 'T', 2, 0, 0, 0, 'x', 'y'};
    EXPECT_EQ(second.extra_chunks, expected);
    EXPECT_EQ(second.samples, first.samples);
}

} // namespace
