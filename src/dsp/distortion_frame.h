// The per-frame arithmetic of the distortion check: the reference's fundamental bin and the
// THD+N figure of one DUT frame measured against the reference frame it lines up with.
#pragma once

#include <cstddef>
#include <span>

// The THD+N figure of one frame.
struct ThdnFigure {
    double ratio = 0.0; // sqrt(residual power / power inside the notch)
    double db = 0.0;    // 20 * log10(ratio), or -200.0 when the ratio is 0
};

// The bin with the largest reference magnitude, DC included; ties keep the lowest bin. Bin 0 for
// an empty spectrum.
std::size_t distortion_fundamental_bin(std::span<const double> ref_mag);

// Power inside the notch [k0 - notch_bins, k0 + notch_bins] (clipped to the spectrum) is the sum of
// the DUT's squared magnitudes there; the residual sums, over every other bin, the amount by which
// the DUT's power exceeds the reference's (bins where the DUT is quieter add nothing). The notch
// power is raised to at least 1e-300 before the division. Both spans hold the same bin count and
// k0 lies inside them.
ThdnFigure distortion_thdn(std::span<const double> ref_mag, std::span<const double> dut_mag,
                           std::size_t k0, std::size_t notch_bins);
