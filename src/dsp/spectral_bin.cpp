#include "dsp/spectral_bin.h"

#include "dsp/spectral_frame.h"

#include <algorithm>
#include <cmath>

namespace {

double tier_tolerance(bool is_peak, double r, double d, const SpectralBand& band) {
    if (is_peak) return band.peak_tolerance_db;
    if (band.low_level_threshold_db >= std::max(r, d)) return band.low_level_tolerance_db;
    return band.signal_tolerance_db;
}

} // namespace

double spectral_gate_level(SpectralMode mode, const SpectralBand& band, double peak_db,
                           std::optional<double> relative_floor_db) {
    switch (mode) {
    case SpectralMode::multitone:
        return band.noise_floor_db;
    case SpectralMode::freq_sweep:
        return band.peak_threshold_db;
    case SpectralMode::amp_sweep:
        if (!relative_floor_db) return band.noise_floor_db;
        return std::max(peak_db + *relative_floor_db, band.noise_floor_db);
    }
    return band.noise_floor_db;
}

SpectralBinOutcome spectral_compare_bin(double floor_db, double ref_db, double dut_db, bool is_peak,
                                        const SpectralBand& band) {
    SpectralBinOutcome out;
    if (floor_db >= ref_db && floor_db >= dut_db) {
        out.excluded = true;
        return out;
    }
    const double r = std::max(floor_db, ref_db);
    const double d = std::max(floor_db, dut_db);
    out.diff_db = d - r;
    out.tolerance_db = tier_tolerance(is_peak, r, d, band);
    out.ratio = std::fabs(d - r) / out.tolerance_db;
    out.failed = out.ratio > kSpectralFailRatio;
    return out;
}
