#include "cli/spectral_run.h"

#include <span>

namespace {

SpectralBand band_from(const SpectralBandSetting& b) {
    return {b.upper_freq_hz,     b.noise_floor_db,      b.low_level_signal_threshold_db,
            b.peak_threshold_db, b.signal_tolerance_db, b.low_level_signal_tolerance_db,
            b.peak_tolerance_db};
}

SpectralBand default_band(const SpectralFidelityConfig& c) {
    return {1e300,
            c.noise_floor_db.value,
            c.low_level_signal_threshold_db.value,
            c.peak_threshold_db.value,
            c.signal_tolerance_db.value,
            c.low_level_signal_tolerance_db.value,
            c.peak_tolerance_db.value};
}

SweepSettings sweep_from(const SpectralFidelityConfig& c, SpectralMode mode) {
    SweepSettings sweep;
    // The peak search narrows to a window only once the sweep's frequencies are configured.
    sweep.windowing = (mode == SpectralMode::freq_sweep && c.freq_sweep_start_hz.set &&
                       c.freq_sweep_end_hz.set) ||
                      (mode == SpectralMode::amp_sweep && c.amp_sweep_test_freq_hz.set);
    sweep.shape = c.freq_sweep_shape.value == "log" ? SweepShape::log : SweepShape::linear;
    sweep.start_hz = c.freq_sweep_start_hz.value;
    sweep.end_hz = c.freq_sweep_end_hz.value;
    sweep.test_freq_hz = c.amp_sweep_test_freq_hz.value;
    sweep.window_cents = c.sweep_search_window_cents.value;
    return sweep;
}

} // namespace

SpectralSettings spectral_settings_from(const SpectralFidelityConfig& c) {
    SpectralSettings s;
    s.n = c.fft_size.value;
    // Parsed when the settings were resolved, and validated before the checks run.
    s.mode = static_cast<SpectralMode>(
        c.parsed_profile.value_or(SpectralProfile::freq_domain_multitone));
    s.sweep = sweep_from(c, s.mode);
    if (c.relative_noise_floor_db.set) s.relative_floor_db = c.relative_noise_floor_db.value;
    if (c.bands.set) {
        for (const SpectralBandSetting& band : c.bands.value)
            s.bands.push_back(band_from(band));
    }
    s.defaults = default_band(c);
    s.continuous = c.continuous.value;
    s.overlap_fraction = c.overlap_fraction.value;
    s.edge_skip_samples = c.sweep_edge_skip_samples.value;
    s.edge_handling = s.mode != SpectralMode::multitone && !c.snapshots.set && s.continuous;
    return s;
}

SpectralOutcome run_spectral_check(const AlignedPair& pair, const SpectralFidelityConfig& config) {
    const SpectralSettings settings = spectral_settings_from(config);
    SpectralOutcome outcome;
    outcome.snapshot_mode = config.snapshots.set;
    if (outcome.snapshot_mode) {
        const SnapshotSetting& snapshots = config.snapshots.value;
        const std::span<const double> times = snapshots.is_list
                                                  ? std::span<const double>(snapshots.times_sec)
                                                  : std::span<const double>();
        outcome.snapshots = spectral_snapshots(pair, settings, times, snapshots.count);
    } else {
        outcome.scan = spectral_scan(pair, settings);
    }
    return outcome;
}
