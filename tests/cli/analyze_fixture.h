// Generated WAV pairs for the end-to-end analyze tests.
#pragma once

#include "support/temp_dir.h"

#include <cstdint>
#include <string>
#include <vector>

// Seeded noise, `frames` long, whose magnitude stays between 0.05 and 0.5 (never near silence).
std::vector<double> test_noise(std::uint64_t seed, std::size_t frames);
// `signal` delayed by `delay` frames (zeros in front), cut to the same length.
std::vector<double> delayed(const std::vector<double>& signal, std::size_t delay);
// Interleaves channels of equal length.
std::vector<double> interleaved(const std::vector<std::vector<double>>& channels);
// Writes a 16-bit (or other format) WAV with the project's writer; fails the test on error.
void write_wav(const std::string& path, std::uint32_t rate, std::uint32_t channels,
               const std::vector<double>& samples, std::uint32_t format = 16);

// Whether `text` holds `piece`.
bool has(const std::string& text, const std::string& piece);
// The number written for `key` in a results JSON, or NaN when the key is missing.
double json_number(const std::string& json, const std::string& key);
