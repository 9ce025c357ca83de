// The settings and per-channel record shared by the single-frame, continuous and multi-snapshot
// forms of the spectral comparison.
#pragma once

#include "dsp/spectral_bands.h"
#include "dsp/sweep_search.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

struct SpectralSettings {
    std::size_t n = 0; // frame length, a power of two
    SpectralMode mode = SpectralMode::multitone;
    SweepSettings sweep;
    std::optional<double> relative_floor_db; // amplitude sweep only
    std::vector<SpectralBand> bands;         // configured bands, ascending; empty: `defaults`
    SpectralBand defaults;                   // the six default band values (upper unused)
    bool continuous = false;                 // continuous scan instead of one centred frame
    double overlap_fraction = 0.0;           // continuous scan: overlap of successive frames
    long edge_skip_samples = 0;              // continuous scan with edge handling
    bool edge_handling = false; // sweep, continuous, no snapshots: edge skip and tail frame
};

// The thresholds of the band that held the chart frame's reference peak; the noise floor is the
// floor that applied to that band (the relative gate level of an amplitude sweep when set).
struct SpectralTiers {
    double noise_floor_db = 0.0;
    double low_level_threshold_db = 0.0;
    double peak_threshold_db = 0.0;
};

// At most this many flagged peaks of the chart frame are kept for labelling.
inline constexpr std::size_t kMaxChartPeaks = 16;

struct SpectralChannelResult {
    bool passed = true;       // p99 <= 1.00001 and no failing peak (set when nothing compared)
    bool frame_gated = false; // every frame scanned was gated
    bool insufficient_samples = false; // the overlap is shorter than one frame
    std::uint64_t frames_scanned = 0;
    std::uint64_t edge_skipped_samples = 0;
    std::uint64_t frames_gated = 0;
    std::uint64_t bins_compared = 0; // summed over the frames
    std::uint64_t bins_excluded = 0;
    std::uint64_t bins_failed = 0;
    double p50_ratio = 0.0; // over every compared bin of every frame; 0 when none
    double p95_ratio = 0.0;
    double p99_ratio = 0.0;
    double worst_ratio = 0.0; // the worst bin over all frames (earliest frame on ties); 0 if none
    double worst_diff_db = 0.0;
    double worst_freq_hz = 0.0; // worst bin * sample_rate / n; 0 when there is no worst bin
    bool worst_is_peak = false;
    std::uint64_t worst_frame_start = 0; // reference frame where the worst bin's frame starts
    // What the report draws: the chart frame is the worst bin's frame, else the first frame.
    std::uint64_t chart_frame_start = 0;
    double worst_tolerance_db = 0.0;
    SpectralTiers chart_tiers;
    std::vector<std::size_t> chart_peak_bins; // flagged peaks, highest reference level, bin order
};
