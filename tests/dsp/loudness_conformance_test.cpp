// The published EBU conformance cases for loudness meters (Tech 3341 loudness and true peak,
// Tech 3342 loudness range), each signal generated from its formula at 48 kHz as a stereo file
// with identical channels and measured once.
#include "dsp/loudness.h"
#include "dsp/loudness_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

using Segments = std::vector<ToneSegment>;

LoudnessMeasure measure_programme(const Segments& segments) {
    return measure_whole(identical_stereo(tone_programme(segments)));
}

// The true-peak cases allow +0.2 / -0.4 dB around the expected level.
void expect_true_peak(const LoudnessMeasure& m, double expected) {
    EXPECT_LE(m.true_peak_dbtp, expected + 0.2);
    EXPECT_GE(m.true_peak_dbtp, expected - 0.4);
}

// A 400 ms tone starting m ms after the nearest momentary block start is covered at best to
// (400 - m) / 400 of its energy.
double momentary_grid_correction(double m_ms) {
    return 10.0 * std::log10((400.0 - m_ms) / 400.0);
}

TEST(LoudnessTech3341, Case1ToneAtMinus23) {
    const LoudnessMeasure m = measure_programme({{-23.0, 20.0}});
    EXPECT_NEAR(m.integrated_lufs, -23.0, 0.1);
    EXPECT_NEAR(m.max_momentary_lufs, -23.0, 0.1);
    EXPECT_NEAR(m.max_short_term_lufs, -23.0, 0.1);
}

TEST(LoudnessTech3341, Case2ToneAtMinus33) {
    const LoudnessMeasure m = measure_programme({{-33.0, 20.0}});
    EXPECT_NEAR(m.integrated_lufs, -33.0, 0.1);
    EXPECT_NEAR(m.max_momentary_lufs, -33.0, 0.1);
    EXPECT_NEAR(m.max_short_term_lufs, -33.0, 0.1);
}

TEST(LoudnessTech3341, Case3RelativeGate) {
    const LoudnessMeasure m = measure_programme({{-36.0, 10.0}, {-23.0, 60.0}, {-36.0, 10.0}});
    EXPECT_NEAR(m.integrated_lufs, -23.0, 0.1);
}

TEST(LoudnessTech3341, Case4AbsoluteGate) {
    const LoudnessMeasure m = measure_programme(
        {{-72.0, 10.0}, {-36.0, 10.0}, {-23.0, 60.0}, {-36.0, 10.0}, {-72.0, 10.0}});
    EXPECT_NEAR(m.integrated_lufs, -23.0, 0.1);
}

TEST(LoudnessTech3341, Case5LouderMiddle) {
    const LoudnessMeasure m = measure_programme({{-26.0, 20.0}, {-20.0, 20.1}, {-26.0, 20.0}});
    EXPECT_NEAR(m.integrated_lufs, -23.0, 0.1);
}

TEST(LoudnessTech3341, Case9AlternatingTones) {
    Segments segments;
    for (int i = 0; i < 5; ++i) {
        segments.push_back({-20.0, 1.34});
        segments.push_back({-30.0, 1.66});
    }
    const LoudnessMeasure m = measure_programme(segments);
    EXPECT_NEAR(m.max_short_term_lufs, -23.0, 0.1);
    EXPECT_NEAR(m.integrated_lufs, -23.0, 0.1);
}

TEST(LoudnessTech3341, Case10ShortTermInTwentyFiles) {
    for (int i = 0; i < 20; ++i) {
        const LoudnessMeasure m =
            measure_programme({{std::nullopt, i * 0.15}, {-23.0, 3.0}, {std::nullopt, 1.0}});
        EXPECT_NEAR(m.max_short_term_lufs, -23.0, 0.1) << "file " << i;
    }
}

TEST(LoudnessTech3341, Case11ShortTermInOneFile) {
    Segments segments;
    for (int i = 0; i < 20; ++i) {
        segments.push_back({std::nullopt, i * 0.15});
        segments.push_back({-38.0 + i, 3.0});
        segments.push_back({std::nullopt, 3.0 - i * 0.15});
    }
    const LoudnessMeasure m = measure_programme(segments);
    EXPECT_NEAR(m.max_short_term_lufs, -19.0, 0.1);
}

