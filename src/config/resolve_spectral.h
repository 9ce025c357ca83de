// Resolution of the spectral_fidelity section, the one with sample-rate and profile dependent
// defaults.
#pragma once

#include <cstddef>
#include <cstdint>

#include "config/analysis_config.h"

// `general` must already be resolved: the low-level threshold falls back to it.
void resolve_spectral_fidelity(const AnalysisSettings& config_file,
                               const AnalysisSettings& defaults_file,
                               const CommandLineSettings& command_line,
                               const GeneralConfig& general, std::uint32_t sample_rate,
                               std::size_t shared_frames, SpectralFidelityConfig& out);
