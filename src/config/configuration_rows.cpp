#include "config/configuration_rows.h"

#include <algorithm>

#include "config/setting_table.h"

namespace {

bool row_shown(CardShown shown, const Resolved<SettingValue>& setting) {
    switch (shown) {
    case CardShown::always:
        return true;
    case CardShown::when_set:
        return setting.set;
    case CardShown::when_not_empty:
        break;
    }
    return !setting.value.bands.empty();
}

ConfigurationRow row_of(const SettingEntry& entry, const Resolved<SettingValue>& setting) {
    return {entry.card_check, entry.card_parameter, entry.card_format, setting.value,
            setting.source};
}

} // namespace

std::vector<ConfigurationRow> configuration_rows(const AnalysisConfig& config) {
    std::vector<const SettingEntry*> shown;
    for (const SettingEntry& entry : setting_table()) {
        if (entry.card_order > 0 && entry.slot != nullptr) shown.push_back(&entry);
    }
    std::sort(shown.begin(), shown.end(), [](const SettingEntry* a, const SettingEntry* b) {
        return a->card_order < b->card_order;
    });
    std::vector<ConfigurationRow> rows;
    for (const SettingEntry* entry : shown) {
        const Resolved<SettingValue> setting = entry->slot->load(config);
        if (row_shown(entry->card_shown, setting)) rows.push_back(row_of(*entry, setting));
    }
    return rows;
}
