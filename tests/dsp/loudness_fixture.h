// Shared pieces of the loudness tests: tone programmes built from level/duration segments at
// 48 kHz, faded sines for the true-peak cases, identical-channel stereo records and a whole-file
// measurement, and hand-made block lists.
#pragma once

#include "audio/wav_file.h"
#include "dsp/loudness.h"
#include "dsp/loudness_blocks.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

inline constexpr double kLoudnessRate = 48000.0;

// `seconds` of the 1 kHz tone at a peak level of `level_dbfs` (amplitude 10^(dB/20)), or of
// digital silence when the level is unset.
struct ToneSegment {
    std::optional<double> level_dbfs;
    double seconds = 0.0;
};

// The segments one after another at 48 kHz, each round(seconds * 48000) samples long; the tone's
// phase runs on continuously from the first sample of the programme.
std::vector<double> tone_programme(std::span<const ToneSegment> segments);

// amplitude * sin(2 pi n / period + phase) for `seconds` at 48 kHz, faded in and out over
// `fade_seconds` with a raised cosine.
std::vector<double> faded_sine(double period_samples, double amplitude, double phase_degrees,
                               double seconds, double fade_seconds);

// A 48 kHz 64-bit float stereo record with `mono` in both channels.
WavFile identical_stereo(const std::vector<double>& mono);

// loudness_measure over every frame of the file, both channels at most, at 48 kHz.
LoudnessMeasure measure_whole(const WavFile& file);

// A block list holding the given block loudness values and per-channel mean squares (block i,
// channel k at i * channels + k).
LoudnessBlockList block_list(const std::vector<double>& loudness,
                             const std::vector<double>& mean_squares, std::size_t channels);

// Frames in `seconds` at 48 kHz, rounded.
std::size_t loudness_frames(double seconds);
