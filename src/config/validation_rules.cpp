#include "config/validation_rules.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "config/message_format.h"
#include "config/resolve_settings.h"
#include "config/spectral_profile.h"

namespace {

bool in_overlap_range(double fraction) {
    return fraction >= 0.0 && fraction <= 0.5;
}

// Strictly ascending upper frequencies, the last one at or above Nyquist. An empty band list has
// no last band to cover Nyquist, so it fails.
bool bands_cover_nyquist(const std::vector<SpectralBandSetting>& bands, double nyquist) {
    if (bands.empty()) return false;
    for (std::size_t i = 1; i < bands.size(); ++i) {
        if (!(bands[i].upper_freq_hz > bands[i - 1].upper_freq_hz)) return false;
    }
    return bands.back().upper_freq_hz >= nyquist;
}

bool check_bands_with_relative_floor(const SpectralFidelityConfig& s, std::string& message) {
    if (!s.bands.set || !s.relative_noise_floor_db.set) return true;
    message = "error: spectral_fidelity.bands and spectral_fidelity.relative_noise_floor_db "
              "cannot both be set -- use only one of them\n";
    return false;
}

bool check_bands_order(const SpectralFidelityConfig& s, std::uint32_t sample_rate,
                       std::string& message) {
    const double nyquist = static_cast<double>(sample_rate) / 2.0;
    if (!s.bands.set || bands_cover_nyquist(s.bands.value, nyquist)) return true;
    format_message(message,
                   "error: spectral_fidelity.bands must have strictly ascending upper_freq_hz, "
                   "and the last band's upper_freq_hz must cover the Nyquist frequency (%.1f "
                   "Hz)\n",
                   nyquist);
    return false;
}

bool check_sweep_range_pair(const SpectralFidelityConfig& s, std::string& message) {
    if (s.freq_sweep_start_hz.set == s.freq_sweep_end_hz.set) return true;
    message = "error: spectral_fidelity.freq_sweep_start_hz and freq_sweep_end_hz must both be "
              "set together, or neither\n";
    return false;
}

bool check_sweep_range_profile(const SpectralFidelityConfig& s, std::string& message) {
    if (!s.freq_sweep_start_hz.set || s.profile.value == "freq_sweep") return true;
    format_message(message,
                   "error: spectral_fidelity.freq_sweep_start_hz/end_hz/shape only apply to "
                   "profile=\"freq_sweep\" (got profile=\"%s\")\n",
                   s.profile.value.c_str());
    return false;
}

bool check_snapshot_count(const SpectralFidelityConfig& s, std::string& message) {
    const std::size_t count = s.snapshots.value.count;
    if (!s.snapshots.set || (count >= 1 && count <= kMaxSnapshots)) return true;
    format_message(message,
                   "error: spectral_fidelity.snapshots must resolve to between 1 and %d "
                   "snapshots, got %zu\n",
                   static_cast<int>(kMaxSnapshots), count);
    return false;
}

bool check_continuous_scan(const SpectralFidelityConfig& s, std::string& message) {
    if (s.overlap_fraction.set && !in_overlap_range(s.overlap_fraction.value)) {
        format_message(message,
                       "error: spectral_fidelity.overlap_fraction must be in [0, 0.5], got %.4f\n",
                       s.overlap_fraction.value);
        return false;
    }
    if (!s.snapshots.set) return true;
    message = "error: spectral_fidelity.snapshots and spectral_fidelity.continuous cannot both be "
              "set -- multi-snapshot and continuous scan are alternate modes\n";
    return false;
}

} // namespace

bool fft_size_supported(std::size_t size) {
    constexpr std::array<std::size_t, 6> kAllowed = {1024, 2048, 4096, 8192, 16384, 32768};
    return std::find(kAllowed.begin(), kAllowed.end(), size) != kAllowed.end();
}

bool check_fft_size(const AnalysisConfig& config, std::uint32_t, std::string& message) {
    const std::size_t size = config.spectral_fidelity.fft_size.value;
    if (fft_size_supported(size)) return true;
    format_message(message,
                   "error: spectral_fidelity.fft_size %zu not supported -- must be one of 1024, "
                   "2048, 4096, 8192, 16384, 32768 (also used by Distortion, which reads this "
                   "same field)\n",
                   size);
    return false;
}

bool check_profile(const AnalysisConfig& config, std::uint32_t, std::string& message) {
    const std::string& profile = config.spectral_fidelity.profile.value;
    SpectralProfile parsed = SpectralProfile::freq_domain_multitone;
    if (parse_spectral_profile(profile, parsed)) return true;
    format_message(message,
                   "error: spectral_fidelity.profile '%s' not recognized -- must be one of "
                   "\"freq_domain_multitone\", \"freq_sweep\", \"amp_sweep\"\n",
                   profile.c_str());
    return false;
}

