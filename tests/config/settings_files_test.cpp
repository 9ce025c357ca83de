// The two file loaders: where they look for sections, per-key constraints, bands and snapshots.
#include <gtest/gtest.h>

#include <string>

#include "config_fixture.h"

namespace {

std::string spectral_file(std::string_view body) {
    return "{\"spectral_fidelity\": {" + std::string(body) + "}}";
}

bool override_loads(std::string_view content) {
    SettingsFile settings;
    return load_override_file(write_config_fixture(content), settings);
}

std::string band(double upper, std::string_view skip_key = "") {
    const char* keys[] = {
        "noise_floor_db",      "low_level_signal_threshold_db", "peak_threshold_db",
        "signal_tolerance_db", "low_level_signal_tolerance_db", "peak_tolerance_db"};
    std::string text = "{\"upper_freq_hz\": " + std::to_string(upper);
    double value = -1.0;
    for (const char* key : keys) {
        if (skip_key != key) text += ", \"" + std::string(key) + "\": " + std::to_string(value);
        value -= 1.0;
    }
    return text + "}";
}

std::string band_list(int count) {
    std::string text = "\"bands\": [";
    for (int i = 0; i < count; ++i)
        text += (i ? ", " : "") + band(1000.0 * (i + 1));
    return text + "]";
}

std::string snapshot_list(int count) {
    std::string text = "\"snapshots\": [";
    for (int i = 0; i < count; ++i) {
        text += (i ? ", " : "") + std::string("{\"time_sec\": ") + std::to_string(i) + ".5}";
    }
    return text + "]";
}

TEST(SettingsFiles, OverrideFileReadsTopLevelSections) {
    const SettingsFile s = load_override_text(R"({
        // level checks
        "level_fidelity": {"p99_tolerance_db": 1.5, "gates_overall": false},
        "artifact": {"window_samples": 32, "k": 7.5},
        "loudness": {"true_peak_ceiling_dbtp": -1.0},
        "bit_accuracy": {"enabled": true}
    })");
    EXPECT_EQ(number_in(s, SettingId::level_fidelity_p99_tolerance_db), 1.5);
    EXPECT_EQ(boolean_in(s, SettingId::level_fidelity_gates_overall), false);
    EXPECT_EQ(integer_in(s, SettingId::artifact_window_samples), 32);
    EXPECT_EQ(number_in(s, SettingId::artifact_k), 7.5);
    EXPECT_EQ(number_in(s, SettingId::loudness_true_peak_ceiling_dbtp), -1.0);
    EXPECT_EQ(boolean_in(s, SettingId::bit_accuracy_enabled), true);
    EXPECT_FALSE(number_in(s, SettingId::level_fidelity_noise_floor_db).has_value());
    EXPECT_FALSE(boolean_in(s, SettingId::distortion_enabled).has_value());
}

TEST(SettingsFiles, QuotedTrueIsAbsentForBoolean) {
    const SettingsFile s = load_override_text(R"({"level_fidelity": {"gates_overall": "true"}})");
    EXPECT_FALSE(boolean_in(s, SettingId::level_fidelity_gates_overall).has_value());
    EXPECT_TRUE(resolve_plain(s, {}).level_fidelity.gates_overall.value);
    EXPECT_EQ(resolve_plain(s, {}).level_fidelity.gates_overall.source,
              SettingSource::builtin_default);
}

TEST(SettingsFiles, FftSizeThroughIntegerGetter) {
    EXPECT_EQ(integer_in(load_override_text(spectral_file("\"fft_size\": 4096.0")),
                         SettingId::spectral_fft_size),
              4096);
    EXPECT_FALSE(integer_in(load_override_text(spectral_file("\"fft_size\": +4096")),
                            SettingId::spectral_fft_size)
                     .has_value());
}

TEST(SettingsFiles, IntegersBelowOneAreIgnored) {
    const SettingsFile s = load_override_text(R"({
        "artifact": {"window_samples": 0, "min_run": -2, "min_silence_clip_run": 1},
        "distortion": {"fundamental_notch_bins": 0},
        "impulse_template": {"frame_size": -8192},
        "spectral_fidelity": {"fft_size": 0}})");
    EXPECT_FALSE(integer_in(s, SettingId::artifact_window_samples).has_value());
    EXPECT_FALSE(integer_in(s, SettingId::artifact_min_run).has_value());
    EXPECT_EQ(integer_in(s, SettingId::artifact_min_silence_clip_run), 1);
    EXPECT_FALSE(integer_in(s, SettingId::distortion_fundamental_notch_bins).has_value());
    EXPECT_FALSE(integer_in(s, SettingId::impulse_template_frame_size).has_value());
    EXPECT_FALSE(integer_in(s, SettingId::spectral_fft_size).has_value());
}

