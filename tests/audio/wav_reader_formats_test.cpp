// The reader against files built byte by byte: every format decodes to the exact expected values.
#include "audio/wav_reader.h"
#include "wav_test_util.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace {

class WavReaderFormats : public WavTest {
  protected:
    // Writes and reads a file made of one fmt and one data chunk; the read must succeed.
    WavFile read_simple(const FixtureFmt& fmt, const FixtureChunk& data) {
        const std::string path = write_fixture("in.wav", fixture_simple_wav(fmt, data));
        WavFile file;
        EXPECT_TRUE(wav_read(path.c_str(), file));
        return file;
    }
};

FixtureFmt int_fmt(std::uint16_t bits, std::uint16_t channels) {
    FixtureFmt fmt;
    fmt.bits = bits;
    fmt.channels = channels;
    return fmt;
}

FixtureFmt float_fmt(std::uint16_t bits, std::uint16_t channels) {
    FixtureFmt fmt = int_fmt(bits, channels);
    fmt.tag = 3;
    return fmt;
}

void expect_int_samples(const WavFile& file, const std::vector<std::int64_t>& codes,
                        double divisor) {
    ASSERT_EQ(file.samples.size(), codes.size());
    for (std::size_t i = 0; i < codes.size(); ++i) {
        EXPECT_EQ(file.samples[i], static_cast<double>(codes[i]) / divisor) << "index " << i;
    }
}

TEST_F(WavReaderFormats, Int16CodesDivideBy32767) {
    const std::vector<std::int64_t> codes = {0, 1, -1, 32767, -32768, 12345, -12345, 16384};
    const WavFile file = read_simple(int_fmt(16, 2), fixture_int_data(16, codes));
    EXPECT_EQ(file.format, 16u);
    EXPECT_EQ(file.channels, 2u);
    EXPECT_EQ(file.sample_rate, 48000u);
    EXPECT_EQ(file.frames, 4u);
    EXPECT_FALSE(file.extensible);
    EXPECT_EQ(file.channel_mask, 0u);
    EXPECT_TRUE(file.extra_chunks.empty());
    expect_int_samples(file, codes, 32767.0);
}

TEST_F(WavReaderFormats, Int24SignComesFromBit23) {
    const std::vector<std::int64_t> codes = {
        0, 1, -1, 8388607, -8388608, 0x123456, -0x123456, 0x7FFF00, -0x800000 + 1, 0x00FFFF};
    const WavFile file = read_simple(int_fmt(24, 1), fixture_int_data(24, codes));
    EXPECT_EQ(file.format, 24u);
    EXPECT_EQ(file.frames, codes.size());
    expect_int_samples(file, codes, 8388607.0);
    EXPECT_EQ(file.samples[3], 1.0);
    EXPECT_LT(file.samples[4], -1.0);
}

TEST_F(WavReaderFormats, Int32CodesDivideBy2147483647) {
    const std::vector<std::int64_t> codes = {0, 1, -1, 2147483647, -2147483647 - 1, 123456789};
    const WavFile file = read_simple(int_fmt(32, 3), fixture_int_data(32, codes));
    EXPECT_EQ(file.format, 32u);
    EXPECT_EQ(file.channels, 3u);
    EXPECT_EQ(file.frames, 2u);
    expect_int_samples(file, codes, 2147483647.0);
}

TEST_F(WavReaderFormats, Float32IsWidenedUnchanged) {
    const std::vector<float> values = {0.1f, -0.5f, 1e-30f, 3.4e38f, -1.5f, 1e-45f, 0.0f, -0.0f};
    const WavFile file = read_simple(float_fmt(32, 2), fixture_float32_data(values));
    EXPECT_EQ(file.format, 288u);
    EXPECT_EQ(file.frames, 4u);
    ASSERT_EQ(file.samples.size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(file.samples[i], static_cast<double>(values[i])) << "index " << i;
    }
    EXPECT_TRUE(std::signbit(file.samples[7]));
}

TEST_F(WavReaderFormats, Float64IsStoredUnchanged) {
    const std::vector<double> values = {0.1, -1e300, 4.9e-324, 2.5, -0.75, 1.0 / 3.0};
    const WavFile file = read_simple(float_fmt(64, 1), fixture_float64_data(values));
    EXPECT_EQ(file.format, 320u);
    EXPECT_EQ(file.frames, values.size());
    EXPECT_EQ(file.samples, values);
}

