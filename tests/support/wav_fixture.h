// Builds WAV file bytes at the byte level from a description, for tests that need well-formed,
// unusual or broken files. Written independently of the project's own WAV code so that the two
// check each other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// One chunk as it appears in the file.
struct FixtureChunk {
    std::string id;                             // four characters
    std::vector<std::uint8_t> payload;          // the bytes present in the file
    std::optional<std::uint32_t> declared_size; // size field when it differs from payload.size()
    std::uint8_t pad_byte = 0; // written after an odd payload unless the chunk is truncated
};

// The fields of a fmt chunk. `size` is the chunk size and the number of payload bytes written
// (16, 18, 40 or anything else); fields beyond it are cut off, missing bytes are zeros.
struct FixtureFmt {
    std::uint16_t tag = 1; // 1 PCM, 3 float, 0xFFFE extensible
    std::uint16_t channels = 1;
    std::uint32_t sample_rate = 48000;
    std::uint16_t bits = 16;
    std::uint32_t size = 16;
    std::uint16_t subformat_word = 1; // first word of the SubFormat GUID (extensible layout)
    std::uint32_t channel_mask = 0;
};

// A fmt chunk; byte rate and block align are derived from channels and bits.
FixtureChunk fixture_fmt_chunk(const FixtureFmt& fmt);

// A "data" chunk of little-endian integer codes of the given width (16, 24 or 32 bits); codes are
// taken modulo the width.
FixtureChunk fixture_int_data(unsigned bits, std::span<const std::int64_t> codes);

// A "data" chunk of IEEE 32-bit floats.
FixtureChunk fixture_float32_data(std::span<const float> values);

// A "data" chunk of IEEE 64-bit floats.
FixtureChunk fixture_float64_data(std::span<const double> values);

// Any chunk with the given id and payload.
FixtureChunk fixture_chunk(std::string_view id, std::span<const std::uint8_t> payload);

// The 8-byte header of a chunk followed by its payload and pad byte, as the file holds it.
std::vector<std::uint8_t> fixture_chunk_bytes(const FixtureChunk& chunk);

// "RIFF", a size covering everything after it, "WAVE", then the chunks in the given order.
std::vector<std::uint8_t> fixture_wav_bytes(std::span<const FixtureChunk> chunks,
                                            std::string_view riff_tag = "RIFF",
                                            std::string_view wave_tag = "WAVE");

// The common case: a fmt chunk followed by a data chunk.
std::vector<std::uint8_t> fixture_simple_wav(const FixtureFmt& fmt, const FixtureChunk& data);

// Byte-vector forms of the whole-file helpers of support/temp_dir.h.
bool fixture_write_file(const std::string& path, std::span<const std::uint8_t> bytes);
std::vector<std::uint8_t> fixture_read_file(const std::string& path);

// Little-endian field readers for checking written files.
std::uint32_t fixture_u16_at(std::span<const std::uint8_t> bytes, std::size_t offset);
std::uint32_t fixture_u32_at(std::span<const std::uint8_t> bytes, std::size_t offset);
