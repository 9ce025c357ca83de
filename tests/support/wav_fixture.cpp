#include "support/wav_fixture.h"

#include "support/temp_dir.h"

#include <cstring>

namespace {

void put_le(std::vector<std::uint8_t>& out, std::uint64_t value, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        out.push_back(static_cast<std::uint8_t>((value >> (8 * i)) & 0xFF));
    }
}

void put_text(std::vector<std::uint8_t>& out, std::string_view text) {
    out.insert(out.end(), text.begin(), text.end());
}

FixtureChunk data_chunk(std::vector<std::uint8_t> payload) {
    FixtureChunk chunk;
    chunk.id = "data";
    chunk.payload = std::move(payload);
    return chunk;
}

// The full 40-byte fmt layout; the caller keeps the first `size` bytes.
std::vector<std::uint8_t> full_fmt_payload(const FixtureFmt& fmt) {
    const std::uint32_t block_align = fmt.channels * (fmt.bits / 8u);
    std::vector<std::uint8_t> p;
    put_le(p, fmt.tag, 2);
    put_le(p, fmt.channels, 2);
    put_le(p, fmt.sample_rate, 4);
    put_le(p, std::uint64_t{fmt.sample_rate} * block_align, 4);
    put_le(p, block_align, 2);
    put_le(p, fmt.bits, 2);
    put_le(p, 22, 2); // cbSize of the extensible layout
    put_le(p, fmt.bits, 2);
    put_le(p, fmt.channel_mask, 4);
    put_le(p, fmt.subformat_word, 2);
    const std::uint8_t guid_tail[14] = {0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                        0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
    p.insert(p.end(), guid_tail, guid_tail + sizeof guid_tail);
    return p;
}

} // namespace

FixtureChunk fixture_fmt_chunk(const FixtureFmt& fmt) {
    std::vector<std::uint8_t> payload = full_fmt_payload(fmt);
    if (fmt.size == 18) {
        payload[16] = 0; // a plain 18-byte fmt ends with cbSize 0
        payload[17] = 0;
    }
    payload.resize(fmt.size, 0);
    FixtureChunk chunk;
    chunk.id = "fmt ";
    chunk.payload = std::move(payload);
    return chunk;
}

FixtureChunk fixture_int_data(unsigned bits, std::span<const std::int64_t> codes) {
    std::vector<std::uint8_t> payload;
    for (const std::int64_t code : codes)
        put_le(payload, static_cast<std::uint64_t>(code), bits / 8);
    return data_chunk(std::move(payload));
}

FixtureChunk fixture_float32_data(std::span<const float> values) {
    std::vector<std::uint8_t> payload;
    for (const float value : values) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        put_le(payload, bits, 4);
    }
    return data_chunk(std::move(payload));
}

FixtureChunk fixture_float64_data(std::span<const double> values) {
    std::vector<std::uint8_t> payload;
    for (const double value : values) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        put_le(payload, bits, 8);
    }
    return data_chunk(std::move(payload));
}

FixtureChunk fixture_chunk(std::string_view id, std::span<const std::uint8_t> payload) {
    FixtureChunk chunk;
    chunk.id = std::string(id);
    chunk.payload.assign(payload.begin(), payload.end());
    return chunk;
}

std::vector<std::uint8_t> fixture_chunk_bytes(const FixtureChunk& chunk) {
    std::vector<std::uint8_t> out;
    put_text(out, chunk.id);
    put_le(out, chunk.declared_size.value_or(static_cast<std::uint32_t>(chunk.payload.size())), 4);
    out.insert(out.end(), chunk.payload.begin(), chunk.payload.end());
    if (!chunk.declared_size && chunk.payload.size() % 2 == 1) out.push_back(chunk.pad_byte);
    return out;
}

std::vector<std::uint8_t> fixture_wav_bytes(std::span<const FixtureChunk> chunks,
                                            std::string_view riff_tag, std::string_view wave_tag) {
    std::vector<std::uint8_t> body;
    put_text(body, wave_tag);
    for (const FixtureChunk& chunk : chunks) {
        const std::vector<std::uint8_t> bytes = fixture_chunk_bytes(chunk);
        body.insert(body.end(), bytes.begin(), bytes.end());
    }
    std::vector<std::uint8_t> out;
    put_text(out, riff_tag);
    put_le(out, body.size(), 4);
    out.insert(out.end(), body.begin(), body.end());
    return out;
}

std::vector<std::uint8_t> fixture_simple_wav(const FixtureFmt& fmt, const FixtureChunk& data) {
    const FixtureChunk chunks[] = {fixture_fmt_chunk(fmt), data};
    return fixture_wav_bytes(chunks);
}

bool fixture_write_file(const std::string& path, std::span<const std::uint8_t> bytes) {
    return write_text_file(path, std::string(bytes.begin(), bytes.end()));
}

std::vector<std::uint8_t> fixture_read_file(const std::string& path) {
    const std::string content = read_text_file(path);
    return std::vector<std::uint8_t>(content.begin(), content.end());
}

std::uint32_t fixture_u16_at(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return bytes[offset] | (bytes[offset + 1] << 8);
}

std::uint32_t fixture_u32_at(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return fixture_u16_at(bytes, offset) | (fixture_u16_at(bytes, offset + 2) << 16);
}
