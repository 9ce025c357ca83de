#include "dsp/frame_plan.h"

#include "audio/audio.h"

#include <algorithm>

std::size_t frame_hop(std::size_t n, double overlap_fraction) {
    const double hop = round_half_away_from_zero((1.0 - overlap_fraction) * static_cast<double>(n));
    return hop >= 1.0 ? static_cast<std::size_t>(hop) : 1; // also catches a NaN fraction
}

std::size_t centred_frame_start(const Overlap& overlap, std::size_t n) {
    // With L >= n both bounds already hold; the clamps state the rule as it is meant.
    const std::size_t end = overlap.ref_start + overlap.length;
    const std::size_t centred =
        std::max(overlap.ref_start + overlap.length / 2 - n / 2, overlap.ref_start);
    return std::min(centred, end - n);
}
