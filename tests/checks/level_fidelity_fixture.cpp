#include "level_fidelity_fixture.h"

#include "support/signal_gen.h"

#include <cmath>
#include <utility>

namespace level_fidelity_test {

WavFile mono_file(std::vector<double> samples, std::uint32_t rate) {
    WavFile file;
    file.sample_rate = rate;
    file.channels = 1;
    file.format = kWavFormatFloat64;
    file.frames = samples.size();
    file.samples = std::move(samples);
    return file;
}

WavFile stereo_file(const std::vector<double>& left, const std::vector<double>& right) {
    const std::vector<double> channels[] = {left, right};
    WavFile file;
    file.sample_rate = 48000;
    file.channels = 2;
    file.format = kWavFormatFloat64;
    file.frames = left.size();
    file.samples = signal_interleave(channels);
    return file;
}

std::vector<double> level_signal(std::uint64_t seed, std::size_t frames) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> values(frames);
    for (double& value : values) {
        const double magnitude = signal_next_uniform(rng, 0.05, 0.9);
        value = signal_next_unit(rng) < 0.5 ? -magnitude : magnitude;
    }
    return values;
}

std::vector<double> with_gain(std::vector<double> values, double gain_db) {
    const std::size_t count = values.size();
    return with_burst(std::move(values), 0, count, gain_db);
}

std::vector<double> with_burst(std::vector<double> values, std::size_t first, std::size_t count,
                               double gain_db) {
    const double gain = std::pow(10.0, gain_db / 20.0);
    for (std::size_t i = first; i < first + count; ++i)
        values[i] *= gain;
    return values;
}

LevelFidelityResult run_level(const WavFile& ref, const WavFile& dut, LevelSettings settings,
                              std::int64_t offset) {
    return level_fidelity(aligned_pair(ref, dut, offset), settings.floor_db, settings.tolerance_db,
                          settings.min_run_ms);
}

} // namespace level_fidelity_test
