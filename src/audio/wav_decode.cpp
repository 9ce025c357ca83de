#include "audio/wav_decode.h"

#include "audio/wav_bytes.h"
#include "audio/wav_file.h"

#include <bit>
#include <cmath>

namespace {

std::int32_t sign_extend_24(std::uint32_t value) {
    const auto code = static_cast<std::int32_t>(value & 0xFFFFFFu);
    return (value & 0x800000u) != 0 ? code - 0x1000000 : code;
}

double decode_one(const std::uint8_t* p, std::uint32_t format) {
    switch (format) {
    case kWavFormatInt16:
        return static_cast<std::int16_t>(wav_load_u16(p)) / kWavInt16FullScale;
    case kWavFormatInt24:
        return sign_extend_24(p[0] | (p[1] << 8) | (static_cast<std::uint32_t>(p[2]) << 16)) /
               kWavInt24FullScale;
    case kWavFormatInt32:
        return static_cast<std::int32_t>(wav_load_u32(p)) / kWavInt32FullScale;
    case kWavFormatFloat32:
        return static_cast<double>(std::bit_cast<float>(wav_load_u32(p)));
    default:
        return std::bit_cast<double>(wav_load_u64(p));
    }
}

// One loop per format so that the switch is resolved once, not per sample.
template <std::uint32_t Format>
std::optional<std::size_t> decode_all(const std::uint8_t* raw, std::span<double> out) {
    constexpr std::size_t stride = wav_format_bytes(Format);
    std::optional<std::size_t> first_bad;
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] = decode_one(raw + i * stride, Format);
        if constexpr (wav_format_is_float(Format)) {
            if (!first_bad && !std::isfinite(out[i])) first_bad = i;
        }
    }
    return first_bad;
}

} // namespace

std::optional<std::size_t> wav_decode_samples(std::span<const std::uint8_t> raw,
                                              std::uint32_t format, std::span<double> out) {
    switch (format) {
    case kWavFormatInt16:
        return decode_all<kWavFormatInt16>(raw.data(), out);
    case kWavFormatInt24:
        return decode_all<kWavFormatInt24>(raw.data(), out);
    case kWavFormatInt32:
        return decode_all<kWavFormatInt32>(raw.data(), out);
    case kWavFormatFloat32:
        return decode_all<kWavFormatFloat32>(raw.data(), out);
    default:
        return decode_all<kWavFormatFloat64>(raw.data(), out);
    }
}
