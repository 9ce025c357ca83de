// In-memory files, signals and the two profiles' settings for the Level Fidelity tests.
#pragma once

#include "audio/wav_file.h"
#include "checks/level_fidelity.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace level_fidelity_test {

// The three values the driver passes: noise floor, p99 tolerance and minimum sustained run.
struct LevelSettings {
    double floor_db = 0.0;
    double tolerance_db = 0.0;
    double min_run_ms = 0.0;
};

// The defaults of the "general" and the "impulse" profile.
inline constexpr LevelSettings kGeneral{-80.0, 1.02, 20.0};
inline constexpr LevelSettings kImpulse{-30.0, 1.94, 20.0};

// A 64-bit float file at `rate` holding one channel.
WavFile mono_file(std::vector<double> samples, std::uint32_t rate = 48000);

// A 64-bit float stereo file at 48 kHz from two equally long channels.
WavFile stereo_file(const std::vector<double>& left, const std::vector<double>& right);

// `frames` seeded values of random sign whose magnitudes lie in [0.05, 0.9), above both
// profiles' floors, so every pair of them is included.
std::vector<double> level_signal(std::uint64_t seed, std::size_t frames);

// Every value times 10^(gain_db / 20).
std::vector<double> with_gain(std::vector<double> values, double gain_db);

// Frames first .. first + count - 1 times 10^(gain_db / 20).
std::vector<double> with_burst(std::vector<double> values, std::size_t first, std::size_t count,
                               double gain_db);

LevelFidelityResult run_level(const WavFile& ref, const WavFile& dut, LevelSettings settings,
                              std::int64_t offset = 0);

} // namespace level_fidelity_test
