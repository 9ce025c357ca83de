// The gate level per mode and one bin's comparison with exact numbers: exclusion at the floor,
// raising to the floor, the three tolerance tiers and the fail threshold.
#include "dsp/spectral_bin.h"

#include "dsp/spectral_frame.h"

#include <gtest/gtest.h>

namespace {

// Floor -90, low-level threshold -60, peak threshold -30; tolerances 1 (signal), 4 (low), 0.5.
const SpectralBand kBand{1e300, -90.0, -60.0, -30.0, 1.0, 4.0, 0.5};

TEST(SpectralGateLevel, EachModeUsesItsOwnLevel) {
    EXPECT_EQ(spectral_gate_level(SpectralMode::multitone, kBand, -10.0, std::nullopt), -90.0);
    EXPECT_EQ(spectral_gate_level(SpectralMode::freq_sweep, kBand, -10.0, std::nullopt), -30.0);
    EXPECT_EQ(spectral_gate_level(SpectralMode::amp_sweep, kBand, -10.0, std::nullopt), -90.0);
}

TEST(SpectralGateLevel, RelativeFloorOnlyForTheAmplitudeSweep) {
    // -10 + -40 = -50 lies above the band floor of -90.
    EXPECT_EQ(spectral_gate_level(SpectralMode::amp_sweep, kBand, -10.0, -40.0), -50.0);
    // -70 + -40 = -110 lies below it: the band floor wins.
    EXPECT_EQ(spectral_gate_level(SpectralMode::amp_sweep, kBand, -70.0, -40.0), -90.0);
    EXPECT_EQ(spectral_gate_level(SpectralMode::multitone, kBand, -10.0, -40.0), -90.0);
    EXPECT_EQ(spectral_gate_level(SpectralMode::freq_sweep, kBand, -10.0, -40.0), -30.0);
}

TEST(SpectralCompareBin, BothLevelsAtOrUnderTheFloorAreExcluded) {
    EXPECT_TRUE(spectral_compare_bin(-90.0, -120.0, -95.0, false, kBand).excluded);
    EXPECT_TRUE(spectral_compare_bin(-90.0, -90.0, -90.0, true, kBand).excluded);
    const SpectralBinOutcome one_above = spectral_compare_bin(-90.0, -120.0, -89.0, false, kBand);
    EXPECT_FALSE(one_above.excluded);
    EXPECT_EQ(one_above.diff_db, 1.0); // the reference is raised to the floor
}

TEST(SpectralCompareBin, LevelsAreRaisedToTheFloor) {
    // r = -80 (the floor), d = -50: 30 dB louder, signal tier.
    const SpectralBinOutcome bin = spectral_compare_bin(-80.0, -100.0, -50.0, false, kBand);
    EXPECT_EQ(bin.diff_db, 30.0);
    EXPECT_EQ(bin.tolerance_db, 1.0);
    EXPECT_EQ(bin.ratio, 30.0);
    EXPECT_TRUE(bin.failed);
}

TEST(SpectralCompareBin, TierFollowsThePeakFlagThenTheLowLevelThreshold) {
    // Both at or below -60: low-level tier (the threshold itself counts).
    EXPECT_EQ(spectral_compare_bin(-90.0, -62.0, -60.0, false, kBand).tolerance_db, 4.0);
    // One level above -60: signal tier.
    EXPECT_EQ(spectral_compare_bin(-90.0, -62.0, -59.0, false, kBand).tolerance_db, 1.0);
    // A peak bin takes the peak tolerance at any level.
    EXPECT_EQ(spectral_compare_bin(-90.0, -62.0, -60.0, true, kBand).tolerance_db, 0.5);
    EXPECT_EQ(spectral_compare_bin(-90.0, -10.0, -11.0, true, kBand).ratio, 2.0);
}

TEST(SpectralCompareBin, DifferenceOfExactlyTheTolerancePasses) {
    const SpectralBinOutcome louder = spectral_compare_bin(-90.0, -20.0, -19.0, false, kBand);
    EXPECT_EQ(louder.ratio, 1.0);
    EXPECT_FALSE(louder.failed);
    const SpectralBinOutcome quieter = spectral_compare_bin(-90.0, -20.0, -20.5, true, kBand);
    EXPECT_EQ(quieter.diff_db, -0.5);
    EXPECT_EQ(quieter.ratio, 1.0);
    EXPECT_FALSE(quieter.failed);
}

TEST(SpectralCompareBin, FailsOnlyAboveTheFailRatio) {
    const SpectralBand unit{1e300, -90.0, -60.0, -30.0, 1.0, 1.0, 1.0};
    const SpectralBinOutcome at = spectral_compare_bin(-90.0, 0.0, kSpectralFailRatio, false, unit);
    EXPECT_EQ(at.ratio, kSpectralFailRatio);
    EXPECT_FALSE(at.failed);
    EXPECT_TRUE(spectral_compare_bin(-90.0, 0.0, 1.0000101, false, unit).failed);
}

TEST(SpectralCompareBin, SameDifferenceFailsInOneBandAndPassesInAnother) {
    const SpectralBand tight{5000.0, -90.0, -60.0, -30.0, 0.5, 0.5, 0.5};
    const SpectralBand loose{1e300, -90.0, -60.0, -30.0, 2.0, 2.0, 2.0};
    const SpectralBinOutcome in_tight = spectral_compare_bin(-90.0, -20.0, -19.0, false, tight);
    const SpectralBinOutcome in_loose = spectral_compare_bin(-90.0, -20.0, -19.0, false, loose);
    EXPECT_EQ(in_tight.ratio, 2.0);
    EXPECT_TRUE(in_tight.failed);
    EXPECT_EQ(in_loose.ratio, 0.5);
    EXPECT_FALSE(in_loose.failed);
}

} // namespace