TEST_F(WavReaderFormats, SixChannelsInterleaveFrameMajor) {
    std::vector<std::int64_t> codes;
    for (std::int64_t f = 0; f < 3; ++f) {
        for (std::int64_t k = 0; k < 6; ++k)
            codes.push_back(f * 100 + k);
    }
    const WavFile file = read_simple(int_fmt(16, 6), fixture_int_data(16, codes));
    EXPECT_EQ(file.channels, 6u);
    EXPECT_EQ(file.frames, 3u);
    EXPECT_EQ(file.samples[2 * 6 + 4], 204 / 32767.0);
    expect_int_samples(file, codes, 32767.0);
}

TEST_F(WavReaderFormats, ExtensiblePcm24KeepsMask) {
    FixtureFmt fmt = int_fmt(24, 2);
    fmt.tag = 0xFFFE;
    fmt.size = 40;
    fmt.subformat_word = 1;
    fmt.channel_mask = 0x3;
    const std::vector<std::int64_t> codes = {-8388608, 8388607};
    const WavFile file = read_simple(fmt, fixture_int_data(24, codes));
    EXPECT_EQ(file.format, 24u);
    EXPECT_TRUE(file.extensible);
    EXPECT_EQ(file.channel_mask, 0x3u);
    expect_int_samples(file, codes, 8388607.0);
}

TEST_F(WavReaderFormats, ExtensibleWith26ByteFmtIsEnough) {
    FixtureFmt fmt = int_fmt(16, 1);
    fmt.tag = 0xFFFE;
    fmt.size = 26;
    fmt.channel_mask = 0x4;
    const std::vector<std::int64_t> codes = {7};
    const WavFile file = read_simple(fmt, fixture_int_data(16, codes));
    EXPECT_TRUE(file.extensible);
    EXPECT_EQ(file.channel_mask, 0x4u);
    expect_int_samples(file, codes, 32767.0);
}

TEST_F(WavReaderFormats, FmtLongerThan40BytesIsSkippedWhole) {
    FixtureFmt fmt = int_fmt(16, 1);
    fmt.size = 51; // odd: a pad byte follows, then the data chunk
    const std::vector<std::int64_t> codes = {-3, 3};
    const WavFile file = read_simple(fmt, fixture_int_data(16, codes));
    EXPECT_EQ(file.frames, 2u);
    expect_int_samples(file, codes, 32767.0);
}

TEST_F(WavReaderFormats, OddSizedDataChunkIsSkippedWithItsPadByte) {
    const std::vector<std::uint8_t> note = {'n', 'o', 't', 'e'};
    FixtureChunk data = fixture_int_data(24, std::vector<std::int64_t>{-2});
    data.pad_byte = 0xEE;
    const FixtureChunk chunks[] = {fixture_fmt_chunk(int_fmt(24, 1)), data,
                                   fixture_chunk("note", note)};
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("odd_data.wav", fixture_wav_bytes(chunks)).c_str(), file));
    EXPECT_EQ(file.samples, std::vector<double>{-2 / 8388607.0});
    const std::vector<std::uint8_t> expected = {'n', 'o', 't', 'e', 4, 0, 0, 0, 'n', 'o', 't', 'e'};
    EXPECT_EQ(file.extra_chunks, expected);
}

TEST_F(WavReaderFormats, RiffSizeIsIgnored) {
    std::vector<std::uint8_t> bytes =
        fixture_simple_wav(int_fmt(16, 1), fixture_int_data(16, std::vector<std::int64_t>{5}));
    bytes[4] = 0x01; // RIFF size 1, far too small
    bytes[5] = bytes[6] = bytes[7] = 0;
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("riff.wav", bytes).c_str(), file));
    EXPECT_EQ(file.frames, 1u);
    EXPECT_EQ(file.samples[0], 5 / 32767.0);
}

