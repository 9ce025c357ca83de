#include "config/settings_files.h"

#include <utility>

#include "config/config_lookup.h"
#include "config/config_text.h"
#include "config/setting_read.h"
#include "config/setting_table.h"

namespace {

// Reads every key of `scope` from the sections of `text` that hold them.
bool read_scope(std::string_view text, SettingScope scope, SettingsFile& out) {
    for (const SettingEntry& entry : setting_table()) {
        std::string section;
        if (entry.scope != scope || !find_section(text, entry.section, section)) continue;
        if (!read_setting(section, entry, file_setting(out, entry.id))) return false;
    }
    return true;
}

} // namespace

bool load_override_file(const std::string& path, SettingsFile& out) {
    std::string text;
    SettingsFile settings;
    if (!load_config_text(path, text) || !read_scope(text, SettingScope::analysis, settings))
        return false;
    out = std::move(settings);
    return true;
}

bool load_defaults_file(const std::string& path, SettingsFile& out) {
    std::string text;
    if (!load_config_text(path, text)) return false;
    SettingsFile settings;
    // Both top-level searches take the first occurrence in the whole text, so an
    // analysis.general written before the top-level general is read as the tester section.
    if (!read_scope(text, SettingScope::tester, settings) ||
        !read_scope(text, SettingScope::alignment, settings))
        return false;
    std::string analysis;
    if (find_section(text, "analysis", analysis) &&
        !read_scope(analysis, SettingScope::analysis, settings)) {
        return false;
    }
    out = std::move(settings);
    return true;
}
