// general.default_profile: a shortcut that switches on one kind of analysis within the settings
// of the file that names it.
#pragma once

#include <string>
#include <string_view>

#include "config/setting_value.h"

enum class AnalysisProfile {
    bit_exact,
    bit_accuracy,
    amplitude_sweep,
    frequency_sweep,
    frequency_domain,
    impulse_domain,
    time_domain,
};

// Exact, case-sensitive match of the profile names ("bit_exact", "amplitude_sweep", ...).
bool parse_analysis_profile(std::string_view text, AnalysisProfile& out);

// Applies the file's own general.default_profile, if it sets one, to that file's settings: a
// setting the profile implies is filled only when the same file leaves it unset. `file_label` is
// "--config" or "sonalyx-defaults.cfg". An unknown profile returns false with `message` holding
// the complete error line.
bool apply_default_profile(SettingsFile& settings, const char* file_label, std::string& message);
