// Conversion of a raw WAV data payload into double samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

// Converts raw.size() / bytes-per-sample samples of the given format code into `out` (which holds
// exactly that many values): integers divided by their largest positive code, floats widened
// unchanged. Returns the index of the first NaN or infinite value of a float format, if any; the
// conversion always runs to the end.
std::optional<std::size_t> wav_decode_samples(std::span<const std::uint8_t> raw,
                                              std::uint32_t format, std::span<double> out);
