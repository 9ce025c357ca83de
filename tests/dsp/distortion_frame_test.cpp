// The per-frame arithmetic on hand-made magnitude lists: the fundamental search with its ties
// and the DC bin, the notch and its clipping, and the residual that only counts DUT excess.
#include "dsp/distortion_frame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

TEST(DistortionFundamental, LargestBinWins) {
    const std::vector<double> mag{0.5, 0.25, 3.0, 1.0};
    EXPECT_EQ(distortion_fundamental_bin(mag), 2u);
}

TEST(DistortionFundamental, TieKeepsTheLowestBin) {
    const std::vector<double> mag{0.5, 3.0, 1.0, 3.0, 3.0};
    EXPECT_EQ(distortion_fundamental_bin(mag), 1u);
    const std::vector<double> flat(8, 0.0);
    EXPECT_EQ(distortion_fundamental_bin(flat), 0u);
}

TEST(DistortionFundamental, DcBinTakesPart) {
    const std::vector<double> mag{9.0, 3.0, 8.0};
    EXPECT_EQ(distortion_fundamental_bin(mag), 0u);
}

TEST(DistortionFundamental, SingleAndEmptySpectraGiveBinZero) {
    EXPECT_EQ(distortion_fundamental_bin(std::vector<double>{0.7}), 0u);
    EXPECT_EQ(distortion_fundamental_bin(std::vector<double>{}), 0u);
}

TEST(DistortionThdn, NotchOfZeroBinsIsTheFundamentalBinAlone) {
    const std::vector<double> ref{1.0, 4.0, 2.0, 0.5};
    const std::vector<double> dut{1.0, 5.0, 1.0, 1.0};
    // P = 5^2 = 25; residual only from bin 3 (1 - 0.25); bin 0 is equal, bin 2 is quieter.
    const ThdnFigure f = distortion_thdn(ref, dut, 1, 0);
    EXPECT_DOUBLE_EQ(f.ratio, std::sqrt(0.75 / 25.0));
    EXPECT_NEAR(f.db, 10.0 * std::log10(0.03), 1e-12);
}

TEST(DistortionThdn, NotchCoversBothNeighbours) {
    const std::vector<double> ref{1.0, 4.0, 2.0, 0.5};
    const std::vector<double> dut{1.0, 5.0, 1.0, 1.0};
    // P = 1 + 25 + 1 = 27, residual 0.75: ratio sqrt(1 / 36) = 1 / 6.
    const ThdnFigure f = distortion_thdn(ref, dut, 1, 1);
    EXPECT_DOUBLE_EQ(f.ratio, 1.0 / 6.0);
    EXPECT_NEAR(f.db, -15.563025007672874, 1e-12);
}

TEST(DistortionThdn, NotchIsClippedAtBothEnds) {
    const std::vector<double> ref{4.0, 1.0, 0.0, 0.0, 2.0};
    const std::vector<double> dut{4.0, 1.0, 3.0, 2.0, 2.0};
    // k0 = 0 with 1 bin each side: P = 16 + 1, residual 9 + 4.
    EXPECT_DOUBLE_EQ(distortion_thdn(ref, dut, 0, 1).ratio, std::sqrt(13.0 / 17.0));
    // k0 = 4 with 3 bins each side: bins 1 to 4, P = 1 + 9 + 4 + 4; bin 0 equal.
    const ThdnFigure last = distortion_thdn(ref, dut, 4, 3);
    EXPECT_DOUBLE_EQ(last.ratio, 0.0);
    EXPECT_EQ(last.db, -200.0);
}

TEST(DistortionThdn, HugeNotchCoversEverythingWithoutOverflow) {
    const std::vector<double> ref{1.0, 4.0, 0.0};
    const std::vector<double> dut{2.0, 4.0, 3.0};
    const ThdnFigure f = distortion_thdn(ref, dut, 1, std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(f.ratio, 0.0);
    EXPECT_EQ(f.db, -200.0);
}

TEST(DistortionThdn, QuieterDutCreditsNothing) {
    const std::vector<double> ref{0.5, 4.0, 2.0, 1.0};
    const std::vector<double> dut{0.25, 2.0, 1.0, 0.5};
    const ThdnFigure f = distortion_thdn(ref, dut, 1, 0);
    EXPECT_EQ(f.ratio, 0.0);
    EXPECT_EQ(f.db, -200.0);
}

TEST(DistortionThdn, SilentNotchIsRaisedToTheSmallestPower) {
    const std::vector<double> ref{0.0, 1.0, 0.0};
    const std::vector<double> dut{0.0, 0.0, 1e-100};
    // Residual 1e-200 over the floor 1e-300: ratio sqrt(1e100) = 1e50, 1000 dB.
    const ThdnFigure f = distortion_thdn(ref, dut, 1, 0);
    EXPECT_NEAR(f.ratio, 1e50, 1e36);
    EXPECT_NEAR(f.db, 1000.0, 1e-9);
}

TEST(DistortionThdn, AllSilentFrameIsZeroNotNan) {
    const std::vector<double> silent(16, 0.0);
    const ThdnFigure f = distortion_thdn(silent, silent, 0, 20);
    EXPECT_EQ(f.ratio, 0.0);
    EXPECT_EQ(f.db, -200.0);
}

} // namespace
