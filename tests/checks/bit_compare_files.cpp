#include "bit_compare_files.h"

#include "support/signal_gen.h"

namespace bit_compare_test {

namespace {

WavFile empty_file(std::uint32_t format, std::uint32_t channels, std::size_t count) {
    WavFile file;
    file.sample_rate = 48000;
    file.channels = channels;
    file.format = format;
    file.frames = count / channels;
    return file;
}

} // namespace

WavFile int_file(std::uint32_t format, std::uint32_t channels,
                 const std::vector<std::int64_t>& codes) {
    WavFile file = empty_file(format, channels, codes.size());
    const double full_scale = wav_int_full_scale(format);
    file.samples.reserve(codes.size());
    for (const std::int64_t code : codes)
        file.samples.push_back(static_cast<double>(code) / full_scale);
    return file;
}

WavFile float_file(std::uint32_t format, std::uint32_t channels,
                   const std::vector<double>& values) {
    WavFile file = empty_file(format, channels, values.size());
    file.samples = values;
    return file;
}

std::vector<std::int64_t> int16_codes(std::size_t frames, std::uint32_t channels) {
    SignalRng rng = signal_rng(frames * 31 + channels);
    std::vector<std::int64_t> codes(frames * channels);
    for (std::int64_t& code : codes)
        code = signal_next_int(rng, -32768, 32767);
    return codes;
}

} // namespace bit_compare_test
