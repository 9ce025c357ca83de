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

AnalysisSettings load_override_text(std::string_view content) {
    AnalysisSettings settings;
    EXPECT_TRUE(load_override_file(write_config_fixture(content), settings)) << content;
    return settings;
}

DefaultsFileSettings load_defaults_text(std::string_view content) {
    DefaultsFileSettings settings;
    EXPECT_TRUE(load_defaults_file(write_config_fixture(content), settings)) << content;
    return settings;
}

AnalysisConfig resolve_plain(const AnalysisSettings& config_file,
                             const AnalysisSettings& defaults_file) {
    AnalysisConfig config;
    resolve_analysis_config(config_file, defaults_file, CommandLineSettings{}, 48000, 48000,
                            config);
    return config;
}
