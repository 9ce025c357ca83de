// The settings alignment needs before the analysis settings can be resolved: the defaults file's
// alignment section, and the low-level signal threshold.
#pragma once

#include <cstddef>
#include <cstdint>

#include "config/setting_source.h"
#include "config/setting_value.h"

struct AlignmentConfig {
    Resolved<double> fine_align_confidence_threshold;
    Resolved<double> fine_align_max_search_sec;
    Resolved<std::int32_t> fine_align_agreement_tolerance_samples;
    Resolved<double> sync_psr_threshold;
    Resolved<double> sync_search_window_sec;
    Resolved<double> low_level_signal_threshold_db;
};

// The alignment keys come from the defaults file only (defaults 0.9, 0.1 s, 2 samples, 6.0,
// 45.0 s); the low-level threshold is general.low_level_signal_threshold_db from --config, else
// from the defaults file, else -70.0.
void resolve_alignment_config(const SettingsFile& config_file, const SettingsFile& defaults,
                              AlignmentConfig& out);

// Search reach in samples: fine_align_max_search_sec × sample_rate rounded to nearest, halves
// away from zero.
std::size_t alignment_max_search_samples(const AlignmentConfig& config, std::uint32_t sample_rate);
