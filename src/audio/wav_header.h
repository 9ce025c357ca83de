// The header bytes the WAV writer puts in front of the samples: plain (44 bytes) and extensible
// (68 bytes) integer PCM, plain (58 bytes) and extensible (80 bytes) IEEE float with a fact chunk.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// What a header describes. Sizes go into 32-bit fields and keep their low 32 bits.
struct WavHeaderFields {
    std::uint32_t sample_rate = 0;
    std::uint32_t channels = 0;
    std::uint32_t format = 0; // one of the five format codes
    bool extensible = false;
    std::uint32_t channel_mask = 0;
    std::uint64_t frames = 0;
    std::uint64_t extra_bytes = 0; // chunk bytes written after the samples
};

struct WavHeader {
    std::array<std::uint8_t, 80> bytes{};
    std::size_t size = 0;
};

// Header for an integer format; `extensible` selects the 68-byte layout.
void wav_build_int_header(const WavHeaderFields& fields, WavHeader& header);

// Header for a float format, including the fact chunk with the frame count.
void wav_build_float_header(const WavHeaderFields& fields, WavHeader& header);
