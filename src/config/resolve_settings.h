// Resolution of every setting in the settings table: per key the command-line flag where one
// exists, then --config, then the defaults file, then the built-in default, each with the source
// it came from.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "config/analysis_config.h"
#include "config/setting_source.h"
#include "config/setting_value.h"

using ResolvedTable = std::array<Resolved<SettingValue>, kSettingCount>;

inline const Resolved<SettingValue>& resolved_setting(const ResolvedTable& table, SettingId id) {
    return table[setting_index(id)];
}

inline Resolved<SettingValue>& resolved_setting(ResolvedTable& table, SettingId id) {
    return table[setting_index(id)];
}

// What the defaults depend on: the sample rate, and the frame count ref and DUT share after
// alignment (which sizes the default fft_size).
struct ResolveContext {
    std::uint32_t sample_rate = 0;
    std::size_t shared_frames = 0;
};

// Every key from the two files and its default, without the command line.
ResolvedTable resolve_from_files(const SettingsFile& config_file, const SettingsFile& defaults_file,
                                 const ResolveContext& context);

// Resolves every analysis setting into `out` (replaced whole), the command line included, and
// parses the spectral profile once.
void resolve_analysis_config(const SettingsFile& config_file, const SettingsFile& defaults_file,
                             const CommandLineSettings& command_line, std::uint32_t sample_rate,
                             std::size_t shared_frames, AnalysisConfig& out);

// The fft_size used when no file sets one: 8192 up to 48000 Hz, 16384 up to 96000 Hz, 32768
// above, halved while larger than the greater of 8192 and `shared_frames`.
std::size_t default_fft_size(std::uint32_t sample_rate, std::size_t shared_frames);

// One of the transform sizes the spectral check accepts: 1024, 2048, ..., 32768.
bool fft_size_supported(std::size_t size);
