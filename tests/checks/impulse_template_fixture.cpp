#include "impulse_template_fixture.h"

#include "support/signal_gen.h"

#include <array>
#include <utility>

namespace {

WavFile impulse_file(std::uint32_t channels, std::size_t frames, std::vector<double> samples) {
    WavFile file;
    file.sample_rate = kImpulseRate;
    file.channels = channels;
    file.format = kWavFormatFloat64;
    file.frames = frames;
    file.samples = std::move(samples);
    return file;
}

} // namespace

WavFile impulse_mono(const std::vector<double>& samples) {
    return impulse_file(1, samples.size(), samples);
}

WavFile impulse_stereo(const std::vector<double>& left, const std::vector<double>& right) {
    const std::array<std::vector<double>, 2> channels{left, right};
    return impulse_file(2, left.size(), signal_interleave(channels));
}

std::vector<double> impulse_clicks(std::size_t frames, const std::vector<std::size_t>& positions,
                                   double value) {
    std::vector<double> samples(frames, 0.0);
    for (const std::size_t position : positions)
        samples[position] = value;
    return samples;
}

ImpulseTemplateResult impulse_run(const WavFile& ref, const WavFile& dut, std::int64_t offset,
                                  std::size_t frame_size) {
    return impulse_template_check(aligned_pair(ref, dut, offset), frame_size, -10.0, 1.25, -30.0);
}
