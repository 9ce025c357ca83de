// The resolved analysis settings of one run, typed: every key under its section.key name with its
// value and where the value came from. The settings table (setting_table.h) says how each is read,
// defaulted, validated and shown; resolve_settings.h fills this record from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "config/setting_source.h"
#include "config/setting_value.h"
#include "config/spectral_profile.h"

// What the command line forces. The flags are named after the options.
struct CommandLineSettings {
    bool deepscan = false;
    bool impulse = false;
    bool ampsweep = false;
    bool freqsweep = false;
    bool bitaccuracy = false;
    bool bitexact = false;
    bool no_bitexact = false;
    bool no_distortion = false;
    bool levelfidelity_ref_only = false;
    bool no_loudness = false;
    bool loudness = false;
    bool artifact_ref_only = false;
    std::optional<long> snapshots; // --snapshots N as given; negative N resolves to 0
};

struct GeneralConfig {
    Resolved<std::string> default_profile;
    Resolved<double> low_level_signal_threshold_db;
    Resolved<double> length_mismatch_tolerance_pct;
};

struct LevelFidelityConfig {
    Resolved<std::string> profile;
    Resolved<double> noise_floor_db;
    Resolved<double> p99_tolerance_db;
    Resolved<double> min_sustained_run_ms;
    Resolved<bool> gates_overall;
};

struct ArtifactConfig {
    Resolved<std::size_t> window_samples;
    Resolved<double> k;
    Resolved<std::size_t> min_run;
    Resolved<double> noise_floor_db;
    Resolved<bool> gates_overall;
    Resolved<double> min_severity;
    Resolved<std::size_t> min_silence_clip_run;
    Resolved<double> min_global_severity;
};

struct SpectralFidelityConfig {
    Resolved<std::size_t> fft_size;
    Resolved<std::string> profile;
    Resolved<double> noise_floor_db;
    Resolved<double> relative_noise_floor_db;
    Resolved<double> low_level_signal_threshold_db;
    Resolved<double> peak_threshold_db;
    Resolved<double> signal_tolerance_db;
    Resolved<double> low_level_signal_tolerance_db;
    Resolved<double> peak_tolerance_db;
    Resolved<std::vector<SpectralBandSetting>> bands;
    Resolved<bool> continuous;
    Resolved<double> overlap_fraction;
    Resolved<SnapshotSetting> snapshots;
    Resolved<double> freq_sweep_start_hz;
    Resolved<double> freq_sweep_end_hz;
    Resolved<std::string> freq_sweep_shape;
    Resolved<double> amp_sweep_test_freq_hz;
    Resolved<double> sweep_search_window_cents;
    Resolved<long> sweep_edge_skip_samples;
    // The profile text as parsed at resolution; empty when it names no known profile.
    std::optional<SpectralProfile> parsed_profile = SpectralProfile::freq_domain_multitone;
};

struct DistortionConfig {
    Resolved<double> noise_floor_db;
    Resolved<std::size_t> fundamental_notch_bins;
    Resolved<double> tolerance_ratio;
    Resolved<bool> enabled;
    Resolved<bool> continuous;
    Resolved<double> overlap_fraction;
};

struct BitExactConfig {
    Resolved<double> bit_deviation_db;
    Resolved<bool> gates_overall;
    Resolved<bool> enabled;
};

struct BitAccuracyConfig {
    Resolved<bool> enabled;
    Resolved<double> tolerance_db;
};

struct TimeDomainConfig {
    Resolved<bool> enabled;
    Resolved<double> noise_floor_db;
    Resolved<double> peak_threshold_db;
    Resolved<double> peak_tolerance_pct;
    Resolved<double> low_level_signal_threshold_db;
    Resolved<double> low_level_signal_tolerance_pct;
    Resolved<double> signal_tolerance_pct;
};

struct ImpulseTemplateConfig {
    Resolved<bool> enabled;
    Resolved<double> peak_threshold_db;
    Resolved<double> ratio;
    Resolved<double> noise_floor_db;
    Resolved<std::size_t> frame_size;
};

struct LoudnessConfig {
    Resolved<bool> enabled;
    Resolved<double> integrated_tolerance_lu;
    Resolved<double> true_peak_tolerance_db;
    Resolved<double> true_peak_ceiling_dbtp;
    Resolved<bool> gates_overall;
};

// The text of the source that decided each gating switch and bit_accuracy.enabled: the flag
// ("--levelfidelity-ref-only", "--artifact-ref-only", "--loudness", "--bitexact",
// "--bitaccuracy"), "--config", "sonalyx-defaults.cfg" or "built-in default".
struct GatingLabels {
    const char* level_fidelity = "built-in default";
    const char* artifact = "built-in default";
    const char* loudness = "built-in default";
    const char* bit_exact = "built-in default";
    const char* bit_accuracy = "built-in default";
};

struct AnalysisConfig {
    GeneralConfig general;
    LevelFidelityConfig level_fidelity;
    ArtifactConfig artifact;
    SpectralFidelityConfig spectral_fidelity;
    DistortionConfig distortion;
    BitExactConfig bit_exact;
    BitAccuracyConfig bit_accuracy;
    TimeDomainConfig time_domain;
    ImpulseTemplateConfig impulse_template;
    LoudnessConfig loudness;
    GatingLabels gating;
};
