// The reader's listed edge cases, one test each.
#include "audio/wav_reader.h"
#include "wav_test_util.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using WavReaderEdge = WavTest;

FixtureFmt fmt_of(std::uint16_t tag, std::uint16_t bits, std::uint16_t channels) {
    FixtureFmt fmt;
    fmt.tag = tag;
    fmt.bits = bits;
    fmt.channels = channels;
    return fmt;
}

TEST_F(WavReaderEdge, DataBeforeFmtIsReadCorrectly) {
    const std::vector<std::int64_t> codes = {100, -200, 300, -400};
    const FixtureChunk chunks[] = {fixture_int_data(16, codes),
                                   fixture_fmt_chunk(fmt_of(1, 16, 2))};
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("late_fmt.wav", fixture_wav_bytes(chunks)).c_str(), file));
    EXPECT_EQ(file.channels, 2u);
    EXPECT_EQ(file.frames, 2u);
    const std::vector<double> expected = {100 / 32767.0, -200 / 32767.0, 300 / 32767.0,
                                          -400 / 32767.0};
    EXPECT_EQ(file.samples, expected);
}

TEST_F(WavReaderEdge, EmptyDataChunkReadsAsZeroFrames) {
    const FixtureChunk data = fixture_int_data(24, {});
    WavFile file;
    const std::string path = write_fixture("empty.wav", fixture_simple_wav(fmt_of(1, 24, 2), data));
    ASSERT_TRUE(wav_read(path.c_str(), file));
    EXPECT_EQ(file.frames, 0u);
    EXPECT_TRUE(file.samples.empty());
    EXPECT_EQ(file.format, 24u);
    EXPECT_EQ(file.channels, 2u);
    EXPECT_EQ(file.sample_rate, 48000u);
}

TEST_F(WavReaderEdge, OddSizedUnknownChunkKeepsPadByteAndNextChunkIsFound) {
    FixtureChunk list = fixture_chunk("LIST", std::vector<std::uint8_t>{'a', 'b', 'c'});
    list.pad_byte = 0x5A; // the file's own pad byte is kept as read
    const std::vector<std::int64_t> codes = {11, -11};
    const FixtureChunk chunks[] = {fixture_fmt_chunk(fmt_of(1, 16, 1)), list,
                                   fixture_int_data(16, codes)};
    WavFile file;
    ASSERT_TRUE(wav_read(write_fixture("odd.wav", fixture_wav_bytes(chunks)).c_str(), file));
    const std::vector<std::uint8_t> expected = {'L', 'I', 'S', 'T', 3,   0,
                                                0,   0,   'a', 'b', 'c', 0x5A};
    EXPECT_EQ(file.extra_chunks, expected);
    ASSERT_EQ(file.frames, 2u);
    EXPECT_EQ(file.samples[0], 11 / 32767.0);
    EXPECT_EQ(file.samples[1], -11 / 32767.0);
}

TEST_F(WavReaderEdge, PlainFloatFmtWith64BitsIsFormat320) {
    const std::vector<double> values = {0.25, -0.125};
    WavFile file;
    const std::string path = write_fixture(
        "f64.wav", fixture_simple_wav(fmt_of(3, 64, 1), fixture_float64_data(values)));
    ASSERT_TRUE(wav_read(path.c_str(), file));
    EXPECT_EQ(file.format, 320u);
    EXPECT_FALSE(file.extensible);
    EXPECT_EQ(file.samples, values);
}

TEST_F(WavReaderEdge, PlainFloatFmtWith24BitsIsRefused) {
    const std::vector<std::int64_t> codes = {1, 2};
    WavFile file = filled_record();
    const std::string path =
        write_fixture("f24.wav", fixture_simple_wav(fmt_of(3, 24, 1), fixture_int_data(24, codes)));
    EXPECT_FALSE(wav_read(path.c_str(), file));
    expect_zeroed(file);
    EXPECT_STREQ(wav_error_text(), kGenericWavError);
}

TEST_F(WavReaderEdge, Extensible40ByteFloatSubFormatIsFormat288) {
    FixtureFmt fmt = fmt_of(0xFFFE, 32, 2);
    fmt.size = 40;
    fmt.subformat_word = 3;
    fmt.channel_mask = 0x60;
    const std::vector<float> values = {0.5f, -0.25f};
    WavFile file;
    const std::string path =
        write_fixture("ext_float.wav", fixture_simple_wav(fmt, fixture_float32_data(values)));
    ASSERT_TRUE(wav_read(path.c_str(), file));
    EXPECT_EQ(file.format, 288u);
    EXPECT_TRUE(file.extensible);
    EXPECT_EQ(file.channel_mask, 0x60u);
    EXPECT_EQ(file.frames, 1u);
    EXPECT_EQ(file.samples, (std::vector<double>{0.5, -0.25}));
}