TEST(SettingsFiles, NegativeEdgeSkipIsKeptForValidation) {
    EXPECT_EQ(integer_in(load_override_text(spectral_file("\"sweep_edge_skip_samples\": -5")),
                         SettingId::spectral_sweep_edge_skip_samples),
              -5);
}

TEST(SettingsFiles, TextLongerThanItsCapacityIsAbsent) {
    const std::string p31(31, 'p');
    const std::string p15(15, 'q');
    const SettingsFile kept =
        load_override_text("{\"general\": {\"default_profile\": \"" + p31 +
                           "\"}, \"level_fidelity\": {\"profile\": \"" + p15 + "\"}}");
    EXPECT_EQ(text_in(kept, SettingId::general_default_profile), p31);
    EXPECT_EQ(text_in(kept, SettingId::level_fidelity_profile), p15);
    const SettingsFile dropped =
        load_override_text("{\"general\": {\"default_profile\": \"" + p31 +
                           "p\"}, \"level_fidelity\": {\"profile\": \"" + p15 + "q\"}}");
    EXPECT_FALSE(text_in(dropped, SettingId::general_default_profile).has_value());
    EXPECT_FALSE(text_in(dropped, SettingId::level_fidelity_profile).has_value());
}

TEST(SettingsFiles, NestedKeyShadowsSectionKey) {
    // The band element's noise_floor_db comes first in the section text, so it wins.
    const SettingsFile s =
        load_override_text(spectral_file(band_list(1) + ", \"noise_floor_db\": -90"));
    EXPECT_EQ(number_in(s, SettingId::spectral_noise_floor_db), -1.0);
}

TEST(SettingsFiles, SnapshotsTrueMeansFive) {
    const SettingsFile s = load_override_text(spectral_file("\"snapshots\": true"));
    ASSERT_TRUE(snapshots_in(s, SettingId::spectral_snapshots).has_value());
    EXPECT_FALSE(snapshots_in(s, SettingId::spectral_snapshots)->is_list);
    EXPECT_EQ(snapshots_in(s, SettingId::spectral_snapshots)->count, 5u);
}

TEST(SettingsFiles, SnapshotsZeroNegativeFalseOrQuotedAreIgnored) {
    for (const char* value : {"0", "-3", "false", "\"5\""}) {
        const SettingsFile s =
            load_override_text(spectral_file(std::string("\"snapshots\": ") + value));
        EXPECT_FALSE(snapshots_in(s, SettingId::spectral_snapshots).has_value()) << value;
    }
}

TEST(SettingsFiles, SnapshotsCount) {
    const SettingsFile s = load_override_text(spectral_file("\"snapshots\": 30"));
    ASSERT_TRUE(snapshots_in(s, SettingId::spectral_snapshots).has_value());
    EXPECT_EQ(snapshots_in(s, SettingId::spectral_snapshots)->count, 30u);
}

TEST(SettingsFiles, SnapshotTimes) {
    const SettingsFile s = load_override_text(
        spectral_file("\"snapshots\": [{\"time_sec\": 1.5}, {\"label\": \"b\", \"time_sec\": 3}]"));
    ASSERT_TRUE(snapshots_in(s, SettingId::spectral_snapshots).has_value());
    EXPECT_TRUE(snapshots_in(s, SettingId::spectral_snapshots)->is_list);
    EXPECT_EQ(snapshots_in(s, SettingId::spectral_snapshots)->count, 2u);
    EXPECT_EQ(snapshots_in(s, SettingId::spectral_snapshots)->times_sec,
              (std::vector<double>{1.5, 3.0}));
}

TEST(SettingsFiles, TwentyFiveSnapshotTimesLoad) {
    const SettingsFile s = load_override_text(spectral_file(snapshot_list(25)));
    ASSERT_TRUE(snapshots_in(s, SettingId::spectral_snapshots).has_value());
    EXPECT_EQ(snapshots_in(s, SettingId::spectral_snapshots)->count, 25u);
    EXPECT_EQ(snapshots_in(s, SettingId::spectral_snapshots)->times_sec.back(), 24.5);
}

