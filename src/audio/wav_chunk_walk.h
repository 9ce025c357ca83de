// The first pass of the WAV reader: checks the RIFF/WAVE header and walks the chunk list, taking
// the format from "fmt ", remembering where the "data" payload lies and copying every other chunk.
#pragma once

#include <cstdint>
#include <cstdio>
#include <sys/types.h>
#include <vector>

// The values taken from one "fmt " chunk.
struct WavFmtInfo {
    std::uint16_t channels = 0;
    std::uint32_t sample_rate = 0;
    std::uint16_t bits = 0;
    bool is_float = false;
    bool extensible = false;
    std::uint32_t channel_mask = 0;
};

// What the chunk walk found; the data payload itself is read later in one piece.
struct WavLayout {
    bool fmt_seen = false;
    WavFmtInfo fmt;
    off_t data_position = -1; // -1 while no data chunk has been seen
    std::uint32_t data_size = 0;
    std::vector<std::uint8_t> extra_chunks;
};

// Reads the 12-byte RIFF header and every chunk header of the open file. `file_length` bounds
// every payload read, so that a size running past the end fails before anything is allocated.
bool wav_walk_chunks(std::FILE* file, std::uint64_t file_length, WavLayout& layout);
