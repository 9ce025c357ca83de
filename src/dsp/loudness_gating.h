// The two figures taken from the momentary blocks: the integrated loudness, gated in two passes
// (an absolute gate at -70 LUFS, then a relative gate 10 LU under the loudness of the blocks the
// absolute gate kept), and the largest block loudness of any block list.
#pragma once

#include "dsp/loudness_blocks.h"

#include <cstddef>

// The integrated loudness of momentary blocks scanned with their per-channel mean squares;
// -200.0 when no block passes both gates.
double integrated_loudness(const LoudnessBlockList& momentary);

// The largest loudness among the first `count` blocks of the list (count <= blocks.count), no
// gating; -200.0 when count is 0.
double max_block_loudness(const LoudnessBlockList& blocks, std::size_t count);
