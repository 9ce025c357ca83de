// The writers' headers byte for byte, RIFF sizes with extra chunks and the absence of a pad byte.
#include "audio/wav_writer.h"
#include "wav_test_util.h"

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

class WavWriterHeader : public WavTest {
  protected:
    Bytes written(const std::string& name) { return fixture_read_file(path_of(name)); }
};

Bytes prefix(const Bytes& bytes, std::size_t count) {
    return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
}

Bytes subrange(const Bytes& bytes, std::size_t start, std::size_t count) {
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(start);
    return Bytes(first, first + static_cast<std::ptrdiff_t>(count));
}

TEST_F(WavWriterHeader, PlainIntegerHeaderIs44Bytes) {
    const std::vector<double> samples(6, 0.0);
    ASSERT_TRUE(wav_write(path_of("a.wav").c_str(), 44100, 2, 16, samples, 3));
    const Bytes bytes = written("a.wav");
    ASSERT_EQ(bytes.size(), 44u + 12u);
    const Bytes expected = {'R',  'I',  'F',  'F',  0x30, 0x00, 0x00, 0x00, 'W',  'A',  'V',
                            'E',  'f',  'm',  't',  ' ',  0x10, 0x00, 0x00, 0x00, 0x01, 0x00,
                            0x02, 0x00, 0x44, 0xAC, 0x00, 0x00, 0x10, 0xB1, 0x02, 0x00, 0x04,
                            0x00, 0x10, 0x00, 'd',  'a',  't',  'a',  0x0C, 0x00, 0x00, 0x00};
    EXPECT_EQ(prefix(bytes, 44), expected);
}

TEST_F(WavWriterHeader, ExtensibleIntegerHeaderIs68Bytes) {
    const std::vector<double> samples(2, 0.0);
    ASSERT_TRUE(wav_write_extensible(path_of("b.wav").c_str(), 48000, 1, 24, samples, 2, 0x4));
    const Bytes bytes = written("b.wav");
    ASSERT_EQ(bytes.size(), 68u + 6u);
    const Bytes expected = {'R',  'I',  'F',  'F',  0x42, 0x00, 0x00, 0x00, 'W',  'A',  'V',  'E',
                            'f',  'm',  't',  ' ',  0x28, 0x00, 0x00, 0x00, 0xFE, 0xFF, 0x01, 0x00,
                            0x80, 0xBB, 0x00, 0x00, 0x80, 0x32, 0x02, 0x00, 0x03, 0x00, 0x18, 0x00,
                            0x16, 0x00, 0x18, 0x00, 0x04, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,
                            0x00, 0x00, 0x10, 0x00, 0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71,
                            'd',  'a',  't',  'a',  0x06, 0x00, 0x00, 0x00};
    EXPECT_EQ(prefix(bytes, 68), expected);
}

TEST_F(WavWriterHeader, PlainFloatHeaderIs58BytesWithFact) {
    const std::vector<double> samples(10, 0.0);
    ASSERT_TRUE(wav_write(path_of("c.wav").c_str(), 48000, 2, 288, samples, 5));
    const Bytes bytes = written("c.wav");
    ASSERT_EQ(bytes.size(), 58u + 40u);
    const Bytes expected = {'R',  'I',  'F',  'F',  0x5A, 0x00, 0x00, 0x00, 'W',  'A',  'V',  'E',
                            'f',  'm',  't',  ' ',  0x12, 0x00, 0x00, 0x00, 0x03, 0x00, 0x02, 0x00,
                            0x80, 0xBB, 0x00, 0x00, 0x00, 0xDC, 0x05, 0x00, 0x08, 0x00, 0x20, 0x00,
                            0x00, 0x00, 'f',  'a',  'c',  't',  0x04, 0x00, 0x00, 0x00, 0x05, 0x00,
                            0x00, 0x00, 'd',  'a',  't',  'a',  0x28, 0x00, 0x00, 0x00};
    EXPECT_EQ(prefix(bytes, 58), expected);
}

TEST_F(WavWriterHeader, ExtensibleFloatHeaderIs80BytesWithFact) {
    const std::vector<double> samples(3, 0.0);
    ASSERT_TRUE(wav_write_extensible(path_of("d.wav").c_str(), 96000, 1, 320, samples, 3, 0x4));
    const Bytes bytes = written("d.wav");
    ASSERT_EQ(bytes.size(), 80u + 24u);
    const Bytes expected = {'R',  'I',  'F',  'F',  0x60, 0x00, 0x00, 0x00, 'W',  'A',  'V',  'E',
                            'f',  'm',  't',  ' ',  0x28, 0x00, 0x00, 0x00, 0xFE, 0xFF, 0x01, 0x00,
                            0x00, 0x77, 0x01, 0x00, 0x00, 0xB8, 0x0B, 0x00, 0x08, 0x00, 0x40, 0x00,
                            0x16, 0x00, 0x40, 0x00, 0x04, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00,
                            0x00, 0x00, 0x10, 0x00, 0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71,
                            'f',  'a',  'c',  't',  0x04, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00,
                            'd',  'a',  't',  'a',  0x18, 0x00, 0x00, 0x00};
    EXPECT_EQ(prefix(bytes, 80), expected);
}

