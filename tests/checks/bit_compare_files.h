// In-memory WAV records for the bit comparison tests: integer files built from stored codes (so a
// one-code change is exact) and float files built from values.
#pragma once

#include "audio/wav_file.h"

#include <cstdint>
#include <vector>

namespace bit_compare_test {

// A file of the integer format (kWavFormatInt16/24/32) whose interleaved samples are `codes`
// divided by the format's full scale, as the reader stores them.
WavFile int_file(std::uint32_t format, std::uint32_t channels,
                 const std::vector<std::int64_t>& codes);

// A float file (kWavFormatFloat32/64) holding `values` interleaved as given.
WavFile float_file(std::uint32_t format, std::uint32_t channels, const std::vector<double>& values);

// `frames` frames of seeded random 16-bit codes (-32768 to 32767), `channels` interleaved.
std::vector<std::int64_t> int16_codes(std::size_t frames, std::uint32_t channels);

} // namespace bit_compare_test
