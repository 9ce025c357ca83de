#include "config/configuration_rows.h"

#include <algorithm>

#include "config/message_format.h"
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

// The value as the card shows it; false when it is plain text rather than markup.
bool format_value(CardFormat format, const SettingValue& v, std::string& out) {
    switch (format) {
    case CardFormat::text:
        out = v.text;
        return false;
    case CardFormat::enabled_switch:
        out = v.boolean ? "enabled" : "disabled";
        return false;
    case CardFormat::yes_no_switch:
        out = v.boolean ? "yes" : "no";
        return false;
    case CardFormat::run_ms:
        if (v.number == 0.0) { // "disabled" for exactly 0, as written
            out = "disabled";
            return false;
        }
        format_message(out, "%.1f ms", v.number);
        return true;
    case CardFormat::count:
        format_message(out, "%zu", static_cast<std::size_t>(v.integer));
        return true;
    case CardFormat::samples:
        format_message(out, "%zu samples", static_cast<std::size_t>(v.integer));
        return true;
    case CardFormat::edge_skip:
        format_message(out, "%ld samples at each end", static_cast<long>(v.integer));
        return true;
    case CardFormat::band_count:
        format_message(out, "%zu configured", v.bands.size());
        return true;
    case CardFormat::snapshot_count:
        format_message(out, "%zu", v.snapshots.count);
        return true;
    case CardFormat::decibels:
        format_message(out, "%.2f dB", v.number);
        return true;
    case CardFormat::fraction:
        format_message(out, "%.2f", v.number);
        return true;
    case CardFormat::times:
        format_message(out, "%.4g&times;", v.number);
        return true;
    }
    return true;
}

ConfigurationRow row_of(const SettingEntry& entry, const Resolved<SettingValue>& setting) {
    ConfigurationRow row{entry.card_check, entry.card_parameter, {}, false, setting.source};
    row.value_is_text = !format_value(entry.card_format, setting.value, row.value);
    return row;
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
