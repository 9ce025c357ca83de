// Deterministic test signals: a small seeded pseudo-random generator and sine, noise and
// interleaving helpers. The same seed gives the same numbers on every machine and build.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// splitmix64 state; seed it with signal_rng().
struct SignalRng {
    std::uint64_t state = 0;
};

SignalRng signal_rng(std::uint64_t seed);

// The next 64 random bits.
std::uint64_t signal_next_u64(SignalRng& rng);

// A uniform double in [0, 1) with 53 random bits.
double signal_next_unit(SignalRng& rng);

// A uniform double in [low, high).
double signal_next_uniform(SignalRng& rng, double low, double high);

// A uniform integer in [low, high] (both inclusive, low <= high).
std::int64_t signal_next_int(SignalRng& rng, std::int64_t low, std::int64_t high);

// `count` uniform doubles in [low, high) from a generator seeded with `seed`.
std::vector<double> signal_uniform(std::uint64_t seed, std::size_t count, double low, double high);

// amplitude * sin(2 pi frequency n / sample_rate + phase) for n = 0 .. frames - 1.
std::vector<double> signal_sine(double frequency_hz, double amplitude, double sample_rate,
                                std::size_t frames, double phase = 0.0);

// Interleaves equally long channels frame by frame: frame f, channel k lands at f * count + k.
std::vector<double> signal_interleave(std::span<const std::vector<double>> channels);
