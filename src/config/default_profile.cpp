#include "config/default_profile.h"

#include <array>
#include <utility>

#include "config/message_format.h"

namespace {

constexpr std::array<std::pair<std::string_view, AnalysisProfile>, 7> kProfileNames = {{
    {"bit_exact", AnalysisProfile::bit_exact},
    {"bit_accuracy", AnalysisProfile::bit_accuracy},
    {"amplitude_sweep", AnalysisProfile::amplitude_sweep},
    {"frequency_sweep", AnalysisProfile::frequency_sweep},
    {"frequency_domain", AnalysisProfile::frequency_domain},
    {"impulse_domain", AnalysisProfile::impulse_domain},
    {"time_domain", AnalysisProfile::time_domain},
}};

void fill_unset(SettingsFile& settings, SettingId id, SettingValue value) {
    std::optional<SettingValue>& setting = file_setting(settings, id);
    if (!setting) setting = std::move(value);
}

} // namespace

bool parse_analysis_profile(std::string_view text, AnalysisProfile& out) {
    for (const auto& [name, profile] : kProfileNames) {
        if (text == name) {
            out = profile;
            return true;
        }
    }
    return false;
}

bool apply_default_profile(SettingsFile& settings, const char* file_label, std::string& message) {
    const std::optional<SettingValue>& named =
        file_setting(settings, SettingId::general_default_profile);
    if (!named) return true;
    AnalysisProfile profile = AnalysisProfile::bit_exact;
    if (!parse_analysis_profile(named->text, profile)) {
        format_message(message,
                       "error: %s's general.default_profile '%s' not recognized -- must be one "
                       "of \"bit_exact\", \"bit_accuracy\", \"amplitude_sweep\", "
                       "\"frequency_sweep\", \"frequency_domain\", \"impulse_domain\", "
                       "\"time_domain\" (--deepscan)\n",
                       file_label, named->text.c_str());
        return false;
    }
    switch (profile) {
    case AnalysisProfile::bit_accuracy:
        fill_unset(settings, SettingId::bit_accuracy_enabled, boolean_setting(true));
        break;
    case AnalysisProfile::amplitude_sweep:
        fill_unset(settings, SettingId::spectral_profile, text_setting("amp_sweep"));
        break;
    case AnalysisProfile::frequency_sweep:
        fill_unset(settings, SettingId::spectral_profile, text_setting("freq_sweep"));
        break;
    case AnalysisProfile::impulse_domain:
        fill_unset(settings, SettingId::impulse_template_enabled, boolean_setting(true));
        break;
    case AnalysisProfile::time_domain:
        fill_unset(settings, SettingId::time_domain_enabled, boolean_setting(true));
        break;
    case AnalysisProfile::bit_exact:
    case AnalysisProfile::frequency_domain:
        break;
    }
    return true;
}
