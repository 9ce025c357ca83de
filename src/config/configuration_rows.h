// The configuration card's rows, produced from the settings table: the settings the card shows,
// in its order, each with its resolved value, the format the card writes it in, and its source.
#pragma once

#include <string>
#include <vector>

#include "config/analysis_config.h"
#include "config/setting_source.h"
#include "config/setting_table.h"
#include "config/setting_value.h"

struct ConfigurationRow {
    std::string check;
    std::string parameter;
    CardFormat format = CardFormat::text;
    SettingValue value;
    SettingSource source = SettingSource::builtin_default;
};

std::vector<ConfigurationRow> configuration_rows(const AnalysisConfig& config);
