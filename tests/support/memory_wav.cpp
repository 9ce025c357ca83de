#include "support/memory_wav.h"

#include "support/signal_gen.h"

WavFile memory_wav(const std::vector<std::vector<double>>& channels, std::uint32_t sample_rate) {
    WavFile file;
    file.sample_rate = sample_rate;
    file.channels = static_cast<std::uint32_t>(channels.size());
    file.format = kWavFormatFloat64;
    file.frames = channels.empty() ? 0 : channels[0].size();
    file.samples = signal_interleave(channels);
    return file;
}
