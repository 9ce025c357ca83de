#include "audio/wav_encode.h"

#include "audio/numeric.h"
#include "audio/wav_bytes.h"
#include "audio/wav_file.h"

#include <algorithm>
#include <bit>
#include <cmath>

std::int64_t wav_int_code(double x, std::uint32_t format) {
    // A NaN is neither above 1 nor below -1; it is stored as silence rather than converted.
    if (std::isnan(x)) return 0;
    const double clamped = std::clamp(x, -1.0, 1.0);
    const double scale = wav_int_full_scale(format);
    const auto code = static_cast<std::int64_t>(round_half_away_from_zero(clamped * scale));
    const std::int64_t top = std::int64_t{1} << (wav_format_bits(format) - 1);
    return std::clamp(code, -top, top - 1);
}

void wav_encode_samples(std::span<const double> samples, std::uint32_t format,
                        std::span<std::uint8_t> out) {
    const std::size_t width = wav_format_bytes(format);
    std::uint8_t* p = out.data();
    for (const double x : samples) {
        if (format == kWavFormatFloat32) {
            wav_store_le(p, std::bit_cast<std::uint32_t>(static_cast<float>(x)), width);
        } else if (format == kWavFormatFloat64) {
            wav_store_le(p, std::bit_cast<std::uint64_t>(x), width);
        } else {
            wav_store_le(p, static_cast<std::uint64_t>(wav_int_code(x, format)), width);
        }
        p += width;
    }
}
