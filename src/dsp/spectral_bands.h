// The tolerance bands of the spectral comparison: each band covers the bins up to its upper
// frequency and carries its own floor, thresholds and tolerances. Without configured bands one
// unbounded band is built from the default values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Seven 64-bit floats, in this order.
struct SpectralBand {
    double upper_freq_hz = 1e300;
    double noise_floor_db = 0.0;         // bins with both levels at or below it are excluded
    double low_level_threshold_db = 0.0; // at or above max(ref, dut): low-level tolerance
    double peak_threshold_db = 0.0;      // reference levels above it can be peaks
    double signal_tolerance_db = 0.0;    // tolerance of ordinary bins
    double low_level_tolerance_db = 0.0; // tolerance of low-level bins
    double peak_tolerance_db = 0.0;      // tolerance of peak bins
};

// The configured bands when there are any, else one band made of `defaults` with an upper
// frequency of 1e300 (unbounded).
std::vector<SpectralBand> spectral_band_table(std::span<const SpectralBand> configured,
                                              const SpectralBand& defaults);

// For each of `bin_count` bins (bin k at k * sample_rate / n Hz) the index of the first band whose
// upper frequency is at least the bin's frequency; bins above the last band belong to the last
// band. One forward pass over bands listed in ascending order. `out` gets bin_count entries; an
// empty band table leaves it empty.
void spectral_band_map(std::span<const SpectralBand> bands, std::size_t bin_count,
                       double sample_rate, std::size_t n, std::vector<std::uint8_t>& out);
