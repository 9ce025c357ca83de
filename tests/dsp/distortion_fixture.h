// Shared helpers of the distortion tests: in-memory WAV records, tones and an independent
// per-frame measurement at a chosen start, for comparing the check's figures against.
#pragma once

#include "audio/wav_file.h"
#include "dsp/distortion_frame.h"

#include <cstddef>
#include <cstdint>
#include <vector>

inline constexpr double kDistortionRate = 48000.0;

// A 64-bit float record at 48 kHz holding the given equally long channels.
WavFile distortion_wav(const std::vector<std::vector<double>>& channels);

// amplitude * sin(2 pi f n / 48000) for `frames` frames.
std::vector<double> distortion_tone(double frequency_hz, double amplitude, std::size_t frames);

// Each sample of `base` plus the matching sample of `extra`, scaled by `gain`.
std::vector<double> distortion_mix(const std::vector<double>& base,
                                   const std::vector<double>& extra, double gain);

// The THD+N of the frame of n samples at reference frame `start` (DUT frame start + offset),
// measured directly with the spectrum frames and the frame arithmetic, plus its fundamental bin.
struct FrameMeasurement {
    ThdnFigure figure;
    std::size_t k0 = 0;
};
FrameMeasurement distortion_measure_frame(const WavFile& ref, const WavFile& dut, unsigned channel,
                                          std::size_t start, std::int64_t offset, std::size_t n,
                                          std::size_t notch_bins);
