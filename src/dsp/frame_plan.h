// Where the frames of a frame-by-frame scan start: the hop between frames of a continuous scan and
// the single frame centred in an aligned overlap. Shared by the spectral and distortion checks.
#pragma once

#include "audio/audio.h"

#include <cstddef>

// round((1 - overlap_fraction) * n), halves away from zero, and at least 1 (also for a NaN
// fraction).
std::size_t frame_hop(std::size_t n, double overlap_fraction);

// The start of one n-frame centred in the overlap: max(ref_start, ref_start + L/2 - n/2) with
// integer halves, moved back to end - n when the frame would run past the end. Needs L >= n.
std::size_t centred_frame_start(const Overlap& overlap, std::size_t n);
