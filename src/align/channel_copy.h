// One channel of a decoded file copied out of the interleaved samples, for the correlations.
#pragma once

#include "audio/wav_file.h"

#include <cstddef>
#include <memory>

using MonoBuffer = std::unique_ptr<double[]>;

// Channel k of every frame in an array of its own (file.frames values); null when memory is
// exhausted or the file has no channel k, which callers treat alike.
MonoBuffer copy_channel(const WavFile& file, std::size_t k);
