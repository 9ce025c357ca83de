// The per-bin arithmetic of the spectral comparison: the gate level a frame's reference peak must
// clear, and one bin's exclusion, tolerance tier and ratio.
#pragma once

#include "dsp/spectral_bands.h"
#include "dsp/sweep_search.h"

#include <optional>

// The gate level of the band holding the reference peak: its noise floor (multitone), its peak
// threshold (frequency sweep), or for an amplitude sweep max(peak_db + relative floor, noise floor)
// when a relative floor is set, else the noise floor.
double spectral_gate_level(SpectralMode mode, const SpectralBand& band, double peak_db,
                           std::optional<double> relative_floor_db);

struct SpectralBinOutcome {
    bool excluded = false;     // both levels at or below the floor: no ratio
    double ratio = 0.0;        // |d - r| / tolerance
    double diff_db = 0.0;      // d - r, both raised to the floor
    double tolerance_db = 0.0; // tolerance of the bin's tier
    bool failed = false;       // ratio above kSpectralFailRatio
};

// One bin against floor F: excluded when F >= ref and F >= dut; else r = max(F, ref),
// d = max(F, dut) and the tolerance is the band's peak tolerance for a peak bin, the low-level
// tolerance when the low-level threshold is at or above max(r, d), otherwise the signal tolerance.
SpectralBinOutcome spectral_compare_bin(double floor_db, double ref_db, double dut_db, bool is_peak,
                                        const SpectralBand& band);