TEST(LoudnessTech3341, Case12MomentaryOfAlternatingTones) {
    Segments segments;
    for (int i = 0; i < 25; ++i) {
        segments.push_back({-20.0, 0.18});
        segments.push_back({-30.0, 0.22});
    }
    const LoudnessMeasure m = measure_programme(segments);
    EXPECT_NEAR(m.max_momentary_lufs, -23.0, 0.1);
}

TEST(LoudnessTech3341, Case13MomentaryInTwentyFiles) {
    for (int i = 0; i < 20; ++i) {
        // The tone starts at 20 i ms; m is its distance to the nearest multiple of 100 ms.
        const int offset_ms = (20 * i) % 100;
        const double m_ms = offset_ms <= 50 ? offset_ms : 100 - offset_ms;
        const LoudnessMeasure m =
            measure_programme({{std::nullopt, i * 0.02}, {-23.0, 0.4}, {std::nullopt, 1.0}});
        EXPECT_NEAR(m.max_momentary_lufs, -23.0 + momentary_grid_correction(m_ms), 0.1)
            << "file " << i;
    }
}

TEST(LoudnessTech3341, Case14MomentaryInOneFile) {
    Segments segments;
    for (int i = 0; i < 20; ++i) {
        segments.push_back({std::nullopt, i * 0.02});
        segments.push_back({-38.0 + i, 0.4});
        segments.push_back({std::nullopt, 0.4 - i * 0.02});
    }
    const LoudnessMeasure m = measure_programme(segments);
    // The loudest tone starts at 15.58 s, 20 ms from the block start at 15.6 s.
    EXPECT_NEAR(m.max_momentary_lufs, -19.0 + momentary_grid_correction(20.0), 0.1);
}

// The cases after 15 give only frequency, amplitude and phase; they take case 15's 3 s length and
// 10 ms fades.
TEST(LoudnessTech3341, Case15QuarterRatePhase0) {
    expect_true_peak(measure_whole(identical_stereo(faded_sine(4.0, 0.5, 0.0, 3.0, 0.01))), -6.0);
}

TEST(LoudnessTech3341, Case16QuarterRatePhase45) {
    expect_true_peak(measure_whole(identical_stereo(faded_sine(4.0, 0.5, 45.0, 3.0, 0.01))), -6.0);
}

TEST(LoudnessTech3341, Case17SixthRatePhase60) {
    expect_true_peak(measure_whole(identical_stereo(faded_sine(6.0, 0.5, 60.0, 3.0, 0.01))), -6.0);
}

TEST(LoudnessTech3341, Case18EighthRatePhase67_5) {
    expect_true_peak(measure_whole(identical_stereo(faded_sine(8.0, 0.5, 67.5, 3.0, 0.01))), -6.0);
}

TEST(LoudnessTech3341, Case19OverFullScale) {
    const LoudnessMeasure m =
        measure_whole(identical_stereo(faded_sine(4.0, 1.41, 45.0, 3.0, 0.01)));
    expect_true_peak(m, 3.0);
    // Every sample stays below full scale: 1.41 sin(45 degrees) = 0.997.
    EXPECT_LT(m.sample_peak_dbfs, 0.0);
}

TEST(LoudnessTech3342, Case1TenLuStep) {
    const LoudnessMeasure m = measure_programme({{-20.0, 20.0}, {-30.0, 20.0}});
    EXPECT_NEAR(m.range_lu, 10.0, 1.0);
}

TEST(LoudnessTech3342, Case2FiveLuStep) {
    const LoudnessMeasure m = measure_programme({{-20.0, 20.0}, {-15.0, 20.0}});
    EXPECT_NEAR(m.range_lu, 5.0, 1.0);
}

TEST(LoudnessTech3342, Case3TwentyLuStep) {
    const LoudnessMeasure m = measure_programme({{-40.0, 20.0}, {-20.0, 20.0}});
    EXPECT_NEAR(m.range_lu, 20.0, 1.0);
}

TEST(LoudnessTech3342, Case4FiveSteps) {
    const LoudnessMeasure m = measure_programme(
        {{-50.0, 20.0}, {-35.0, 20.0}, {-20.0, 20.0}, {-35.0, 20.0}, {-50.0, 20.0}});
    EXPECT_NEAR(m.range_lu, 15.0, 1.0);
}

} // namespace
