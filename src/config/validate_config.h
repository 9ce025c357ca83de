// The checks on the resolved analysis settings that run before any analysis: the rules of the
// settings table in table order; the first failure is reported.
#pragma once

#include <cstdint>
#include <string>

#include "config/analysis_config.h"

// Returns false at the first failing rule with `message` set to its complete error line
// ("error: ...\n"); `sample_rate` gives the Nyquist frequency the bands must cover.
bool validate_analysis_config(const AnalysisConfig& config, std::uint32_t sample_rate,
                              std::string& message);
