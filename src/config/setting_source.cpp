#include "config/setting_source.h"

const char* setting_source_label(SettingSource source) {
    switch (source) {
    case SettingSource::defaults_file:
        return "sonalyx-defaults.cfg";
    case SettingSource::config_file:
        return "--config";
    case SettingSource::command_line:
        return "command line";
    case SettingSource::sweep_profile:
        return "implied by sweep profile";
    case SettingSource::rate_default:
        return "built-in default for this sample rate";
    case SettingSource::builtin_default:
        break;
    }
    return "built-in default";
}