TEST_F(WavWriterHeader, WriteFloatExtensibleWithExtraCountsKeptChunks) {
    const Bytes list = fixture_chunk_bytes(fixture_chunk("LIST", Bytes{1, 2, 3}));
    const std::vector<double> samples = {0.5};
    ASSERT_TRUE(
        wav_write_float(path_of("e.wav").c_str(), 48000, 1, 288, true, 0x4, samples, 1, list));
    const Bytes bytes = written("e.wav");
    ASSERT_EQ(bytes.size(), 80u + 4u + 12u);
    EXPECT_EQ(fixture_u32_at(bytes, 4), 40u + 4u + 32u + 12u);
    EXPECT_EQ(fixture_u16_at(bytes, 20), 0xFFFEu);
    EXPECT_EQ(fixture_u32_at(bytes, 40), 0x4u);
    EXPECT_EQ(subrange(bytes, 84, 12), list);
}

TEST_F(WavWriterHeader, IntegerRiffSizeIncludesExtraBytesWrittenVerbatim) {
    Bytes extra = fixture_chunk_bytes(fixture_chunk("fact", Bytes{9, 0, 0, 0}));
    const Bytes list = fixture_chunk_bytes(fixture_chunk("LIST", Bytes{'a', 'b', 'c', 'd'}));
    extra.insert(extra.end(), list.begin(), list.end());
    const std::vector<double> samples = {0.0};
    ASSERT_TRUE(wav_write_with_extra(path_of("f.wav").c_str(), 8000, 1, 16, samples, 1, extra));
    const Bytes bytes = written("f.wav");
    ASSERT_EQ(bytes.size(), 44u + 2u + 24u);
    EXPECT_EQ(fixture_u32_at(bytes, 4), 2u + 36u + 24u);
    EXPECT_EQ(fixture_u32_at(bytes, 16), 16u);
    EXPECT_EQ(fixture_u32_at(bytes, 40), 2u);
    EXPECT_EQ(subrange(bytes, 46, 24), extra); // integer files keep "fact" chunks as given
}

TEST_F(WavWriterHeader, Odd24BitDataHasNoPadByte) {
    const std::vector<double> samples = {1.0};
    ASSERT_TRUE(wav_write(path_of("g.wav").c_str(), 48000, 1, 24, samples, 1));
    const Bytes bytes = written("g.wav");
    ASSERT_EQ(bytes.size(), 47u);
    EXPECT_EQ(fixture_u32_at(bytes, 4), 39u);
    EXPECT_EQ(fixture_u32_at(bytes, 40), 3u);
    EXPECT_EQ(subrange(bytes, 44, 3), (Bytes{0xFF, 0xFF, 0x7F}));
}

TEST_F(WavWriterHeader, Odd24BitDataIsFollowedAtOnceByExtraChunks) {
    const Bytes list = fixture_chunk_bytes(fixture_chunk("LIST", Bytes{7, 7}));
    const std::vector<double> samples = {-1.0, 0.0, 1.0};
    ASSERT_TRUE(wav_write_with_extra(path_of("h.wav").c_str(), 48000, 1, 24, samples, 3, list));
    const Bytes bytes = written("h.wav");
    ASSERT_EQ(bytes.size(), 44u + 9u + 10u);
    EXPECT_EQ(fixture_u32_at(bytes, 4), 9u + 36u + 10u);
    EXPECT_EQ(subrange(bytes, 53, 10), list);
}

TEST_F(WavWriterHeader, FloatExtraPiecesCutAtTheEndOfTheBuffer) {
    Bytes extra = fixture_chunk_bytes(fixture_chunk("LIST", Bytes{1, 2, 3, 4}));
    const Bytes tail = {'a', 'b', 'c', 'd', 'e'}; // fewer than 8 bytes: one last piece
    extra.insert(extra.end(), tail.begin(), tail.end());
    const std::vector<double> samples = {0.0};
    ASSERT_TRUE(wav_write_with_extra(path_of("i.wav").c_str(), 48000, 1, 320, samples, 1, extra));
    const Bytes bytes = written("i.wav");
    ASSERT_EQ(bytes.size(), 58u + 8u + 17u);
    EXPECT_EQ(fixture_u32_at(bytes, 4), 18u + 8u + 32u + 17u);
    EXPECT_EQ(subrange(bytes, 66, 17), extra);
}

TEST_F(WavWriterHeader, FloatExtraChunkLongerThanTheBufferIsCutShort) {
    FixtureChunk cut = fixture_chunk("LIST", Bytes{1, 2});
    cut.declared_size = 100;
    const Bytes extra = fixture_chunk_bytes(cut);
    const std::vector<double> samples = {0.0};
    ASSERT_TRUE(wav_write_with_extra(path_of("j.wav").c_str(), 48000, 1, 288, samples, 1, extra));
    const Bytes bytes = written("j.wav");
    ASSERT_EQ(bytes.size(), 58u + 4u + 10u);
    EXPECT_EQ(fixture_u32_at(bytes, 4), 18u + 4u + 32u + 10u);
    EXPECT_EQ(subrange(bytes, 62, 10), extra);
}

// A short last piece whose first four bytes read "fact" counts as a fact chunk and is left out.
TEST_F(WavWriterHeader, ShortFactPieceIsLeftOut) {
    Bytes extra = fixture_chunk_bytes(fixture_chunk("LIST", Bytes{1, 2, 3, 4}));
    const Bytes tail = {'f', 'a', 'c', 't', 1, 2};
    extra.insert(extra.end(), tail.begin(), tail.end());
    const std::vector<double> samples = {0.0};
    ASSERT_TRUE(wav_write_with_extra(path_of("k.wav").c_str(), 48000, 1, 288, samples, 1, extra));
    const Bytes bytes = written("k.wav");
    ASSERT_EQ(bytes.size(), 58u + 4u + 12u);
    EXPECT_EQ(subrange(bytes, 62, 12), prefix(extra, 12));
}

} // namespace
