// Conversion of double samples into the bytes of a WAV data payload.
#pragma once

#include <cstdint>
#include <span>

// The integer code the writer stores for x in an integer format (16, 24 or 32): x clamped to
// [-1, 1], scaled by the largest positive code, rounded half away from zero, clamped to the width.
std::int64_t wav_int_code(double x, std::uint32_t format);

// Encodes every sample into `out`, which holds samples.size() times the sample width bytes:
// integer codes least significant byte first, 32-bit floats narrowed, 64-bit floats unchanged.
void wav_encode_samples(std::span<const double> samples, std::uint32_t format,
                        std::span<std::uint8_t> out);
