// Where a resolved setting's value came from, and the resolved value itself.
#pragma once

enum class SettingSource {
    builtin_default = 0,
    defaults_file = 1,
    config_file = 2,
    command_line = 3,
    sweep_profile = 4,
    rate_default = 5,
};

// The label the report shows for a source: "built-in default", "sonalyx-defaults.cfg",
// "--config", "command line", "implied by sweep profile", "built-in default for this sample rate".
const char* setting_source_label(SettingSource source);

// One resolved setting. `set` is true when a file, the command line or the sweep profile gave the
// value (sources 1 to 4). A built-in default (source 0 or 5) leaves `set` false but still fills
// `value`; a setting without a built-in default keeps `value` at T{} while unset.
template <typename T> struct Resolved {
    bool set = false;
    T value{};
    SettingSource source = SettingSource::builtin_default;
};
