// Shared helpers of the artifact detection tests: the default settings, in-memory files of a
// chosen sample format, exactly representable test signals, and the local deviation of one
// sample computed the plain way (two sorts), for checking the figures the check reports.
#pragma once

#include "audio/wav_file.h"
#include "dsp/artifact.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// The settings' defaults at 48 kHz: W 64, k 6, min_run 1, floor -80 dB, min_severity 4,
// min_global_severity 100, min_silence_clip_run 8.
struct ArtifactSettings {
    std::int64_t offset = 0;
    double k = 6.0;
    double floor_db = -80.0;
    std::size_t window = 64;
    std::size_t min_run = 1;
    double min_severity = 4.0;
    double min_global_severity = 100.0;
    std::size_t min_silence_clip_run = 8;
};

ArtifactResult run_artifact(const WavFile& ref, const WavFile& dut, const ArtifactSettings& s = {});

// A 48 kHz record of the given sample format code holding the equally long channels.
WavFile artifact_wav(const std::vector<std::vector<double>>& channels,
                     std::uint32_t format = kWavFormatFloat64);

// Program-like samples that are multiples of 1/1024 with magnitudes from 100/1024 to 600/1024
// and random signs: sums and differences with multiples of 1/8192 are exact, none is near 0 or
// near full scale.
std::vector<double> artifact_program(std::uint64_t seed, std::size_t frames);

// Each sample of `ref` plus a random multiple of 1/8192 between -40/8192 and 40/8192: a DUT
// whose differences are noise, so that a neighbourhood's spread is about 20/8192.
std::vector<double> artifact_noisy_copy(const std::vector<double>& ref, std::uint64_t seed);

// DUT minus reference, sample by sample.
std::vector<double> artifact_differences(const std::vector<double>& ref,
                                         const std::vector<double>& dut);

// |e[i] - m| / (1.4826 * max(MAD, 1e-12)) with the neighbourhood median m and MAD of e[i] for a
// window of `window` samples, each found by sorting.
double artifact_local_deviation(const std::vector<double>& e, std::size_t i,
                                std::size_t window = 64);

// |e[i] - m| / (1.4826 * max(MAD_g, 1e-12)) with the same neighbourhood median m and the
// whole-file MAD_g of e, found by sorting.
double artifact_global_deviation(const std::vector<double>& e, std::size_t i,
                                 std::size_t window = 64);