TEST(SettingsFiles, TwentySixthSnapshotFailsTheLoad) {
    EXPECT_FALSE(override_loads(spectral_file(snapshot_list(26))));
}

TEST(SettingsFiles, SnapshotWithoutTimeFailsTheLoad) {
    EXPECT_FALSE(override_loads(spectral_file("\"snapshots\": [{\"time_sec\": 1}, {\"t\": 2}]")));
    EXPECT_FALSE(override_loads(spectral_file("\"snapshots\": [{\"time_sec\": \"2\"}]")));
}

TEST(SettingsFiles, EmptySnapshotListIsSetWithCountZero) {
    const SettingsFile s = load_override_text(spectral_file("\"snapshots\": []"));
    ASSERT_TRUE(snapshots_in(s, SettingId::spectral_snapshots).has_value());
    EXPECT_TRUE(snapshots_in(s, SettingId::spectral_snapshots)->is_list);
    EXPECT_EQ(snapshots_in(s, SettingId::spectral_snapshots)->count, 0u);
}

TEST(SettingsFiles, OversizedSnapshotElementEndsTheList) {
    const std::string big = "{\"time_sec\": 2, \"note\": \"" + std::string(300, 'n') + "\"}";
    const SettingsFile s =
        load_override_text(spectral_file("\"snapshots\": [{\"time_sec\": 1}, " + big + "]"));
    ASSERT_TRUE(snapshots_in(s, SettingId::spectral_snapshots).has_value());
    EXPECT_EQ(snapshots_in(s, SettingId::spectral_snapshots)->times_sec,
              (std::vector<double>{1.0}));
}

TEST(SettingsFiles, BandsReadAllSevenNumbers) {
    const SettingsFile s = load_override_text(spectral_file(band_list(5)));
    const std::optional<std::vector<SpectralBandSetting>> bands =
        bands_in(s, SettingId::spectral_bands);
    ASSERT_TRUE(bands.has_value());
    ASSERT_EQ(bands->size(), 5u);
    const SpectralBandSetting& first = bands->front();
    EXPECT_EQ(first.upper_freq_hz, 1000.0);
    EXPECT_EQ(first.noise_floor_db, -1.0);
    EXPECT_EQ(first.low_level_signal_threshold_db, -2.0);
    EXPECT_EQ(first.peak_threshold_db, -3.0);
    EXPECT_EQ(first.signal_tolerance_db, -4.0);
    EXPECT_EQ(first.low_level_signal_tolerance_db, -5.0);
    EXPECT_EQ(first.peak_tolerance_db, -6.0);
    EXPECT_EQ(bands_in(s, SettingId::spectral_bands)->back().upper_freq_hz, 5000.0);
}

TEST(SettingsFiles, SixthBandFailsTheLoad) {
    EXPECT_FALSE(override_loads(spectral_file(band_list(6))));
}

TEST(SettingsFiles, BandMissingAKeyFailsTheLoad) {
    for (const char* key : {"noise_floor_db", "peak_tolerance_db", "signal_tolerance_db"}) {
        EXPECT_FALSE(override_loads(spectral_file("\"bands\": [" + band(100.0, key) + "]"))) << key;
    }
    EXPECT_FALSE(override_loads(
        spectral_file("\"bands\": [{\"noise_floor_db\": 1, \"low_level_signal_threshold_db\": 1, "
                      "\"peak_threshold_db\": 1, \"signal_tolerance_db\": 1, "
                      "\"low_level_signal_tolerance_db\": 1, \"peak_tolerance_db\": 1}]")));
}

TEST(SettingsFiles, BandsThatAreNotAnArrayAreAbsent) {
    const SettingsFile s = load_override_text(spectral_file("\"bands\": 3"));
    EXPECT_FALSE(bands_in(s, SettingId::spectral_bands).has_value());
    const SettingsFile empty = load_override_text(spectral_file("\"bands\": []"));
    ASSERT_TRUE(bands_in(empty, SettingId::spectral_bands).has_value());
    EXPECT_TRUE(bands_in(empty, SettingId::spectral_bands)->empty());
}

