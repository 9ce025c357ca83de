// The reference peak search (ties, search range) and the peak runs of the multitone comparison
// on hand-made dB lists.
#include "dsp/spectral_peaks.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

SpectralBand band_with_peak_threshold(double upper_hz, double threshold_db) {
    SpectralBand band;
    band.upper_freq_hz = upper_hz;
    band.peak_threshold_db = threshold_db;
    return band;
}

// Runs the marking with one band for every bin and returns the flags.
std::vector<std::uint8_t> mark_one_band(const std::vector<double>& ref_db, double threshold_db) {
    const std::vector<SpectralBand> bands{band_with_peak_threshold(1e300, threshold_db)};
    const std::vector<std::uint8_t> band_of_bin(ref_db.size(), 0);
    std::vector<std::uint8_t> peak(ref_db.size(), 0);
    spectral_mark_run_peaks(ref_db, bands, band_of_bin, peak);
    return peak;
}

TEST(SpectralFindPeak, HighestBinWinsAndTiesKeepTheLowest) {
    const std::vector<double> db{-50.0, -10.0, -30.0, -10.0, -20.0};
    EXPECT_EQ(spectral_find_peak(db, {0, 4}), 1u);
    const std::vector<double> flat(6, -200.0);
    EXPECT_EQ(spectral_find_peak(flat, {0, 5}), 0u);
}

TEST(SpectralFindPeak, LooksOnlyInsideTheRange) {
    const std::vector<double> db{0.0, -40.0, -30.0, -35.0, -30.0, 5.0};
    EXPECT_EQ(spectral_find_peak(db, {1, 4}), 2u);
    EXPECT_EQ(spectral_find_peak(db, {3, 3}), 3u);
    EXPECT_EQ(spectral_find_peak(db, {3, 5}), 5u);
}

TEST(SpectralRunPeaks, HighestBinOfEachRunFirstOnTies) {
    // Run 1..5 (bin 4 equals the threshold and keeps the run open), peak at bin 2 (tie with 3);
    // bin 6 ends it; run 7..8 is still open at the last bin, peak at 7.
    const std::vector<double> db{-60.0, -40.0, -30.0, -30.0, -50.0, -45.0, -70.0, -20.0, -40.0};
    const std::vector<std::uint8_t> expected{0, 0, 1, 0, 0, 0, 0, 1, 0};
    EXPECT_EQ(mark_one_band(db, -50.0), expected);
}

TEST(SpectralRunPeaks, LevelEqualToTheThresholdStartsNoRun) {
    const std::vector<double> db{-50.0, -60.0, -50.0, -49.0, -50.0};
    const std::vector<std::uint8_t> expected{0, 0, 0, 1, 0};
    EXPECT_EQ(mark_one_band(db, -50.0), expected);
    EXPECT_EQ(mark_one_band(std::vector<double>(4, -50.0), -50.0), std::vector<std::uint8_t>(4, 0));
}

TEST(SpectralRunPeaks, RunOpenAtTheLastBinIsFlagged) {
    const std::vector<double> db{-90.0, -90.0, -30.0, -10.0};
    const std::vector<std::uint8_t> expected{0, 0, 0, 1};
    EXPECT_EQ(mark_one_band(db, -50.0), expected);
    EXPECT_EQ(mark_one_band({-10.0}, -50.0), std::vector<std::uint8_t>{1});
}

TEST(SpectralRunPeaks, EachBinMeetsTheThresholdOfItsOwnBand) {
    // Bins 0..2 in band 0 (threshold -50), bins 3..5 in band 1 (threshold -20).
    const std::vector<SpectralBand> bands{band_with_peak_threshold(100.0, -50.0),
                                          band_with_peak_threshold(1e300, -20.0)};
    const std::vector<std::uint8_t> band_of_bin{0, 0, 0, 1, 1, 1};
    // The run starting at bin 1 ends at bin 3 (-30 is below band 1's -20); bin 4 starts another.
    const std::vector<double> db{-60.0, -40.0, -45.0, -30.0, -10.0, -25.0};
    std::vector<std::uint8_t> peak(db.size(), 0);
    spectral_mark_run_peaks(db, bands, band_of_bin, peak);
    EXPECT_EQ(peak, (std::vector<std::uint8_t>{0, 1, 0, 0, 1, 0}));
}

TEST(SpectralRunPeaks, FlagsAlreadySetAreLeftAlone) {
    const std::vector<SpectralBand> bands{band_with_peak_threshold(1e300, -50.0)};
    const std::vector<double> db{-60.0, -40.0, -60.0};
    const std::vector<std::uint8_t> band_of_bin(3, 0);
    std::vector<std::uint8_t> peak{1, 0, 0};
    spectral_mark_run_peaks(db, bands, band_of_bin, peak);
    EXPECT_EQ(peak, (std::vector<std::uint8_t>{1, 1, 0}));
}

} // namespace
