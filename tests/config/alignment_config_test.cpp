// Alignment settings: defaults-file values, the low-level threshold chain, the search reach.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "config_fixture.h"

namespace {

TEST(AlignmentConfig, BuiltinDefaults) {
    AlignmentConfig config;
    resolve_alignment_config({}, {}, config);
    EXPECT_EQ(config.fine_align_confidence_threshold.value, 0.9);
    EXPECT_EQ(config.fine_align_max_search_sec.value, 0.1);
    EXPECT_EQ(config.fine_align_agreement_tolerance_samples.value, 2);
    EXPECT_EQ(config.sync_psr_threshold.value, 6.0);
    EXPECT_EQ(config.sync_search_window_sec.value, 45.0);
    EXPECT_EQ(config.low_level_signal_threshold_db.value, -70.0);
    EXPECT_EQ(config.fine_align_confidence_threshold.source, SettingSource::builtin_default);
    EXPECT_FALSE(config.sync_psr_threshold.set);
    EXPECT_EQ(alignment_max_search_samples(config, 48000), 4800u);
}

TEST(AlignmentConfig, ValuesFromDefaultsFile) {
    const SettingsFile d = load_defaults_text(R"({
        "alignment": {"fine_align_confidence_threshold": 0.75, "fine_align_max_search_sec": 0.5,
                      "fine_align_agreement_tolerance_samples": 0, "sync_psr_threshold": 9,
                      "sync_search_window_sec": 12.5},
        "analysis": {"general": {"low_level_signal_threshold_db": -66}}})");
    AlignmentConfig config;
    resolve_alignment_config({}, d, config);
    EXPECT_EQ(config.fine_align_confidence_threshold.value, 0.75);
    EXPECT_EQ(config.fine_align_max_search_sec.value, 0.5);
    EXPECT_EQ(config.fine_align_agreement_tolerance_samples.value, 0);
    EXPECT_EQ(config.sync_psr_threshold.value, 9.0);
    EXPECT_EQ(config.sync_search_window_sec.value, 12.5);
    EXPECT_EQ(config.low_level_signal_threshold_db.value, -66.0);
    for (const Resolved<double>* r :
         {&config.fine_align_confidence_threshold, &config.fine_align_max_search_sec,
          &config.sync_psr_threshold, &config.sync_search_window_sec,
          &config.low_level_signal_threshold_db}) {
        EXPECT_TRUE(r->set);
        EXPECT_EQ(r->source, SettingSource::defaults_file);
    }
    EXPECT_EQ(config.fine_align_agreement_tolerance_samples.source, SettingSource::defaults_file);
    EXPECT_EQ(alignment_max_search_samples(config, 44100), 22050u);
}

TEST(AlignmentConfig, ConfigFileThresholdWins) {
    SettingsFile c;
    file_setting(c, SettingId::general_low_level_signal_threshold_db) = number_setting(-50.0);
    SettingsFile d;
    file_setting(d, SettingId::general_low_level_signal_threshold_db) = number_setting(-60.0);
    AlignmentConfig config;
    resolve_alignment_config(c, d, config);
    EXPECT_EQ(config.low_level_signal_threshold_db.value, -50.0);
    EXPECT_EQ(config.low_level_signal_threshold_db.source, SettingSource::config_file);
}

TEST(AlignmentConfig, ConfigFileAlignmentSectionIsNotRead) {
    // The override file has no alignment section: only analysis sections are read from it.
    const SettingsFile c =
        load_override_text(R"({"alignment": {"fine_align_max_search_sec": 1.0}})");
    AlignmentConfig config;
    resolve_alignment_config(c, {}, config);
    EXPECT_EQ(config.fine_align_max_search_sec.value, 0.1);
}

TEST(AlignmentConfig, SearchReachRoundsHalfAwayFromZero) {
    AlignmentConfig config;
    resolve_alignment_config({}, {}, config);
    config.fine_align_max_search_sec.value = 0.0625;
    EXPECT_EQ(alignment_max_search_samples(config, 40), 3u);  // 2.5
    EXPECT_EQ(alignment_max_search_samples(config, 24), 2u);  // 1.5
    EXPECT_EQ(alignment_max_search_samples(config, 8), 1u);   // 0.5
    EXPECT_EQ(alignment_max_search_samples(config, 100), 6u); // 6.25
}

TEST(AlignmentConfig, SearchReachOfNegativeOrNotANumberIsZero) {
    AlignmentConfig config;
    resolve_alignment_config({}, {}, config);
    config.fine_align_max_search_sec.value = -1.0;
    EXPECT_EQ(alignment_max_search_samples(config, 48000), 0u);
    config.fine_align_max_search_sec.value = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(alignment_max_search_samples(config, 48000), 0u);
    config.fine_align_max_search_sec.value = std::numeric_limits<double>::infinity();
    EXPECT_EQ(alignment_max_search_samples(config, 48000), 9000000000000000u);
}

} // namespace
