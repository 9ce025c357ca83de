// The two figures taken from the momentary blocks: the integrated loudness, gated in two passes
// (an absolute gate at -70 LUFS, then a relative gate 10 LU under the loudness of the blocks the
// absolute gate kept), and the largest block loudness of any block list.
#pragma once

#include "dsp/loudness_blocks.h"

// The integrated loudness of momentary blocks scanned with their per-channel mean squares;
// -200.0 when no block passes both gates.
double integrated_loudness(const LoudnessBlockList& momentary);

// The largest block loudness of the list, no gating; -200.0 for an empty list.
double max_block_loudness(const LoudnessBlockList& blocks);
