#include "support/signal_gen.h"

#include <cmath>
#include <numbers>

SignalRng signal_rng(std::uint64_t seed) {
    return SignalRng{seed};
}

std::uint64_t signal_next_u64(SignalRng& rng) {
    rng.state += 0x9E3779B97F4A7C15ull;
    std::uint64_t z = rng.state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

double signal_next_unit(SignalRng& rng) {
    return static_cast<double>(signal_next_u64(rng) >> 11) * 0x1.0p-53;
}

double signal_next_uniform(SignalRng& rng, double low, double high) {
    return low + (high - low) * signal_next_unit(rng);
}

std::int64_t signal_next_int(SignalRng& rng, std::int64_t low, std::int64_t high) {
    const std::uint64_t span = static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low);
    const std::uint64_t offset =
        span == UINT64_MAX ? signal_next_u64(rng) : signal_next_u64(rng) % (span + 1);
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(low) + offset);
}

std::vector<double> signal_uniform(std::uint64_t seed, std::size_t count, double low, double high) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> out(count);
    for (double& value : out)
        value = signal_next_uniform(rng, low, high);
    return out;
}

std::vector<double> signal_sine(double frequency_hz, double amplitude, double sample_rate,
                                std::size_t frames, double phase) {
    std::vector<double> out(frames);
    const double step = 2.0 * std::numbers::pi * frequency_hz / sample_rate;
    for (std::size_t n = 0; n < frames; ++n) {
        out[n] = amplitude * std::sin(step * static_cast<double>(n) + phase);
    }
    return out;
}

std::vector<double> signal_interleave(std::span<const std::vector<double>> channels) {
    if (channels.empty()) return {};
    const std::size_t frames = channels[0].size();
    std::vector<double> out(frames * channels.size());
    for (std::size_t f = 0; f < frames; ++f) {
        for (std::size_t k = 0; k < channels.size(); ++k) {
            out[f * channels.size() + k] = channels[k][f];
        }
    }
    return out;
}
