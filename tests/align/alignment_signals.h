// Test material for the alignment tests: seeded noise, a music-like multitone, sparse transients,
// delayed windows cut from one longer source, in-memory WavFile records and a direct
// (transform-free) correlation to check the fast one against.
#pragma once

#include "align/alignment.h"
#include "audio/wav_file.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

inline constexpr std::uint32_t kTestRate = 48000;

enum class Material { noise, music, transients };

std::string material_name(Material material);

// `frames` samples of the given material, reproducible from `seed`.
std::vector<double> make_material(Material material, std::uint64_t seed, std::size_t frames);

// A reference window and a DUT window cut from one longer source, the DUT late by `delay` frames:
// dut[n + delay] == ref[n]. Both are `frames` long; |delay| must not exceed `kMaxTestDelay`.
struct DelayedPair {
    std::vector<double> ref;
    std::vector<double> dut;
};
inline constexpr std::int64_t kMaxTestDelay = 6000;
DelayedPair delayed_pair(Material material, std::uint64_t seed, std::size_t frames,
                         std::int64_t delay);

// `x` delayed by `delay` frames at the same length: leading zeros for a positive delay, trailing
// zeros for a negative one.
std::vector<double> delayed_with_zeros(std::span<const double> x, std::int64_t delay);

// Every sample negated.
std::vector<double> negated(std::span<const double> x);

// A decoded-file record at kTestRate holding the given equally long channels.
WavFile make_wav(const std::vector<std::vector<double>>& channels);

// The peak found by evaluating C(L) = sum a[n] * b[n - L] directly for every lag of the window,
// with the same tie rule and normalisation as the fast search.
CorrelationPeak direct_correlate(std::span<const double> a, std::span<const double> b,
                                 std::size_t max_lag, bool invert);
