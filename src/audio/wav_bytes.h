// Little-endian field access on byte buffers, shared by the WAV reader and writer so that neither
// depends on the host byte order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Format tags of the fmt chunk (also the first word of an extensible file's SubFormat GUID).
inline constexpr std::uint16_t kTagPcm = 1;
inline constexpr std::uint16_t kTagFloat = 3;
inline constexpr std::uint16_t kTagExtensible = 0xFFFE;

inline std::uint16_t wav_load_u16(const std::uint8_t* p) {
    return static_cast<std::uint16_t>(p[0] | (p[1] << 8));
}

inline std::uint32_t wav_load_u32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
           (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}

inline std::uint64_t wav_load_u64(const std::uint8_t* p) {
    return static_cast<std::uint64_t>(wav_load_u32(p)) |
           (static_cast<std::uint64_t>(wav_load_u32(p + 4)) << 32);
}

// Stores the low `count` bytes of value at p, least significant first.
inline void wav_store_le(std::uint8_t* p, std::uint64_t value, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        p[i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

// True when the four bytes at p spell the chunk id.
inline bool wav_id_is(const std::uint8_t* p, std::string_view id) {
    return id.size() == 4 && std::memcmp(p, id.data(), 4) == 0;
}
