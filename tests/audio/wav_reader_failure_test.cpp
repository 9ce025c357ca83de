// Files the reader refuses: each read returns false, leaves the record zeroed and reports the
// exact reason texts.
#include "audio/wav_reader.h"
#include "wav_test_util.h"

#include <limits>
#include <string>
#include <vector>

namespace {

constexpr const char* kUnreadable = "file not found or not readable";

class WavReaderFailure : public WavTest {
  protected:
    // Reads the bytes as a file and checks a clean refusal with the generic reason.
    void expect_refused(std::span<const std::uint8_t> bytes) {
        const std::string path = write_fixture("bad.wav", bytes);
        WavFile file = filled_record();
        EXPECT_FALSE(wav_read(path.c_str(), file));
        expect_zeroed(file);
        EXPECT_STREQ(wav_error_text(), kGenericWavError);
        EXPECT_EQ(wav_failure_reason(path.c_str()), kGenericWavError);
    }
};

FixtureFmt pcm16_mono() {
    return FixtureFmt{};
}

FixtureChunk two_samples() {
    return fixture_int_data(16, std::vector<std::int64_t>{1, -1});
}

TEST_F(WavReaderFailure, MissingFile) {
    const std::string path = path_of("absent.wav");
    WavFile file = filled_record();
    EXPECT_FALSE(wav_read(path.c_str(), file));
    expect_zeroed(file);
    EXPECT_STREQ(wav_error_text(), kGenericWavError);
    EXPECT_EQ(wav_failure_reason(path.c_str()), kUnreadable);
}

TEST_F(WavReaderFailure, NullPath) {
    WavFile file = filled_record();
    EXPECT_FALSE(wav_read(nullptr, file));
    expect_zeroed(file);
    EXPECT_STREQ(wav_error_text(), kGenericWavError);
    EXPECT_EQ(wav_failure_reason(nullptr), kUnreadable);
}

TEST_F(WavReaderFailure, EmptyFile) {
    expect_refused({});
}

TEST_F(WavReaderFailure, RifxHeader) {
    const FixtureChunk chunks[] = {fixture_fmt_chunk(pcm16_mono()), two_samples()};
    expect_refused(fixture_wav_bytes(chunks, "RIFX", "WAVE"));
}

TEST_F(WavReaderFailure, NotWave) {
    const FixtureChunk chunks[] = {fixture_fmt_chunk(pcm16_mono()), two_samples()};
    expect_refused(fixture_wav_bytes(chunks, "RIFF", "AVI "));
}

TEST_F(WavReaderFailure, HeaderOnlyWithoutChunks) {
    expect_refused(fixture_wav_bytes({}));
}

TEST_F(WavReaderFailure, NoFmtChunk) {
    const FixtureChunk chunks[] = {two_samples()};
    expect_refused(fixture_wav_bytes(chunks));
}

TEST_F(WavReaderFailure, NoDataChunk) {
    const FixtureChunk chunks[] = {fixture_fmt_chunk(pcm16_mono())};
    expect_refused(fixture_wav_bytes(chunks));
}

TEST_F(WavReaderFailure, FmtShorterThan16Bytes) {
    FixtureFmt fmt = pcm16_mono();
    fmt.size = 14;
    expect_refused(fixture_simple_wav(fmt, two_samples()));
}

TEST_F(WavReaderFailure, ShortFmtFailsEvenWhenAValidFmtFollows) {
    FixtureFmt short_fmt = pcm16_mono();
    short_fmt.size = 14;
    const FixtureChunk chunks[] = {fixture_fmt_chunk(short_fmt), fixture_fmt_chunk(pcm16_mono()),
                                   two_samples()};
    expect_refused(fixture_wav_bytes(chunks));
}

TEST_F(WavReaderFailure, FmtTruncatedByEndOfFile) {
    FixtureChunk fmt = fixture_fmt_chunk(pcm16_mono());
    fmt.payload.resize(10);
    fmt.declared_size = 16;
    const FixtureChunk chunks[] = {fmt};
    expect_refused(fixture_wav_bytes(chunks));
}

TEST_F(WavReaderFailure, FormatTag2) {
    FixtureFmt fmt = pcm16_mono();
    fmt.tag = 2;
    expect_refused(fixture_simple_wav(fmt, two_samples()));
}

TEST_F(WavReaderFailure, ExtensibleTagWith24ByteFmt) {
    FixtureFmt fmt = pcm16_mono();
    fmt.tag = 0xFFFE;
    fmt.size = 24;
    expect_refused(fixture_simple_wav(fmt, two_samples()));
}

TEST_F(WavReaderFailure, ExtensibleSubFormatWord2) {
    FixtureFmt fmt = pcm16_mono();
    fmt.tag = 0xFFFE;
    fmt.size = 40;
    fmt.subformat_word = 2;
    expect_refused(fixture_simple_wav(fmt, two_samples()));
}

TEST_F(WavReaderFailure, EightBitPcm) {
    FixtureFmt fmt = pcm16_mono();
    fmt.bits = 8;
    expect_refused(fixture_simple_wav(fmt, fixture_chunk("data", std::vector<std::uint8_t>{1, 2})));
}

TEST_F(WavReaderFailure, TwelveBitPcm) {
    FixtureFmt fmt = pcm16_mono();
    fmt.bits = 12;
    expect_refused(fixture_simple_wav(fmt, two_samples()));
}

TEST_F(WavReaderFailure, FloatWith16Bits) {
    FixtureFmt fmt = pcm16_mono();
    fmt.tag = 3;
    expect_refused(fixture_simple_wav(fmt, two_samples()));
}

TEST_F(WavReaderFailure, IntegerWith64Bits) {
    FixtureFmt fmt = pcm16_mono();
    fmt.bits = 64;
    expect_refused(fixture_simple_wav(fmt, fixture_float64_data(std::vector<double>{0.5})));
}

TEST_F(WavReaderFailure, ZeroSampleRate) {
    FixtureFmt fmt = pcm16_mono();
    fmt.sample_rate = 0;
    expect_refused(fixture_simple_wav(fmt, two_samples()));
}

TEST_F(WavReaderFailure, ZeroChannels) {
    FixtureFmt fmt = pcm16_mono();
    fmt.channels = 0;
    expect_refused(fixture_simple_wav(fmt, two_samples()));
}

TEST_F(WavReaderFailure, DataSizeNotAMultipleOfTheFrameSize) {
    FixtureFmt fmt = pcm16_mono();
    fmt.bits = 24;
    expect_refused(fixture_simple_wav(fmt, two_samples())); // 4 bytes, 3 a frame
}

TEST_F(WavReaderFailure, TruncatedDataChunk) {
    FixtureChunk data = two_samples();
    data.declared_size = 8; // 4 bytes present
    expect_refused(fixture_simple_wav(pcm16_mono(), data));
}

TEST_F(WavReaderFailure, AbsurdDataSizeInTinyFile) {
    FixtureChunk data = two_samples();
    data.declared_size = 0xFFFFFFF0u;
    expect_refused(fixture_simple_wav(pcm16_mono(), data));
}

TEST_F(WavReaderFailure, TruncatedUnknownChunk) {
    FixtureChunk list = fixture_chunk("LIST", std::vector<std::uint8_t>{1, 2, 3, 4});
    list.declared_size = 0x7FFFFFF0u;
    const FixtureChunk chunks[] = {fixture_fmt_chunk(pcm16_mono()), two_samples(), list};
    expect_refused(fixture_wav_bytes(chunks));
}

TEST_F(WavReaderFailure, OddUnknownChunkMissingItsPadByte) {
    FixtureChunk list = fixture_chunk("LIST", std::vector<std::uint8_t>{1, 2, 3});
    list.declared_size = 3; // declared explicitly: no pad byte is written
    const FixtureChunk chunks[] = {fixture_fmt_chunk(pcm16_mono()), two_samples(), list};
    expect_refused(fixture_wav_bytes(chunks));
}

TEST_F(WavReaderFailure, Float64Infinity) {
    FixtureFmt fmt = pcm16_mono();
    fmt.tag = 3;
    fmt.bits = 64;
    fmt.channels = 3;
    std::vector<double> values(9, 0.0);
    values[7] = -std::numeric_limits<double>::infinity();
    const std::string path =
        write_fixture("inf.wav", fixture_simple_wav(fmt, fixture_float64_data(values)));
    WavFile file = filled_record();
    EXPECT_FALSE(wav_read(path.c_str(), file));
    expect_zeroed(file);
    EXPECT_STREQ(wav_error_text(), "contains NaN or infinite samples, first at frame 2, channel 1");
}

TEST_F(WavReaderFailure, ErrorTextIsEmptiedByTheNextRead) {
    FixtureFmt fmt = pcm16_mono();
    fmt.tag = 3;
    fmt.bits = 32;
    const std::vector<float> values = {std::numeric_limits<float>::quiet_NaN()};
    const std::string nan_path =
        write_fixture("nan.wav", fixture_simple_wav(fmt, fixture_float32_data(values)));
    const std::string good_path =
        write_fixture("good.wav", fixture_simple_wav(pcm16_mono(), two_samples()));
    WavFile file;
    EXPECT_FALSE(wav_read(nan_path.c_str(), file));
    EXPECT_STREQ(wav_error_text(), "contains NaN or infinite samples, first at frame 0, channel 0");
    EXPECT_FALSE(wav_read(path_of("absent.wav").c_str(), file));
    EXPECT_STREQ(wav_error_text(), kGenericWavError);

    EXPECT_FALSE(wav_read(nan_path.c_str(), file));
    EXPECT_TRUE(wav_read(good_path.c_str(), file));
    EXPECT_STREQ(wav_error_text(), kGenericWavError);
}

} // namespace
