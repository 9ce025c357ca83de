// Test signals for the spectral end-to-end tests: tone sums over a faint noise bed, and
// logarithmic frequency and amplitude sweeps.
#pragma once

#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

struct Tone {
    double freq_hz;
    double amplitude;
};

// The tones summed, plus seeded noise of peak 0.0005 (the same noise for the same seed), so the
// files align at one lag only.
std::vector<double> tone_sum(const std::vector<Tone>& tones, double rate, std::size_t frames);

// A sine gliding logarithmically from f0 to f1 over `frames`; `gain_db(f)` scales each sample by
// the instantaneous frequency's gain in dB.
template <typename Gain>
std::vector<double> log_sweep(double f0, double f1, double amplitude, double rate,
                              std::size_t frames, Gain gain_db) {
    std::vector<double> out(frames);
    const double seconds = static_cast<double>(frames) / rate;
    const double k = std::log(f1 / f0) / seconds;
    for (std::size_t i = 0; i < frames; ++i) {
        const double t = static_cast<double>(i) / rate;
        const double phase = 2.0 * std::numbers::pi * f0 * (std::exp(k * t) - 1.0) / k;
        const double freq = f0 * std::exp(k * t);
        out[i] = amplitude * std::pow(10.0, gain_db(freq) / 20.0) * std::sin(phase);
    }
    return out;
}

// A tone at freq_hz whose level rises linearly in dB from db0 to db1 over `frames`; `gain_db(t)`
// adds a level change in dB at time t seconds.
template <typename Gain>
std::vector<double> level_ramp(double freq_hz, double db0, double db1, double rate,
                               std::size_t frames, Gain gain_db) {
    std::vector<double> out(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const double t = static_cast<double>(i) / rate;
        const double db = db0 + (db1 - db0) * static_cast<double>(i) / static_cast<double>(frames);
        out[i] = std::pow(10.0, (db + gain_db(t)) / 20.0) *
                 std::sin(2.0 * std::numbers::pi * freq_hz * t);
    }
    return out;
}