TEST_F(WavReaderFormats, LaterFmtReplacesEarlierOneWhole) {
    FixtureFmt first = float_fmt(32, 2);
    first.tag = 0xFFFE;
    first.size = 40;
    first.subformat_word = 3;
    first.channel_mask = 0x3;
    first.sample_rate = 96000;
    const FixtureChunk chunks[] = {fixture_fmt_chunk(first), fixture_fmt_chunk(int_fmt(16, 1)),
                                   fixture_int_data(16, std::vector<std::int64_t>{1, 2})};
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("two_fmt.wav", fixture_wav_bytes(chunks)).c_str(), file));
    EXPECT_EQ(file.format, 16u);
    EXPECT_EQ(file.channels, 1u);
    EXPECT_EQ(file.sample_rate, 48000u);
    EXPECT_FALSE(file.extensible);
    EXPECT_EQ(file.channel_mask, 0u);
    EXPECT_EQ(file.frames, 2u);
}

TEST_F(WavReaderFormats, LaterDataChunkReplacesEarlierOne) {
    const FixtureChunk chunks[] = {fixture_fmt_chunk(int_fmt(16, 1)),
                                   fixture_int_data(16, std::vector<std::int64_t>{1, 2, 3}),
                                   fixture_int_data(16, std::vector<std::int64_t>{-9})};
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("two_data.wav", fixture_wav_bytes(chunks)).c_str(), file));
    ASSERT_EQ(file.frames, 1u);
    EXPECT_EQ(file.samples[0], -9 / 32767.0);
}

TEST_F(WavReaderFormats, ExtraChunksKeptInFileOrderAroundFmtAndData) {
    const std::vector<std::uint8_t> a = {'a', 'b', 'c', 'd'};
    const std::vector<std::uint8_t> b = {'x'};
    const FixtureChunk chunks[] = {fixture_chunk("JUNK", a), fixture_fmt_chunk(int_fmt(16, 1)),
                                   fixture_int_data(16, std::vector<std::int64_t>{1}),
                                   fixture_chunk("bext", b)};
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("extras.wav", fixture_wav_bytes(chunks)).c_str(), file));
    const std::vector<std::uint8_t> expected = {'J', 'U', 'N', 'K', 4,   0, 0, 0, 'a', 'b', 'c',
                                                'd', 'b', 'e', 'x', 't', 1, 0, 0, 0,   'x', 0};
    EXPECT_EQ(file.extra_chunks, expected);
}

TEST_F(WavReaderFormats, TrailingBytesShorterThanAHeaderEndTheWalk) {
    std::vector<std::uint8_t> bytes =
        fixture_simple_wav(int_fmt(16, 1), fixture_int_data(16, std::vector<std::int64_t>{4}));
    bytes.insert(bytes.end(), {'L', 'I', 'S', 'T', 9});
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("tail.wav", bytes).c_str(), file));
    EXPECT_EQ(file.frames, 1u);
    EXPECT_TRUE(file.extra_chunks.empty());
}

// The padded length of an unknown chunk is computed in 32 bits, so a size of 0xFFFFFFFF pads to
// 0: only its header is kept and the walk goes on right after it.
TEST_F(WavReaderFormats, UnknownChunkOfMaximumSizeWrapsToEmptyPayload) {
    std::vector<std::uint8_t> bytes =
        fixture_simple_wav(int_fmt(16, 1), fixture_int_data(16, std::vector<std::int64_t>{4}));
    const std::vector<std::uint8_t> huge = {'b', 'i', 'g', ' ', 0xFF, 0xFF, 0xFF, 0xFF};
    bytes.insert(bytes.end(), huge.begin(), huge.end());
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("wrap.wav", bytes).c_str(), file));
    EXPECT_EQ(file.extra_chunks, huge);
    EXPECT_EQ(file.frames, 1u);
}

TEST_F(WavReaderFormats, FreeReleasesAndZeroes) {
    const std::vector<std::int64_t> codes = {1, 2, 3, 4};
    const std::vector<std::uint8_t> list = {'i', 'n', 'f', 'o'};
    const FixtureChunk chunks[] = {fixture_fmt_chunk(int_fmt(16, 2)), fixture_chunk("LIST", list),
                                   fixture_int_data(16, codes)};
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("free.wav", fixture_wav_bytes(chunks)).c_str(), file));
    ASSERT_EQ(file.samples.size(), 4u);
    ASSERT_EQ(file.extra_chunks.size(), 12u);
    wav_free(file);
    expect_zeroed(file);
    EXPECT_EQ(file.samples.capacity(), 0u);
    EXPECT_EQ(file.extra_chunks.capacity(), 0u);
}

} // namespace
