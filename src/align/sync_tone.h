// The sync tone that marks the start and the end of the programme material: four V-shaped chirps
// at -20 dB with short linear fades, separated by silent gaps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

inline constexpr int kSyncChirpCount = 4;

// Sample counts of the tone's pieces at one sample rate.
struct SyncToneLayout {
    std::size_t chirp = 0; // round(0.15 * rate)
    std::size_t gap = 0;   // round(0.05 * rate), zeros after chirps 1 to 3
};

SyncToneLayout sync_tone_layout(std::uint32_t sample_rate);

// Frames of the whole tone: 4 chirps and 3 gaps (36000 at 48 kHz).
std::size_t sync_template_length(std::uint32_t sample_rate);

// Writes the tone's first min(buffer.size(), length) samples into `buffer`; any samples past the
// tone's end are set to zero.
void sync_template_generate(std::span<double> buffer, std::uint32_t sample_rate);

// Writes the first min(buffer.size(), chirp length) samples of chirp `chirp` (0 to 3) alone, with
// the same frequencies, fades and level as in the whole tone.
void sync_chirp_generate(std::span<double> buffer, int chirp, std::uint32_t sample_rate);
