// One frame of the spectral comparison: the reference and DUT dB spectra of the same aligned frame
// compared bin by bin, each bin's level difference divided by the tolerance of its band and tier.
#pragma once

#include "audio/audio.h"
#include "dsp/spectral_bands.h"
#include "dsp/sweep_search.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

// A bin fails when its ratio is above this (a difference of exactly the tolerance passes).
inline constexpr double kSpectralFailRatio = 1.00001;

// What stays the same for every frame of one channel.
struct SpectralFrameSetup {
    std::size_t n = 0;         // frame length, a power of two
    std::size_t bin_count = 0; // n / 2
    SpectralMode mode = SpectralMode::multitone;
    std::optional<double> relative_floor_db; // amplitude sweep only: gate relative to the peak
    std::span<const SpectralBand> bands;
    std::span<const std::uint8_t> band_of_bin; // bin_count entries (spectral_band_map)
    SweepSettings sweep;
};

// Working arrays owned by the caller, allocated once per channel: bin_count entries each for the
// two spectra and the peak flags; the frame appends one ratio per compared bin at
// ratios[ratio_count] and advances ratio_count (room for bin_count more is needed).
struct SpectralFrameBuffers {
    double* ref_db = nullptr;
    double* dut_db = nullptr;
    std::uint8_t* peak = nullptr;
    double* ratios = nullptr;
    std::size_t ratio_count = 0;
};

struct SpectralFrameResult {
    bool gated = false; // the reference peak did not clear the gate; nothing was compared
    std::size_t bins_compared = 0;
    std::size_t bins_excluded = 0;
    std::size_t bins_failed = 0;
    long worst_bin = -1;        // highest ratio, first bin on ties; -1 when none
    double worst_ratio = -1.0;  // -1.0 when none
    double worst_diff_db = 0.0; // DUT minus reference at the worst bin, both raised to the floor
    bool worst_is_peak = false;
    bool failing_peak = false; // some failing bin was flagged a peak
    // Also kept for the report's chart:
    double worst_tolerance_db = 0.0; // tolerance that applied at the worst bin
    std::size_t ref_peak_bin = 0;    // the reference peak that set the gate
    std::size_t peak_band = 0;       // index of the band holding that peak
    double gate_db = 0.0;            // the gate level the peak had to clear
    double peak_band_floor_db = 0.0; // floor used for the bins of the peak's band
};

// Compares reference frames [start, start + n) of `channel` with their DUT partners in the pair;
// the caller guarantees both lie inside their files. Modes: multitone searches the
// reference peak over every bin, the sweeps inside sweep_search_range around the expected tone
// (every bin when the sweep's windowing is off). Peak flags are left in buffers.peak.
SpectralFrameResult spectral_compare_frame(const AlignedPair& pair, unsigned channel,
                                           std::size_t start, const SpectralFrameSetup& setup,
                                           SpectralFrameBuffers& buffers);
