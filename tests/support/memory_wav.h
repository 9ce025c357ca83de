// Decoded WAV records built in memory from per-channel samples, for tests that call the checks
// without going through a file.
#pragma once

#include "audio/wav_file.h"

#include <cstdint>
#include <vector>

// A 64-bit float WavFile at `sample_rate` holding the equally long `channels` interleaved.
WavFile memory_wav(const std::vector<std::vector<double>>& channels, std::uint32_t sample_rate);
