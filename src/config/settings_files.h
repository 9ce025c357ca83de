// The settings one file gives, before any resolution: every key as an optional (empty when the key
// is absent or its value malformed), grouped by section. The override file (--config) holds the
// analysis sections at its top level; the defaults file holds tester information in `general`,
// the `alignment` section, and the analysis sections nested inside `analysis`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Text capacities per key, in bytes including the terminator.
inline constexpr std::size_t kTesterTextCapacity = 256;
inline constexpr std::size_t kDefaultProfileCapacity = 32;
inline constexpr std::size_t kLevelFidelityProfileCapacity = 16;
inline constexpr std::size_t kSpectralProfileCapacity = 32;
inline constexpr std::size_t kSweepShapeCapacity = 32;

inline constexpr std::size_t kMaxSpectralBands = 5;
inline constexpr std::size_t kMaxSnapshots = 25;
inline constexpr std::size_t kSnapshotsWhenTrue = 5;

// One element of spectral_fidelity.bands, every key required.
struct SpectralBandSetting {
    double upper_freq_hz = 0.0;
    double noise_floor_db = 0.0;
    double low_level_signal_threshold_db = 0.0;
    double peak_threshold_db = 0.0;
    double signal_tolerance_db = 0.0;
    double low_level_signal_tolerance_db = 0.0;
    double peak_tolerance_db = 0.0;
};

// spectral_fidelity.snapshots: a count, or a list of times (then `count` is the list length).
struct SnapshotSetting {
    bool is_list = false;
    std::size_t count = 0;
    std::vector<double> times_sec;
};

struct GeneralSettings {
    std::optional<std::string> default_profile;
    std::optional<double> low_level_signal_threshold_db;
    std::optional<double> length_mismatch_tolerance_pct;
};

struct LevelFidelitySettings {
    std::optional<std::string> profile;
    std::optional<double> noise_floor_db;
    std::optional<double> p99_tolerance_db;
    std::optional<double> min_sustained_run_ms;
    std::optional<bool> gates_overall;
};

struct ArtifactSettings {
    std::optional<std::int32_t> window_samples;
    std::optional<double> k;
    std::optional<std::int32_t> min_run;
    std::optional<double> noise_floor_db;
    std::optional<bool> gates_overall;
    std::optional<double> min_severity;
    std::optional<std::int32_t> min_silence_clip_run;
    std::optional<double> min_global_severity;
};

struct SpectralFidelitySettings {
    std::optional<std::int32_t> fft_size;
    std::optional<std::string> profile;
    std::optional<double> noise_floor_db;
    std::optional<double> relative_noise_floor_db;
    std::optional<double> low_level_signal_threshold_db;
    std::optional<double> peak_threshold_db;
    std::optional<double> signal_tolerance_db;
    std::optional<double> low_level_signal_tolerance_db;
    std::optional<double> peak_tolerance_db;
    std::optional<std::vector<SpectralBandSetting>> bands;
    std::optional<bool> continuous;
    std::optional<double> overlap_fraction;
    std::optional<SnapshotSetting> snapshots;
    std::optional<double> freq_sweep_start_hz;
    std::optional<double> freq_sweep_end_hz;
    std::optional<std::string> freq_sweep_shape;
    std::optional<double> amp_sweep_test_freq_hz;
    std::optional<double> sweep_search_window_cents;
    std::optional<std::int32_t> sweep_edge_skip_samples;
};

struct DistortionSettings {
    std::optional<double> noise_floor_db;
    std::optional<std::int32_t> fundamental_notch_bins;
    std::optional<double> tolerance_ratio;
    std::optional<bool> enabled;
    std::optional<bool> continuous;
    std::optional<double> overlap_fraction;
};

struct BitExactSettings {
    std::optional<double> bit_deviation_db;
    std::optional<bool> gates_overall;
    std::optional<bool> enabled;
};

struct BitAccuracySettings {
    std::optional<bool> enabled;
    std::optional<double> tolerance_db;
};

struct TimeDomainSettings {
    std::optional<bool> enabled;
    std::optional<double> noise_floor_db;
    std::optional<double> peak_threshold_db;
    std::optional<double> peak_tolerance_pct;
    std::optional<double> low_level_signal_threshold_db;
    std::optional<double> low_level_signal_tolerance_pct;
    std::optional<double> signal_tolerance_pct;
};

struct ImpulseTemplateSettings {
    std::optional<bool> enabled;
    std::optional<double> peak_threshold_db;
    std::optional<double> ratio;
    std::optional<double> noise_floor_db;
    std::optional<std::int32_t> frame_size;
};

struct LoudnessSettings {
    std::optional<bool> enabled;
    std::optional<double> integrated_tolerance_lu;
    std::optional<double> true_peak_tolerance_db;
    std::optional<double> true_peak_ceiling_dbtp;
    std::optional<bool> gates_overall;
};

// The analysis sections of one file.
struct AnalysisSettings {
    GeneralSettings general;
    LevelFidelitySettings level_fidelity;
    ArtifactSettings artifact;
    SpectralFidelitySettings spectral_fidelity;
    DistortionSettings distortion;
    BitExactSettings bit_exact;
    BitAccuracySettings bit_accuracy;
    TimeDomainSettings time_domain;
    ImpulseTemplateSettings impulse_template;
    LoudnessSettings loudness;
};

// The defaults file's top-level `general` section: tester information for the reports.
struct TesterSettings {
    std::optional<std::string> test_engineer;
    std::optional<std::string> test_product;
    std::optional<std::string> test_company_name;
    std::optional<bool> tester_info_enabled;
};

struct AlignmentSettings {
    std::optional<double> fine_align_confidence_threshold;
    std::optional<double> fine_align_max_search_sec;
    std::optional<std::int32_t> fine_align_agreement_tolerance_samples;
    std::optional<double> sync_psr_threshold;
    std::optional<double> sync_search_window_sec;
};

struct DefaultsFileSettings {
    TesterSettings general;
    AlignmentSettings alignment;
    AnalysisSettings analysis;
};

// The --config file. Fails on an unreadable, oversized or unbalanced file and on a malformed
// bands or snapshots array; `out` is replaced only on success.
bool load_override_file(const std::string& path, AnalysisSettings& out);

// sonalyx-defaults.cfg (or the --defaults-cfg file); fails as load_override_file does.
bool load_defaults_file(const std::string& path, DefaultsFileSettings& out);

// Reads the analysis sections found in `text` (a whole override file, or the defaults file's
// `analysis` section). Fails only on a malformed bands or snapshots array.
bool read_analysis_sections(std::string_view text, AnalysisSettings& out);
