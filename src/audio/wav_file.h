// The decoded WAV file record shared by the reader, the writer and every analysis, plus the five
// sample format codes and small questions about them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Sample format codes: integer PCM by bit depth, IEEE float as the bit depth plus 0x100.
inline constexpr std::uint32_t kWavFormatInt16 = 16;
inline constexpr std::uint32_t kWavFormatInt24 = 24;
inline constexpr std::uint32_t kWavFormatInt32 = 32;
inline constexpr std::uint32_t kWavFormatFloat32 = 0x120;
inline constexpr std::uint32_t kWavFormatFloat64 = 0x140;

// Largest positive code of each integer width, 2^(n-1) - 1: the reader divides by it and the
// writer multiplies by it, so codes survive a read and a write unchanged.
inline constexpr double kWavInt16FullScale = 32767.0;
inline constexpr double kWavInt24FullScale = 8388607.0;
inline constexpr double kWavInt32FullScale = 2147483647.0;

// One WAV file held whole in memory. Integer codes are stored divided by 2^(n-1) - 1, so positive
// full scale is exactly 1.0 and the most negative code lies slightly below -1.0.
struct WavFile {
    std::uint32_t sample_rate = 0;
    std::uint32_t channels = 0;
    std::uint32_t format = 0;
    bool extensible = false;
    std::uint32_t channel_mask = 0;
    std::vector<double> samples; // frames * channels values; frame f, channel k at f * channels + k
    std::size_t frames = 0;
    // Every chunk other than "fmt " and "data" in file order: its 8-byte header as read followed
    // by its payload padded to an even length with the file's own pad byte.
    std::vector<std::uint8_t> extra_chunks;
};

// True for the five codes above.
constexpr bool wav_format_is_known(std::uint32_t format) {
    return format == kWavFormatInt16 || format == kWavFormatInt24 || format == kWavFormatInt32 ||
           format == kWavFormatFloat32 || format == kWavFormatFloat64;
}

// True for the two IEEE float codes.
constexpr bool wav_format_is_float(std::uint32_t format) {
    return format == kWavFormatFloat32 || format == kWavFormatFloat64;
}

// Bits per sample of a known code (the code without its float bit).
constexpr std::uint32_t wav_format_bits(std::uint32_t format) {
    return format & 0xFFu;
}

// Full-scale divisor of an integer code (16, 24 or 32).
constexpr double wav_int_full_scale(std::uint32_t format) {
    if (format == kWavFormatInt16) return kWavInt16FullScale;
    return format == kWavFormatInt24 ? kWavInt24FullScale : kWavInt32FullScale;
}

// Bytes per sample of a known code.
constexpr std::uint32_t wav_format_bytes(std::uint32_t format) {
    return wav_format_bits(format) / 8;
}
