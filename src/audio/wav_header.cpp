#include "audio/wav_header.h"

#include "audio/wav_bytes.h"
#include "audio/wav_file.h"

#include <string_view>

namespace {

constexpr std::uint32_t kPlainIntFmtSize = 16;
constexpr std::uint32_t kPlainFloatFmtSize = 18;
constexpr std::uint32_t kExtensibleFmtSize = 40;
constexpr std::uint16_t kExtensionSize = 22;

// The SubFormat GUID after its first 16-bit word (which is the plain format tag).
constexpr std::array<std::uint8_t, 14> kSubFormatTail = {0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                                         0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

void put(WavHeader& header, std::uint64_t value, std::size_t count) {
    wav_store_le(header.bytes.data() + header.size, value, count);
    header.size += count;
}

void put_id(WavHeader& header, std::string_view id) {
    for (const char c : id)
        put(header, static_cast<std::uint8_t>(c), 1);
}

void put_chunk_start(WavHeader& header, std::string_view id, std::uint64_t size) {
    put_id(header, id);
    put(header, size, 4);
}

// "RIFF", its size, "WAVE", then the fmt chunk up to and including bits per sample.
void put_riff_and_fmt(WavHeader& header, const WavHeaderFields& fields, std::uint64_t riff_size,
                      std::uint32_t fmt_size, std::uint16_t tag) {
    const std::uint32_t sample_bytes = wav_format_bytes(fields.format);
    put_chunk_start(header, "RIFF", riff_size);
    put_id(header, "WAVE");
    put_chunk_start(header, "fmt ", fmt_size);
    put(header, tag, 2);
    put(header, fields.channels, 2);
    put(header, fields.sample_rate, 4);
    put(header, std::uint64_t{fields.sample_rate} * fields.channels * sample_bytes, 4);
    put(header, std::uint64_t{fields.channels} * sample_bytes, 2);
    put(header, wav_format_bits(fields.format), 2);
}

// cbSize 22, valid bits, channel mask and the SubFormat GUID beginning with `subformat`.
void put_extension(WavHeader& header, const WavHeaderFields& fields, std::uint16_t subformat) {
    put(header, kExtensionSize, 2);
    put(header, wav_format_bits(fields.format), 2);
    put(header, fields.channel_mask, 4);
    put(header, subformat, 2);
    for (const std::uint8_t byte : kSubFormatTail)
        put(header, byte, 1);
}

std::uint64_t data_bytes(const WavHeaderFields& fields) {
    return fields.frames * fields.channels * wav_format_bytes(fields.format);
}

} // namespace

void wav_build_int_header(const WavHeaderFields& fields, WavHeader& header) {
    header.size = 0;
    const std::uint64_t data = data_bytes(fields);
    if (fields.extensible) {
        put_riff_and_fmt(header, fields, data + 60, kExtensibleFmtSize, kTagExtensible);
        put_extension(header, fields, kTagPcm);
    } else {
        put_riff_and_fmt(header, fields, data + 36 + fields.extra_bytes, kPlainIntFmtSize, kTagPcm);
    }
    put_chunk_start(header, "data", data);
}

void wav_build_float_header(const WavHeaderFields& fields, WavHeader& header) {
    header.size = 0;
    const std::uint64_t data = data_bytes(fields);
    const std::uint32_t fmt_size = fields.extensible ? kExtensibleFmtSize : kPlainFloatFmtSize;
    const std::uint64_t riff_size = fmt_size + data + 32 + fields.extra_bytes;
    if (fields.extensible) {
        put_riff_and_fmt(header, fields, riff_size, fmt_size, kTagExtensible);
        put_extension(header, fields, kTagFloat);
    } else {
        put_riff_and_fmt(header, fields, riff_size, fmt_size, kTagFloat);
        put(header, 0, 2);
    }
    put_chunk_start(header, "fact", 4);
    put(header, fields.frames, 4);
    put_chunk_start(header, "data", data);
}
