// Building blocks of setting resolution: take a value from --config, else from the defaults file,
// else keep the built-in default; force a value from the command line.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>

#include "config/setting_source.h"

// Overrides `out` with the --config value, else the defaults-file value; leaves it alone when
// neither file sets the key.
template <typename T, typename U>
void resolve_from_files(Resolved<T>& out, const std::optional<U>& config_file,
                        const std::optional<U>& defaults_file) {
    if (config_file) {
        out = Resolved<T>{true, static_cast<T>(*config_file), SettingSource::config_file};
    } else if (defaults_file) {
        out = Resolved<T>{true, static_cast<T>(*defaults_file), SettingSource::defaults_file};
    }
}

// As resolve_from_files, starting from the built-in default `builtin` (source 0).
template <typename T, typename U>
void resolve_setting(Resolved<T>& out, const std::optional<U>& config_file,
                     const std::optional<U>& defaults_file, std::type_identity_t<T> builtin) {
    out = Resolved<T>{false, std::move(builtin), SettingSource::builtin_default};
    resolve_from_files(out, config_file, defaults_file);
}

template <typename T>
void force_from_command_line(Resolved<T>& out, std::type_identity_t<T> value) {
    out = Resolved<T>{true, std::move(value), SettingSource::command_line};
}

// The built-in default `base` stated for 48000 Hz: unchanged (source 0) up to 48000 Hz, above it
// trunc(rate * base / 48000 + 0.5) with source 5.
template <typename T>
void rate_scaled_default(Resolved<T>& out, double base, std::uint32_t sample_rate) {
    out = Resolved<T>{false, static_cast<T>(base), SettingSource::builtin_default};
    if (sample_rate > 48000) {
        const double scaled = static_cast<double>(sample_rate) * base / 48000.0 + 0.5;
        out.value = static_cast<T>(std::trunc(scaled));
        out.source = SettingSource::rate_default;
    }
}
