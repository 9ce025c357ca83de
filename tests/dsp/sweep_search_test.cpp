// The expected tone of a sweep frame (frame-centre position, log and linear shapes, the linear
// fallback) and the peak search range around it (cents window, at least one bin each side,
// clamps at both ends, unusual frequencies).
#include "dsp/sweep_search.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

// 48 kHz with 4096-point frames: bins 11.71875 Hz wide, 2048 of them.
constexpr double kRate = 48000.0;
constexpr std::size_t kN = 4096;
constexpr std::size_t kBins = 2048;
constexpr double kWidth = 11.71875;

BinRange range_at(double freq_hz, double cents) {
    return sweep_search_range(freq_hz, kRate, kN, kBins, cents);
}

void expect_range(BinRange got, std::size_t lo, std::size_t hi) {
    EXPECT_EQ(got.lo, lo);
    EXPECT_EQ(got.hi, hi);
}

SweepSettings freq_sweep(SweepShape shape, double start_hz, double end_hz) {
    SweepSettings sweep;
    sweep.windowing = true;
    sweep.shape = shape;
    sweep.start_hz = start_hz;
    sweep.end_hz = end_hz;
    return sweep;
}

TEST(SweepSearchRange, ZeroCentsSearchesTheCentreAndOneBinEachSide) {
    expect_range(range_at(1000.0, 0.0), 84, 86);        // 85.33 bins: centre 85
    expect_range(range_at(85.0 * kWidth, 0.0), 84, 86); // exactly on bin 85
    expect_range(range_at(85.5 * kWidth, 0.0), 85, 87); // a half rounds up to 86
    expect_range(range_at(-85.5 * kWidth, 0.0), 0, 0);  // a negative tone clamps to bin 0
}

TEST(SweepSearchRange, CentsWindowWidensTheRange) {
    // 1000 Hz / 2^(50/1200) = 971.5 Hz (bin 82.9), 1000 Hz * 2^(50/1200) = 1029.3 Hz (bin 87.8).
    expect_range(range_at(1000.0, 50.0), 82, 88);
}

TEST(SweepSearchRange, TwelveHundredCentsIsOneOctaveEachSide) {
    // 500 Hz is bin 42.67 and 2000 Hz bin 170.67.
    expect_range(range_at(1000.0, 1200.0), 42, 171);
    expect_range(range_at(1000.0, 2400.0), 21, 342);
}

TEST(SweepSearchRange, ToneBelowTheFirstBinsStartsAtBinZero) {
    expect_range(range_at(5.0, 50.0), 0, 1);
    expect_range(range_at(0.0, 50.0), 0, 1);
    expect_range(range_at(20.0, 1200.0), 0, 4); // 10 Hz to 40 Hz: bins 0.85 to 3.41
}

TEST(SweepSearchRange, ClampsAtTheLastBin) {
    // 23900 Hz is bin 2039.5: the upper edge (bin 2099.2) clamps to 2047.
    expect_range(range_at(23900.0, 50.0), 1981, 2047);
    // Above the Nyquist frequency even the lower edge clamps to the last bin.
    expect_range(range_at(30000.0, 50.0), 2047, 2047);
    // With a single bin everything collapses onto it.
    const BinRange one = sweep_search_range(1000.0, kRate, kN, 1, 50.0);
    expect_range(one, 0, 0);
}

TEST(SweepSearchRange, NoBinsGiveTheEmptyRangeAtZero) {
    expect_range(sweep_search_range(1000.0, kRate, kN, 0, 50.0), 0, 0);
}

TEST(SweepSearchRange, UnusableFrequenciesStayInsideTheSpectrum) {
    expect_range(range_at(std::numeric_limits<double>::quiet_NaN(), 50.0), 0, kBins - 1);
    expect_range(range_at(std::numeric_limits<double>::infinity(), 50.0), kBins - 1, kBins - 1);
    expect_range(range_at(-std::numeric_limits<double>::infinity(), 50.0), 0, 0);
    expect_range(range_at(1e300, 50.0), kBins - 1, kBins - 1);
}

TEST(SweepExpectedFrequency, FirstFrameOfALogSweepUsesTheFrameCentre) {
    // p = (0 + 4096 / 2) / 409600 = 0.005, not 0.
    const double f = sweep_expected_frequency(
        SpectralMode::freq_sweep, freq_sweep(SweepShape::log, 20.0, 20000.0), 0, kN, 409600);
    EXPECT_DOUBLE_EQ(f, 20.0 * std::pow(1000.0, 0.005));
    EXPECT_NEAR(f, 20.7028, 1e-4);
}

TEST(SweepExpectedFrequency, LogAndLinearShapesAtTheMiddle) {
    // Frame 2048 of 4096 frames centred in an 8192-frame reference: p = 0.5.
    EXPECT_EQ(sweep_expected_frequency(SpectralMode::freq_sweep,
                                       freq_sweep(SweepShape::linear, 100.0, 1100.0), 2048, kN,
                                       8192),
              600.0);
    EXPECT_NEAR(sweep_expected_frequency(SpectralMode::freq_sweep,
                                         freq_sweep(SweepShape::log, 100.0, 10000.0), 2048, kN,
                                         8192),
                1000.0, 1e-9);
}

TEST(SweepExpectedFrequency, LogShapeWithoutAPositiveStartFallsBackToLinear) {
    // p = 2048 / 8192 = 0.25.
    EXPECT_EQ(sweep_expected_frequency(SpectralMode::freq_sweep,
                                       freq_sweep(SweepShape::log, 0.0, 1000.0), 0, kN, 8192),
              250.0);
    EXPECT_EQ(sweep_expected_frequency(SpectralMode::freq_sweep,
                                       freq_sweep(SweepShape::log, -100.0, 900.0), 0, kN, 8192),
              150.0);
}

TEST(SweepExpectedFrequency, PositionIsClampedToTheReference) {
    // p = (8192 + 2048) / 8192 = 1.25, clamped to 1: the end frequency.
    EXPECT_EQ(sweep_expected_frequency(SpectralMode::freq_sweep,
                                       freq_sweep(SweepShape::linear, 100.0, 1100.0), 8192, kN,
                                       8192),
              1100.0);
    EXPECT_NEAR(sweep_expected_frequency(SpectralMode::freq_sweep,
                                         freq_sweep(SweepShape::log, 100.0, 10000.0), 8192, kN,
                                         8192),
                10000.0, 1e-9);
    // An empty reference: x / 0 counts as the end, 0 / 0 as the start.
    const SweepSettings linear = freq_sweep(SweepShape::linear, 100.0, 1100.0);
    EXPECT_EQ(sweep_expected_frequency(SpectralMode::freq_sweep, linear, 0, kN, 0), 1100.0);
    EXPECT_EQ(sweep_expected_frequency(SpectralMode::freq_sweep, linear, 0, 0, 0), 100.0);
}

TEST(SweepExpectedFrequency, AmplitudeSweepHoldsItsTestFrequencyAndMultitoneHasNone) {
    SweepSettings sweep = freq_sweep(SweepShape::log, 100.0, 10000.0);
    sweep.test_freq_hz = 997.0;
    EXPECT_EQ(sweep_expected_frequency(SpectralMode::amp_sweep, sweep, 0, kN, 8192), 997.0);
    EXPECT_EQ(sweep_expected_frequency(SpectralMode::amp_sweep, sweep, 6000, kN, 8192), 997.0);
    EXPECT_EQ(sweep_expected_frequency(SpectralMode::multitone, sweep, 2048, kN, 8192), 0.0);
}

} // namespace
