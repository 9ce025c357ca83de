#include "config/resolve_spectral.h"

#include <algorithm>
#include <array>
#include <string>

#include "config/resolve_helpers.h"
#include "config/spectral_profile.h"

namespace {

// The default band values and the band list.
void resolve_levels(const SpectralFidelitySettings& c, const SpectralFidelitySettings& d,
                    const GeneralConfig& general, SpectralFidelityConfig& out) {
    resolve_setting(out.noise_floor_db, c.noise_floor_db, d.noise_floor_db, -100.0);
    resolve_from_files(out.relative_noise_floor_db, c.relative_noise_floor_db,
                       d.relative_noise_floor_db);
    // Section key from --config, then the defaults file; else the resolved general key.
    out.low_level_signal_threshold_db = general.low_level_signal_threshold_db;
    resolve_from_files(out.low_level_signal_threshold_db, c.low_level_signal_threshold_db,
                       d.low_level_signal_threshold_db);
    resolve_setting(out.peak_threshold_db, c.peak_threshold_db, d.peak_threshold_db, -60.0);
    resolve_setting(out.signal_tolerance_db, c.signal_tolerance_db, d.signal_tolerance_db, 5.0);
    resolve_setting(out.low_level_signal_tolerance_db, c.low_level_signal_tolerance_db,
                    d.low_level_signal_tolerance_db, 10.0);
    resolve_setting(out.peak_tolerance_db, c.peak_tolerance_db, d.peak_tolerance_db, 1.0);
    resolve_from_files(out.bands, c.bands, d.bands);
}

// Profile, snapshot mode and continuous scan.
void resolve_modes(const SpectralFidelitySettings& c, const SpectralFidelitySettings& d,
                   const CommandLineSettings& command_line, SpectralFidelityConfig& out) {
    resolve_setting(out.profile, c.profile, d.profile, std::string("freq_domain_multitone"));
    if (command_line.ampsweep) {
        force_from_command_line(out.profile, std::string("amp_sweep"));
    } else if (command_line.freqsweep) {
        force_from_command_line(out.profile, std::string("freq_sweep"));
    }
    resolve_from_files(out.snapshots, c.snapshots, d.snapshots);
    if (command_line.snapshots) {
        const long count = std::max(*command_line.snapshots, 0L);
        force_from_command_line(out.snapshots,
                                SnapshotSetting{false, static_cast<std::size_t>(count), {}});
    }
    resolve_setting(out.continuous, c.continuous, d.continuous, false);
    // Only the built-in default turns true for a sweep; a file's explicit value is kept.
    if (!out.continuous.set && is_sweep_profile(out.profile.value) && !out.snapshots.set) {
        out.continuous = Resolved<bool>{true, true, SettingSource::sweep_profile};
    }
    resolve_from_files(out.overlap_fraction, c.overlap_fraction, d.overlap_fraction);
}

void resolve_sweeps(const SpectralFidelitySettings& c, const SpectralFidelitySettings& d,
                    std::uint32_t sample_rate, SpectralFidelityConfig& out) {
    resolve_from_files(out.freq_sweep_start_hz, c.freq_sweep_start_hz, d.freq_sweep_start_hz);
    resolve_from_files(out.freq_sweep_end_hz, c.freq_sweep_end_hz, d.freq_sweep_end_hz);
    resolve_setting(out.freq_sweep_shape, c.freq_sweep_shape, d.freq_sweep_shape,
                    std::string("linear"));
    resolve_from_files(out.amp_sweep_test_freq_hz, c.amp_sweep_test_freq_hz,
                       d.amp_sweep_test_freq_hz);
    resolve_setting(out.sweep_search_window_cents, c.sweep_search_window_cents,
                    d.sweep_search_window_cents, 50.0);
    rate_scaled_default(out.sweep_edge_skip_samples, 4096.0, sample_rate);
    resolve_from_files(out.sweep_edge_skip_samples, c.sweep_edge_skip_samples,
                       d.sweep_edge_skip_samples);
}

} // namespace

std::size_t default_fft_size(std::uint32_t sample_rate, std::size_t shared_frames) {
    std::size_t size = sample_rate <= 48000 ? 8192 : (sample_rate <= 96000 ? 16384 : 32768);
    const std::size_t limit = std::max<std::size_t>(8192, shared_frames);
    while (size > limit)
        size /= 2;
    return size;
}

bool fft_size_supported(std::size_t size) {
    constexpr std::array<std::size_t, 6> kAllowed = {1024, 2048, 4096, 8192, 16384, 32768};
    return std::find(kAllowed.begin(), kAllowed.end(), size) != kAllowed.end();
}

void resolve_spectral_fidelity(const AnalysisSettings& config_file,
                               const AnalysisSettings& defaults_file,
                               const CommandLineSettings& command_line,
                               const GeneralConfig& general, std::uint32_t sample_rate,
                               std::size_t shared_frames, SpectralFidelityConfig& out) {
    const SpectralFidelitySettings& c = config_file.spectral_fidelity;
    const SpectralFidelitySettings& d = defaults_file.spectral_fidelity;
    const std::size_t fft_default = default_fft_size(sample_rate, shared_frames);
    out.fft_size = Resolved<std::size_t>{false, fft_default,
                                         fft_default == 8192 ? SettingSource::builtin_default
                                                             : SettingSource::rate_default};
    resolve_from_files(out.fft_size, c.fft_size, d.fft_size);
    resolve_levels(c, d, general, out);
    resolve_modes(c, d, command_line, out);
    resolve_sweeps(c, d, sample_rate, out);
}