bool check_relative_floor_profile(const AnalysisConfig& config, std::uint32_t,
                                  std::string& message) {
    const SpectralFidelityConfig& s = config.spectral_fidelity;
    if (!s.relative_noise_floor_db.set || s.profile.value == "amp_sweep") return true;
    format_message(message,
                   "error: spectral_fidelity.relative_noise_floor_db only applies to "
                   "profile=\"amp_sweep\" (got profile=\"%s\")\n",
                   s.profile.value.c_str());
    return false;
}

bool check_test_frequency_profile(const AnalysisConfig& config, std::uint32_t,
                                  std::string& message) {
    const SpectralFidelityConfig& s = config.spectral_fidelity;
    if (!s.amp_sweep_test_freq_hz.set || s.profile.value == "amp_sweep") return true;
    format_message(message,
                   "error: spectral_fidelity.amp_sweep_test_freq_hz only applies to "
                   "profile=\"amp_sweep\" (got profile=\"%s\")\n",
                   s.profile.value.c_str());
    return false;
}

bool check_search_window(const AnalysisConfig& config, std::uint32_t, std::string& message) {
    const SpectralFidelityConfig& s = config.spectral_fidelity;
    const bool freq_windowing =
        s.profile.value == "freq_sweep" && s.freq_sweep_start_hz.set && s.freq_sweep_end_hz.set;
    const bool amp_windowing = s.profile.value == "amp_sweep" && s.amp_sweep_test_freq_hz.set;
    if (!s.sweep_search_window_cents.set || freq_windowing || amp_windowing) return true;
    message = "error: spectral_fidelity.sweep_search_window_cents only applies once sweep peak "
              "windowing is active (freq_sweep_start_hz/end_hz for profile=\"freq_sweep\", or "
              "amp_sweep_test_freq_hz for profile=\"amp_sweep\")\n";
    return false;
}

bool check_sweep_shape(const AnalysisConfig& config, std::uint32_t, std::string& message) {
    const SpectralFidelityConfig& s = config.spectral_fidelity;
    const std::string& shape = s.freq_sweep_shape.value;
    if (!s.freq_sweep_start_hz.set || !s.freq_sweep_end_hz.set) return true;
    if (shape == "log" || shape == "linear") return true;
    format_message(message,
                   "error: spectral_fidelity.freq_sweep_shape '%s' not recognized -- must be "
                   "\"linear\" or \"log\"\n",
                   shape.c_str());
    return false;
}

bool check_edge_skip(const AnalysisConfig& config, std::uint32_t, std::string& message) {
    const SpectralFidelityConfig& s = config.spectral_fidelity;
    if (s.sweep_edge_skip_samples.set && !is_sweep_profile(s.profile.value)) {
        format_message(message,
                       "error: spectral_fidelity.sweep_edge_skip_samples only applies to "
                       "profile=\"freq_sweep\" or \"amp_sweep\" (got profile=\"%s\")\n",
                       s.profile.value.c_str());
        return false;
    }
    if (s.sweep_edge_skip_samples.value >= 0) return true;
    format_message(message,
                   "error: spectral_fidelity.sweep_edge_skip_samples must be 0 or more, got %ld\n",
                   s.sweep_edge_skip_samples.value);
    return false;
}

bool check_overlap_needs_continuous(const AnalysisConfig& config, std::uint32_t,
                                    std::string& message) {
    const SpectralFidelityConfig& s = config.spectral_fidelity;
    if (!s.overlap_fraction.set || s.continuous.value) return true;
    message = "error: spectral_fidelity.overlap_fraction only applies when "
              "spectral_fidelity.continuous is true\n";
    return false;
}

bool check_scan_mode(const AnalysisConfig& config, std::uint32_t, std::string& message) {
    const SpectralFidelityConfig& s = config.spectral_fidelity;
    return s.continuous.value ? check_continuous_scan(s, message)
                              : check_snapshot_count(s, message);
}

bool check_distortion_overlap(const AnalysisConfig& config, std::uint32_t, std::string& message) {
    const DistortionConfig& d = config.distortion;
    if (d.overlap_fraction.set && !d.continuous.value) {
        message = "error: distortion.overlap_fraction only applies when distortion.continuous is "
                  "true\n";
        return false;
    }
    if (in_overlap_range(d.overlap_fraction.value)) return true;
    format_message(message, "error: distortion.overlap_fraction must be in [0, 0.5], got %.4f\n",
                   d.overlap_fraction.value);
    return false;
}

bool check_bands(const AnalysisConfig& config, std::uint32_t sample_rate, std::string& message) {
    return check_bands_with_relative_floor(config.spectral_fidelity, message) &&
           check_bands_order(config.spectral_fidelity, sample_rate, message);
}

bool check_sweep_range(const AnalysisConfig& config, std::uint32_t, std::string& message) {
    return check_sweep_range_pair(config.spectral_fidelity, message) &&
           check_sweep_range_profile(config.spectral_fidelity, message);
}
