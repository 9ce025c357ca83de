// The validation rules the settings table attaches to its keys. Each returns false with `message`
// set to its complete error line ("error: ...\n"); `sample_rate` gives the Nyquist frequency the
// bands must cover.
#pragma once

#include <cstdint>
#include <string>

#include "config/analysis_config.h"

bool check_fft_size(const AnalysisConfig& config, std::uint32_t sample_rate, std::string& message);
bool check_profile(const AnalysisConfig& config, std::uint32_t sample_rate, std::string& message);
bool check_relative_floor_profile(const AnalysisConfig& config, std::uint32_t sample_rate,
                                  std::string& message);
// Not together with the relative noise floor; ascending and covering Nyquist.
bool check_bands(const AnalysisConfig& config, std::uint32_t sample_rate, std::string& message);
// Start and end together, and only for the frequency sweep.
bool check_sweep_range(const AnalysisConfig& config, std::uint32_t sample_rate,
                       std::string& message);
bool check_test_frequency_profile(const AnalysisConfig& config, std::uint32_t sample_rate,
                                  std::string& message);
bool check_search_window(const AnalysisConfig& config, std::uint32_t sample_rate,
                         std::string& message);
bool check_sweep_shape(const AnalysisConfig& config, std::uint32_t sample_rate,
                       std::string& message);
bool check_edge_skip(const AnalysisConfig& config, std::uint32_t sample_rate, std::string& message);
bool check_overlap_needs_continuous(const AnalysisConfig& config, std::uint32_t sample_rate,
                                    std::string& message);
// Snapshot count, or the continuous scan's overlap and its exclusion of snapshots.
bool check_scan_mode(const AnalysisConfig& config, std::uint32_t sample_rate, std::string& message);
bool check_distortion_overlap(const AnalysisConfig& config, std::uint32_t sample_rate,
                              std::string& message);
