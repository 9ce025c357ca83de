// The K-weighting design against the published 48 kHz coefficients and against values worked out
// to 20 digits at 44.1 kHz, the cascade of the two stages from a zero state, and two channels of
// interleaved frames weighted side by side.
#include "dsp/k_weighting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

void expect_relative(double actual, double expected, double tolerance) {
    EXPECT_LE(std::abs(actual - expected), std::abs(expected) * tolerance)
        << "actual " << actual << ", expected " << expected;
}

void expect_biquad(const Biquad& actual, const Biquad& expected, double tolerance) {
    expect_relative(actual.b0, expected.b0, tolerance);
    expect_relative(actual.b1, expected.b1, tolerance);
    expect_relative(actual.b2, expected.b2, tolerance);
    expect_relative(actual.a1, expected.a1, tolerance);
    expect_relative(actual.a2, expected.a2, tolerance);
}

TEST(LoudnessKWeighting, PublishedCoefficientsAt48k) {
    const KWeighting k = k_weighting_design(48000.0);
    expect_biquad(k.shelf,
                  {1.53512485958697, -2.69169618940638, 1.19839281085285, -1.69065929318241,
                   0.73248077421585},
                  1e-12);
    expect_biquad(k.high_pass, {1.0, -2.0, 1.0, -1.99004745483398, 0.99007225036621}, 1e-12);
}

TEST(LoudnessKWeighting, CoefficientsAt44k1) {
    // The design formulas evaluated with 40-digit arithmetic.
    const KWeighting k = k_weighting_design(44100.0);
    expect_biquad(k.shelf,
                  {1.5308412300498356622, -2.6509799951536988466, 1.1690790799210681931,
                   -1.6636551132560205023, 0.71259542807322551101},
                  1e-14);
    expect_biquad(k.high_pass, {1.0, -2.0, 1.0, -1.989169673629795548, 0.98919903578703925258},
                  1e-14);
}

TEST(LoudnessKWeighting, HighPassNumeratorIsExact) {
    for (const double rate : {22050.0, 44100.0, 48000.0, 192000.0}) {
        const KWeighting k = k_weighting_design(rate);
        EXPECT_EQ(k.high_pass.b0, 1.0);
        EXPECT_EQ(k.high_pass.b1, -2.0);
        EXPECT_EQ(k.high_pass.b2, 1.0);
    }
}

TEST(LoudnessKWeighting, ShelfPassesDcAndLiftsNyquistByVh) {
    // At z = 1 the shelf's gain is 1; at z = -1 it is Vh, the +4 dB of the high shelf.
    const Biquad s = k_weighting_design(48000.0).shelf;
    EXPECT_NEAR((s.b0 + s.b1 + s.b2) / (1.0 + s.a1 + s.a2), 1.0, 1e-9);
    EXPECT_NEAR((s.b0 - s.b1 + s.b2) / (1.0 - s.a1 + s.a2), 1.5848647011302448, 1e-12);
}

// The squares of one channel's filtered samples.
std::vector<double> weighted_squares(const KWeighting& k, const std::vector<double>& in,
                                     std::size_t extra = 0) {
    std::vector<double> out(in.size() + extra, 7.0);
    KWeightingState state;
    k_weighting_squares(k, {in.data(), in.size(), 1, 1}, state, out.data());
    return out;
}

TEST(LoudnessKWeighting, ImpulseRunsThroughShelfThenHighPassFromZeroState) {
    const KWeighting k = k_weighting_design(48000.0);
    const std::vector<double> out = weighted_squares(k, {1.0, 0.0, 0.0}, 1);
    // The shelf's impulse response, then the high-pass stage applied to it, term by term.
    const Biquad& s = k.shelf;
    const Biquad& h = k.high_pass;
    const double s0 = s.b0;
    const double s1 = s.b1 - s.a1 * s0;
    const double s2 = s.b2 - s.a1 * s1 - s.a2 * s0;
    const double h0 = s0;
    const double h1 = s1 - 2.0 * s0 - h.a1 * h0;
    const double h2 = s2 - 2.0 * s1 + s0 - h.a1 * h1 - h.a2 * h0;
    EXPECT_DOUBLE_EQ(out[0], h0 * h0);
    EXPECT_DOUBLE_EQ(out[1], h1 * h1);
    EXPECT_DOUBLE_EQ(out[2], h2 * h2);
    // Only as many outputs as inputs are written.
    EXPECT_EQ(out[3], 7.0);
}

TEST(LoudnessKWeighting, RemovesDc) {
    const KWeighting k = k_weighting_design(48000.0);
    const std::vector<double> out = weighted_squares(k, std::vector<double>(48000, 0.5));
    // After one second the high-pass stage has let the constant die away.
    EXPECT_LT(out.back(), 1e-12);
    EXPECT_GT(out.front(), 0.25);
}

TEST(LoudnessKWeighting, TwoChannelsAreFilteredEachOnItsOwn) {
    // Frames of three channels; the first two are weighted side by side, the third is skipped.
    const KWeighting k = k_weighting_design(44100.0);
    const std::vector<double> left = {1.0, -0.5, 0.25, 0.0, 0.125};
    const std::vector<double> right = {0.0, 0.0, 1.0, 0.5, -1.0};
    std::vector<double> frames;
    for (std::size_t n = 0; n < left.size(); ++n)
        frames.insert(frames.end(), {left[n], right[n], 9.0});
    std::vector<double> both(2 * left.size());
    KWeightingState state;
    k_weighting_squares(k, {frames.data(), left.size(), 3, 2}, state, both.data());
    const std::vector<double> alone_left = weighted_squares(k, left);
    const std::vector<double> alone_right = weighted_squares(k, right);
    for (std::size_t n = 0; n < left.size(); ++n) {
        EXPECT_EQ(both[2 * n], alone_left[n]) << n;
        EXPECT_EQ(both[2 * n + 1], alone_right[n]) << n;
    }
}

} // namespace
