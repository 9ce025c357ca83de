// The per-channel machinery shared by the scan and snapshot forms of the spectral comparison: the
// usable overlap, the working arrays and frame setup allocated once per channel, the folding of
// one compared frame into a channel record (counts, worst bin, chart fields), and the percentiles
// and verdict that close a record.
#pragma once

#include "audio/audio.h"
#include "dsp/spectral_frame.h"
#include "dsp/spectral_result.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

// The pair's overlap when it holds at least one frame of n samples, n >= 2, and the DUT has each of
// the first `channels` channels; nothing otherwise (too short to compare).
std::optional<Overlap> spectral_usable_overlap(const AlignedPair& pair, std::size_t n,
                                               unsigned channels);

// One channel's pair of files, working arrays and frame setup. The setup and buffers point into the
// arrays and tables held here.
struct SpectralChannelWork {
    const AlignedPair* pair = nullptr;
    unsigned channel = 0;
    std::unique_ptr<double[]> ref_db;
    std::unique_ptr<double[]> dut_db;
    std::unique_ptr<std::uint8_t[]> peak;
    std::unique_ptr<double[]> ratios; // pool of frames * bin_count ratios
    std::vector<SpectralBand> bands;
    std::vector<std::uint8_t> band_of_bin;
    SpectralFrameSetup setup;
    SpectralFrameBuffers buffers;
};

// What a record needs beyond its own fields while frames are folded in.
struct SpectralRecordFold {
    double worst_ratio = -1.0; // any frame's worst bin beats the start value
    long worst_bin = -1;
    bool failing_peak = false;
};

// Allocates the two dB arrays, the peak flags and a ratio pool for `pool_frames` frames without
// throwing, and builds the band table and bin-to-band map for settings.n at the reference's rate.
// False when an allocation fails (the caller then reports the channel as empty and passing).
bool spectral_channel_prepare(const AlignedPair& pair, unsigned channel,
                              const SpectralSettings& settings, std::size_t pool_frames,
                              SpectralChannelWork& work);

// Starts a new record: empties the ratio pool and returns a fresh fold.
SpectralRecordFold spectral_record_begin(SpectralChannelWork& work);

// Compares the frame starting at reference frame `start` and folds it into `out`: gated frames
// only count; the others add their counts and ratios and may hold a new worst bin (a strictly
// higher ratio, so the earliest frame wins ties). The chart fields are taken from the first frame
// and again from every frame that holds a new worst bin.
void spectral_record_frame(SpectralChannelWork& work, std::size_t start, SpectralRecordFold& fold,
                           SpectralChannelResult& out);

// Closes a record: frame_gated, the worst bin's frequency, p50/p95/p99 over the pooled ratios and
// the verdict (p99 <= 1.00001 and no failing peak; a record with nothing compared passes).
void spectral_record_finish(SpectralChannelWork& work, const SpectralRecordFold& fold,
                            SpectralChannelResult& out);
