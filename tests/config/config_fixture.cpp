#include "config_fixture.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <unistd.h>

std::string write_config_fixture(std::string_view content) {
    static int counter = 0;
    const std::string path = testing::TempDir() + "sonalyx_config_" + std::to_string(::getpid()) +
                             "_" + std::to_string(counter++) + ".cfg";
    std::FILE* file = std::fopen(path.c_str(), "wb");
    EXPECT_NE(file, nullptr) << path;
    if (file != nullptr) {
        EXPECT_EQ(std::fwrite(content.data(), 1, content.size(), file), content.size());
        std::fclose(file);
    }
    return path;
}

SettingsFile load_override_text(std::string_view content) {
    SettingsFile settings;
    EXPECT_TRUE(load_override_file(write_config_fixture(content), settings)) << content;
    return settings;
}

SettingsFile load_defaults_text(std::string_view content) {
    SettingsFile settings;
    EXPECT_TRUE(load_defaults_file(write_config_fixture(content), settings)) << content;
    return settings;
}

AnalysisConfig resolve_plain(const SettingsFile& config_file, const SettingsFile& defaults_file) {
    AnalysisConfig config;
    resolve_analysis_config(config_file, defaults_file, CommandLineSettings{}, 48000, 48000,
                            config);
    return config;
}

namespace {

template <typename T>
std::optional<T> member_in(const SettingsFile& file, SettingId id, T SettingValue::*member) {
    const std::optional<SettingValue>& value = file_setting(file, id);
    if (!value) return std::nullopt;
    return (*value).*member;
}

} // namespace

std::optional<double> number_in(const SettingsFile& file, SettingId id) {
    return member_in(file, id, &SettingValue::number);
}

std::optional<std::int64_t> integer_in(const SettingsFile& file, SettingId id) {
    return member_in(file, id, &SettingValue::integer);
}

std::optional<bool> boolean_in(const SettingsFile& file, SettingId id) {
    return member_in(file, id, &SettingValue::boolean);
}

std::optional<std::string> text_in(const SettingsFile& file, SettingId id) {
    return member_in(file, id, &SettingValue::text);
}

std::optional<std::vector<SpectralBandSetting>> bands_in(const SettingsFile& file, SettingId id) {
    return member_in(file, id, &SettingValue::bands);
}

std::optional<SnapshotSetting> snapshots_in(const SettingsFile& file, SettingId id) {
    return member_in(file, id, &SettingValue::snapshots);
}