TEST_F(WavReaderEdge, DataSizeNotAWholeNumberOfFramesIsRefused) {
    FixtureChunk data = fixture_chunk("data", std::vector<std::uint8_t>(10, 0x11));
    WavFile file = filled_record();
    const std::string path = write_fixture("ten.wav", fixture_simple_wav(fmt_of(1, 16, 2), data));
    EXPECT_FALSE(wav_read(path.c_str(), file));
    expect_zeroed(file);
    EXPECT_STREQ(wav_error_text(), kGenericWavError);
}

TEST_F(WavReaderEdge, FirstNanNamesFrameAndChannel) {
    std::vector<float> values(2 * 8, 0.25f);
    values[5 * 2 + 1] = std::numeric_limits<float>::quiet_NaN();
    values[6 * 2 + 0] = std::numeric_limits<float>::infinity(); // later bad value, not reported
    values[7 * 2 + 1] = std::numeric_limits<float>::quiet_NaN();
    WavFile file = filled_record();
    const std::string path = write_fixture(
        "nan.wav", fixture_simple_wav(fmt_of(3, 32, 2), fixture_float32_data(values)));
    EXPECT_FALSE(wav_read(path.c_str(), file));
    expect_zeroed(file);
    EXPECT_STREQ(wav_error_text(), "contains NaN or infinite samples, first at frame 5, channel 1");
    EXPECT_EQ(wav_failure_reason(path.c_str()),
              "contains NaN or infinite samples, first at frame 5, channel 1");
}

// The payload is read and converted a block at a time; a long file must come back whole and in
// order, and its first bad value must be named whichever block it falls in.
TEST_F(WavReaderEdge, LongFilesReadWholeAcrossBlocks) {
    constexpr std::size_t kFrames = 300001; // stereo: past two blocks of 2^18 samples, odd end
    std::vector<std::int64_t> codes(2 * kFrames);
    for (std::size_t i = 0; i < codes.size(); ++i)
        codes[i] = static_cast<std::int64_t>((i * 7919) % 16777216) - 8388608;
    WavFile file;
    const std::string path = write_fixture(
        "long24.wav", fixture_simple_wav(fmt_of(1, 24, 2), fixture_int_data(24, codes)));
    ASSERT_TRUE(wav_read(path.c_str(), file));
    ASSERT_EQ(file.frames, kFrames);
    for (std::size_t i = 0; i < codes.size(); ++i)
        ASSERT_EQ(file.samples[i], static_cast<double>(codes[i]) / 8388607.0) << i;
}

TEST_F(WavReaderEdge, FirstNanIsNamedWhicheverBlockItFallsIn) {
    std::vector<float> values(2 * 300000, 0.25f);
    values[2 * 200000 + 1] = std::numeric_limits<float>::quiet_NaN(); // in the second block
    values[2 * 290000] = std::numeric_limits<float>::infinity();      // later, not named
    WavFile file = filled_record();
    const std::string path = write_fixture(
        "nan_late.wav", fixture_simple_wav(fmt_of(3, 32, 2), fixture_float32_data(values)));
    EXPECT_FALSE(wav_read(path.c_str(), file));
    expect_zeroed(file);
    EXPECT_STREQ(wav_error_text(),
                 "contains NaN or infinite samples, first at frame 200000, channel 1");
}

TEST_F(WavReaderEdge, Int16ExtremesConvertAsymmetrically) {
    const std::vector<std::int64_t> codes = {-32768, 32767};
    WavFile file;
    const std::string path = write_fixture(
        "ext16.wav", fixture_simple_wav(fmt_of(1, 16, 1), fixture_int_data(16, codes)));
    ASSERT_TRUE(wav_read(path.c_str(), file));
    ASSERT_EQ(file.samples.size(), 2u);
    EXPECT_EQ(file.samples[0], -32768.0 / 32767.0);
    EXPECT_NEAR(file.samples[0], -1.0000305, 1e-7);
    EXPECT_LT(file.samples[0], -1.0);
    EXPECT_EQ(file.samples[1], 1.0);
}

TEST_F(WavReaderEdge, MoreThanTwoChannelsAreRead) {
    FixtureFmt fmt = fmt_of(1, 32, 3);
    fmt.sample_rate = 8000; // rate limits belong to the commands, not the reader
    const std::vector<std::int64_t> codes = {1, 2, 3, 4, 5, 6};
    WavFile file;
    const std::string path =
        write_fixture("three.wav", fixture_simple_wav(fmt, fixture_int_data(32, codes)));
    ASSERT_TRUE(wav_read(path.c_str(), file));
    EXPECT_EQ(file.channels, 3u);
    EXPECT_EQ(file.frames, 2u);
    EXPECT_EQ(file.sample_rate, 8000u);
    EXPECT_EQ(file.samples[5], 6 / 2147483647.0);
}

} // namespace
