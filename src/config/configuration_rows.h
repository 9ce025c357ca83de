// The configuration card's rows, produced from the settings table: the settings the card shows,
// in its order, with their values formatted and their sources.
#pragma once

#include <string>
#include <vector>

#include "config/analysis_config.h"
#include "config/setting_source.h"

struct ConfigurationRow {
    std::string check;
    std::string parameter;
    std::string value;
    bool value_is_text = false; // plain text to escape; otherwise ready markup
    SettingSource source = SettingSource::builtin_default;
};

std::vector<ConfigurationRow> configuration_rows(const AnalysisConfig& config);
