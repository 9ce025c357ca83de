#include "audio/wav_chunk_walk.h"

#include "audio/wav_bytes.h"
#include "audio/wav_stdio.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kFmtMinSize = 16;
constexpr std::uint32_t kFmtReadLimit = 40;
constexpr std::uint32_t kExtensibleMinSize = 26;

bool read_riff_header(std::FILE* file) {
    std::uint8_t header[12];
    return wav_read_exact(file, header, sizeof header) && wav_id_is(header, "RIFF") &&
           wav_id_is(header + 8, "WAVE");
}

// Interprets the first min(size, 40) bytes of a "fmt " payload.
bool parse_fmt(const std::uint8_t* payload, std::uint32_t size, WavFmtInfo& fmt) {
    const std::uint16_t tag = wav_load_u16(payload);
    WavFmtInfo parsed;
    parsed.channels = wav_load_u16(payload + 2);
    parsed.sample_rate = wav_load_u32(payload + 4);
    parsed.bits = wav_load_u16(payload + 14);
    if (tag == kTagExtensible && size >= kExtensibleMinSize) {
        const std::uint16_t subformat = wav_load_u16(payload + 24);
        if (subformat != kTagPcm && subformat != kTagFloat) return false;
        parsed.channel_mask = wav_load_u32(payload + 20);
        parsed.is_float = subformat == kTagFloat;
        parsed.extensible = true;
    } else {
        if (tag != kTagPcm && tag != kTagFloat) return false;
        parsed.is_float = tag == kTagFloat;
    }
    // A later "fmt " chunk replaces every value of an earlier one, the extensible flag and channel
    // mask included.
    fmt = parsed;
    return true;
}

bool read_fmt(std::FILE* file, std::uint32_t size, WavLayout& layout) {
    if (size < kFmtMinSize) return false;
    std::uint8_t payload[kFmtReadLimit] = {};
    if (!wav_read_exact(file, payload, std::min(size, kFmtReadLimit))) return false;
    if (!parse_fmt(payload, size, layout.fmt)) return false;
    layout.fmt_seen = true;
    return true;
}

// Appends the chunk header and its padded payload to the extra-chunk buffer.
bool copy_extra_chunk(std::FILE* file, const std::uint8_t* header, std::uint32_t size,
                      off_t position, std::uint64_t file_length, WavLayout& layout) {
    // The padded length is computed in 32 bits, as the size field itself is.
    const std::uint32_t padded = size + (size & 1u);
    if (static_cast<std::uint64_t>(position) + padded > file_length) return false;
    const std::size_t start = layout.extra_chunks.size();
    if (!wav_try_resize(layout.extra_chunks, start + 8 + padded)) return false;
    std::copy(header, header + 8, layout.extra_chunks.begin() + static_cast<std::ptrdiff_t>(start));
    return wav_read_exact(file, layout.extra_chunks.data() + start + 8, padded);
}

// Moves past a "fmt " or "data" payload; false when the seek fails, which ends the walk.
bool skip_payload(std::FILE* file, off_t position, std::uint32_t size) {
    const off_t next = position + static_cast<off_t>(size) + static_cast<off_t>(size & 1u);
    return fseeko(file, next, SEEK_SET) == 0;
}

enum class ChunkStep { next, stop, fail };

ChunkStep walk_one_chunk(std::FILE* file, const std::uint8_t* header, std::uint64_t file_length,
                         WavLayout& layout) {
    const off_t position = ftello(file);
    if (position < 0) return ChunkStep::fail;
    const std::uint32_t size = wav_load_u32(header + 4);
    if (wav_id_is(header, "fmt ")) {
        if (!read_fmt(file, size, layout)) return ChunkStep::fail;
    } else if (wav_id_is(header, "data")) {
        layout.data_position = position;
        layout.data_size = size;
    } else {
        const bool copied = copy_extra_chunk(file, header, size, position, file_length, layout);
        return copied ? ChunkStep::next : ChunkStep::fail;
    }
    return skip_payload(file, position, size) ? ChunkStep::next : ChunkStep::stop;
}

} // namespace

bool wav_walk_chunks(std::FILE* file, std::uint64_t file_length, WavLayout& layout) {
    if (!read_riff_header(file)) return false;
    std::uint8_t header[8];
    if (!wav_read_exact(file, header, sizeof header)) return false;
    do {
        const ChunkStep step = walk_one_chunk(file, header, file_length, layout);
        if (step == ChunkStep::fail) return false;
        if (step == ChunkStep::stop) break;
    } while (wav_read_exact(file, header, sizeof header));
    return true;
}
