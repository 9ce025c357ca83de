// The reference peaks of one spectral frame: the single highest bin that sets the gate, and the
// peak runs of the multitone comparison, whose highest bins get the peak tolerance.
#pragma once

#include "dsp/spectral_bands.h"
#include "dsp/sweep_search.h"

#include <cstddef>
#include <cstdint>
#include <span>

// The highest level in bins [range.lo, range.hi] of `ref_db` (the range lies inside it); only a
// strictly greater level replaces, so ties keep the lowest bin.
std::size_t spectral_find_peak(std::span<const double> ref_db, BinRange range);

// Sets peak[k] to 1 for the highest bin (first on ties) of every run of `ref_db`: a run starts at a
// bin strictly above its band's peak threshold and goes on while bins are not strictly below
// theirs; a run still open at the last bin counts. Other flags are left as they are. The three
// spans hold the same number of bins.
void spectral_mark_run_peaks(std::span<const double> ref_db, std::span<const SpectralBand> bands,
                             std::span<const std::uint8_t> band_of_bin,
                             std::span<std::uint8_t> peak);
