// Shared helpers of the spectral comparison tests: in-memory WAV records built from per-channel
// sample vectors, sums of sine tones, silence, and a harness that owns every array one frame
// comparison needs.
#pragma once

#include "audio/wav_file.h"
#include "dsp/spectral_frame.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

inline constexpr double kSpectralRate = 48000.0;

struct SpectralTone {
    double freq_hz = 0.0;
    double amplitude = 0.0; // peak amplitude, full scale 1.0
};

// The frequency of bin k of an n-point frame: k * sample_rate / n.
double spectral_bin_hz(std::size_t bin, std::size_t n, double sample_rate = kSpectralRate);

// A 64-bit float record holding the given equally long channels (one: mono, two: stereo).
WavFile spectral_wav(const std::vector<std::vector<double>>& channels,
                     double sample_rate = kSpectralRate);

// The sum over the tones of amplitude * sin(2 pi f i / sample_rate), i = 0 .. frames - 1.
std::vector<double> spectral_tones(std::span<const SpectralTone> tones, std::size_t frames,
                                   double sample_rate = kSpectralRate);

// `frames` zeros.
std::vector<double> spectral_silence(std::size_t frames);

// Every sample multiplied by `gain`.
std::vector<double> spectral_scaled(const std::vector<double>& samples, double gain);

// Settings of one channel's frame comparison plus the arrays it works in. Runs carry ratio_count
// over, so ratios pool from frame to frame as in a scan.
struct SpectralFrameHarness {
    std::size_t n = 4096;
    SpectralMode mode = SpectralMode::multitone;
    std::optional<double> relative_floor_db;
    SweepSettings sweep;
    std::vector<SpectralBand> bands;
    // Filled by spectral_harness_run:
    std::vector<std::uint8_t> band_of_bin;
    std::vector<double> ref_db;
    std::vector<double> dut_db;
    std::vector<std::uint8_t> peak;
    std::vector<double> ratios; // the first ratio_count entries are the pooled ratios
    std::size_t ratio_count = 0;
};

// Maps the bins to the bands at the reference's sample rate, sizes the arrays and compares the
// frame at reference frame `start` (DUT frame start + dut_offset).
SpectralFrameResult spectral_harness_run(SpectralFrameHarness& h, const WavFile& ref,
                                         const WavFile& dut, std::size_t start = 0,
                                         std::int64_t dut_offset = 0, unsigned channel = 0);

// The pooled ratios so far.
std::span<const double> spectral_harness_ratios(const SpectralFrameHarness& h);

// The bins flagged a peak by the last run, in bin order.
std::vector<std::size_t> spectral_harness_peaks(const SpectralFrameHarness& h);
