// Locating the programme material of a capture between a leading and a trailing sync tone: the
// search window at each end, both searches, and the lines that say why a capture cannot be cut.
#pragma once

#include "align/find_sync_tone.h"
#include "audio/audio.h"

#include <cstddef>
#include <cstdint>
#include <string>

// A match must resemble the tone at least this much, whatever the settings.
inline constexpr double kSyncSimilarityFloor = 0.12;

// How many frames at each end of the file are searched for a tone.
struct SyncSearchWindow {
    std::size_t requested = 0; // round(seconds * rate), halves away from zero
    std::size_t frames = 0;    // `requested`, capped at half the file
    bool capped = false;       // whether the cap applied
};

SyncSearchWindow sync_search_window(double seconds, std::uint32_t sample_rate,
                                    std::size_t file_frames);

// Both occurrences and the clean signal between them: frames [sync_point, trim_point).
struct TrimPoints {
    SyncDetection leading;
    SyncDetection trailing;
    std::size_t sync_point = 0; // the end of the leading tone
    std::size_t trim_point = 0; // the start of the trailing tone
};

// Searches the first and the last `window` frames (the trailing search only once the leading one
// succeeded) and checks that the trailing tone starts after the leading one ends. On failure
// `error` holds the whole "error: ..." line to print, line feed included.
bool locate_trim_points(const WavFile& wav, std::size_t window, double psr_threshold,
                        TrimPoints& points, std::string& error);
