// Sync tone search: finds the tone in a stretch of a decoded file on whichever channel matches it
// best, and checks each of its four chirps on its own.
#pragma once

#include "align/sync_tone.h"
#include "audio/audio.h"

#include <array>
#include <cstddef>
#include <cstdint>

// The outcome of one search.
struct SyncDetection {
    bool found = false;         // PSR and similarity both reach their thresholds
    std::uint64_t position = 0; // file frame where the best template match starts
    std::int32_t channel = 0;   // channel of the best match; -1 when no channel could be searched
    double psr = 0.0;           // PSR of the best match (-1.0 when none)
    double similarity = 0.0;    // normalised similarity at the match, never below 0
    std::int32_t rep_count = 0; // per-chirp checks made: 4 when found, else 0
    std::array<double, kSyncChirpCount> rep_psr{}; // PSR of each chirp's own check (0 if skipped)
};

// Searches frames [start, start + length) of `wav`, cut at the file's end, on every channel.
SyncDetection find_sync_tone(const WavFile& wav, std::size_t start, std::size_t length,
                             double psr_threshold, double similarity_threshold);