TEST(SettingsFiles, DefaultsFileSections) {
    const SettingsFile d = load_defaults_text(R"({
        "general": {"test_engineer": "Ada", "test_product": "Box \"2\"",
                    "test_company_name": "Acme", "tester_info_enabled": true},
        "alignment": {"fine_align_confidence_threshold": 0.8, "fine_align_max_search_sec": 0.25,
                      "fine_align_agreement_tolerance_samples": 4, "sync_psr_threshold": 7.5,
                      "sync_search_window_sec": 30},
        "analysis": {
            "general": {"low_level_signal_threshold_db": -65},
            "spectral_fidelity": {"fft_size": 2048, "noise_floor_db": -110}
        }
    })");
    EXPECT_EQ(text_in(d, SettingId::tester_test_engineer), "Ada");
    EXPECT_EQ(text_in(d, SettingId::tester_test_product), "Box \"2\"");
    EXPECT_EQ(text_in(d, SettingId::tester_test_company_name), "Acme");
    EXPECT_EQ(boolean_in(d, SettingId::tester_info_enabled), true);
    EXPECT_EQ(number_in(d, SettingId::alignment_fine_align_confidence_threshold), 0.8);
    EXPECT_EQ(number_in(d, SettingId::alignment_fine_align_max_search_sec), 0.25);
    EXPECT_EQ(integer_in(d, SettingId::alignment_fine_align_agreement_tolerance_samples), 4);
    EXPECT_EQ(number_in(d, SettingId::alignment_sync_psr_threshold), 7.5);
    EXPECT_EQ(number_in(d, SettingId::alignment_sync_search_window_sec), 30.0);
    EXPECT_EQ(number_in(d, SettingId::general_low_level_signal_threshold_db), -65.0);
    EXPECT_EQ(integer_in(d, SettingId::spectral_fft_size), 2048);
    EXPECT_EQ(number_in(d, SettingId::spectral_noise_floor_db), -110.0);
}

TEST(SettingsFiles, TesterTextsUpTo255Characters) {
    const std::string name(255, 'n');
    const SettingsFile d = load_defaults_text("{\"general\": {\"test_engineer\": \"" + name +
                                              "\", \"test_product\": \"" + name + "x\"}}");
    EXPECT_EQ(text_in(d, SettingId::tester_test_engineer), name);
    EXPECT_FALSE(text_in(d, SettingId::tester_test_product).has_value());
}

TEST(SettingsFiles, AnalysisGeneralBeforeGeneralIsReadAsTesterSection) {
    const SettingsFile d = load_defaults_text(R"({
        "analysis": {"general": {"test_engineer": "inner", "length_mismatch_tolerance_pct": 3}},
        "general": {"test_engineer": "outer", "tester_info_enabled": true}
    })");
    EXPECT_EQ(text_in(d, SettingId::tester_test_engineer), "inner");
    EXPECT_FALSE(boolean_in(d, SettingId::tester_info_enabled).has_value());
    EXPECT_EQ(number_in(d, SettingId::general_length_mismatch_tolerance_pct), 3.0);
}

TEST(SettingsFiles, DefaultsFileAnalysisSectionOf4096CharactersIsIgnored) {
    const std::string filler = "\"pad\": \"" + std::string(4096, 'x') + "\", ";
    const SettingsFile d = load_defaults_text(
        "{\"analysis\": {" + filler + "\"general\": {\"length_mismatch_tolerance_pct\": 3}}}");
    EXPECT_FALSE(number_in(d, SettingId::general_length_mismatch_tolerance_pct).has_value());
}

TEST(SettingsFiles, DefaultsFileFailsOnBadArrays) {
    SettingsFile d;
    EXPECT_FALSE(load_defaults_file(
        write_config_fixture("{\"analysis\": {" + spectral_file(band_list(6)).substr(1) + "}"), d));
    EXPECT_TRUE(load_defaults_file(
        write_config_fixture("{\"analysis\": {" + spectral_file(band_list(2)).substr(1) + "}"), d));
    ASSERT_TRUE(bands_in(d, SettingId::spectral_bands).has_value());
    EXPECT_EQ(bands_in(d, SettingId::spectral_bands)->size(), 2u);
}

TEST(SettingsFiles, FailedLoadLeavesOutputUntouched) {
    SettingsFile s;
    file_setting(s, SettingId::artifact_k) = number_setting(9.0);
    EXPECT_FALSE(load_override_file(
        write_config_fixture("{\"artifact\": {\"k\": 1}, " + spectral_file(band_list(6)).substr(1)),
        s));
    EXPECT_EQ(number_in(s, SettingId::artifact_k), 9.0);
}

} // namespace
