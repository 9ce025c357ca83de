// The band table with and without configured bands, and the bin-to-band map: the first band whose
// upper frequency reaches the bin, the last band beyond, bands skipped between two bins.
#include "dsp/spectral_bands.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

// 48 kHz with 1024-point frames: bin k lies at k * 46.875 Hz.
constexpr double kRate = 48000.0;
constexpr std::size_t kN = 1024;

SpectralBand band_up_to(double upper_hz) {
    SpectralBand band;
    band.upper_freq_hz = upper_hz;
    return band;
}

TEST(SpectralBandTable, ConfiguredBandsAreKeptAsGiven) {
    const std::vector<SpectralBand> configured{
        {1000.0, -90.0, -60.0, -40.0, 1.0, 3.0, 0.5},
        {24000.0, -80.0, -50.0, -30.0, 2.0, 4.0, 0.25},
    };
    const SpectralBand defaults{5.0, -1.0, -2.0, -3.0, 4.0, 5.0, 6.0};
    const std::vector<SpectralBand> table = spectral_band_table(configured, defaults);
    ASSERT_EQ(table.size(), 2u);
    EXPECT_EQ(table[0].upper_freq_hz, 1000.0);
    EXPECT_EQ(table[0].peak_tolerance_db, 0.5);
    EXPECT_EQ(table[1].upper_freq_hz, 24000.0);
    EXPECT_EQ(table[1].noise_floor_db, -80.0);
    EXPECT_EQ(table[1].low_level_tolerance_db, 4.0);
}

TEST(SpectralBandTable, WithoutBandsOneUnboundedBandHoldsTheDefaults) {
    const SpectralBand defaults{5.0, -1.0, -2.0, -3.0, 4.0, 5.0, 6.0};
    const std::vector<SpectralBand> table = spectral_band_table({}, defaults);
    ASSERT_EQ(table.size(), 1u);
    EXPECT_EQ(table[0].upper_freq_hz, 1e300);
    EXPECT_EQ(table[0].noise_floor_db, -1.0);
    EXPECT_EQ(table[0].low_level_threshold_db, -2.0);
    EXPECT_EQ(table[0].peak_threshold_db, -3.0);
    EXPECT_EQ(table[0].signal_tolerance_db, 4.0);
    EXPECT_EQ(table[0].low_level_tolerance_db, 5.0);
    EXPECT_EQ(table[0].peak_tolerance_db, 6.0);
}

TEST(SpectralBandMap, FirstBandWhoseUpperReachesTheBin) {
    // Bin 20 lies exactly on 937.5 Hz and still belongs to the first band.
    const std::vector<SpectralBand> bands{band_up_to(937.5), band_up_to(5000.0),
                                          band_up_to(10000.0)};
    std::vector<std::uint8_t> map;
    spectral_band_map(bands, kN / 2, kRate, kN, map);
    ASSERT_EQ(map.size(), kN / 2);
    EXPECT_EQ(map[0], 0u);
    EXPECT_EQ(map[20], 0u);
    EXPECT_EQ(map[21], 1u);
    EXPECT_EQ(map[106], 1u); // 4968.75 Hz
    EXPECT_EQ(map[107], 2u); // 5015.625 Hz
    EXPECT_EQ(map[213], 2u); // 9984.375 Hz
}

TEST(SpectralBandMap, BinsAboveTheLastBandBelongToTheLastBand) {
    const std::vector<SpectralBand> bands{band_up_to(937.5), band_up_to(5000.0)};
    std::vector<std::uint8_t> map;
    spectral_band_map(bands, kN / 2, kRate, kN, map);
    EXPECT_EQ(map[107], 1u);
    EXPECT_EQ(map[511], 1u);
}

TEST(SpectralBandMap, BandNarrowerThanABinIsSkipped) {
    // 110 Hz falls between bins 2 (93.75 Hz) and 3 (140.625 Hz): no bin lands in band 1.
    const std::vector<SpectralBand> bands{band_up_to(100.0), band_up_to(110.0), band_up_to(200.0)};
    std::vector<std::uint8_t> map;
    spectral_band_map(bands, 6, kRate, kN, map);
    EXPECT_EQ(map, (std::vector<std::uint8_t>{0, 0, 0, 2, 2, 2}));
}

TEST(SpectralBandMap, DefaultBandTableMapsEveryBinToBandZero) {
    const std::vector<SpectralBand> table = spectral_band_table({}, SpectralBand{});
    std::vector<std::uint8_t> map;
    spectral_band_map(table, kN / 2, kRate, kN, map);
    EXPECT_EQ(map, std::vector<std::uint8_t>(kN / 2, 0));
}

TEST(SpectralBandMap, EmptyTableOrNoBinsLeaveTheMapEmpty) {
    std::vector<std::uint8_t> map{7, 7};
    spectral_band_map({}, kN / 2, kRate, kN, map);
    EXPECT_TRUE(map.empty());
    const std::vector<SpectralBand> bands{band_up_to(100.0)};
    map.assign(3, 7);
    spectral_band_map(bands, 0, kRate, kN, map);
    EXPECT_TRUE(map.empty());
}

} // namespace
