#include "config/validate_config.h"

#include "config/setting_table.h"

bool validate_analysis_config(const AnalysisConfig& config, std::uint32_t sample_rate,
                              std::string& message) {
    for (const SettingEntry& entry : setting_table()) {
        if (entry.rule && !entry.rule(config, sample_rate, message)) return false;
    }
    return true;
}
