// Shared helpers of the spectral scan and snapshot tests: settings with the usual default band, an
// independent frame-by-frame computation of what one channel record must hold for a given list of
// frame starts, and a switch that makes non-throwing array allocations fail.
#pragma once

#include "audio/wav_file.h"
#include "dsp/spectral_result.h"

#include <cstddef>
#include <cstdint>
#include <span>

// Frame length n, multitone mode, one default band: floor -100 dB, low-level threshold -70 dB,
// peak threshold -60 dB, tolerances 5 / 10 / 1 dB.
SpectralSettings spectral_test_settings(std::size_t n);

// What a channel record must hold after comparing the frames at `starts`, found by running the
// frame comparison on each start in turn and pooling by hand; percentiles by a full sort.
struct ExpectedRecord {
    std::uint64_t frames_gated = 0;
    std::uint64_t bins_compared = 0;
    std::uint64_t bins_excluded = 0;
    std::uint64_t bins_failed = 0;
    double p50 = 0.0;
    double p95 = 0.0;
    double p99 = 0.0;
    double worst_ratio = 0.0;
    double worst_diff_db = 0.0;
    double worst_freq_hz = 0.0;
    bool worst_is_peak = false;
    std::uint64_t worst_frame_start = 0; // earliest frame among equal worst ratios
    bool passed = true;
};
ExpectedRecord spectral_expected_record(const WavFile& ref, const WavFile& dut,
                                        std::int64_t dut_offset, const SpectralSettings& settings,
                                        std::span<const std::size_t> starts, unsigned channel = 0);

// Checks every field of `expected` (and the frame count) against `actual` with gtest
// expectations.
void expect_record(const SpectralChannelResult& actual, const ExpectedRecord& expected,
                   std::size_t frames);

// While on, every `new (std::nothrow) T[count]` of the test program returns null.
void spectral_fail_nothrow_arrays(bool on);
