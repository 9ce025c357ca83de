// Behaviour of the transform itself: tiny sizes, known small transforms, the round trip and the
// power-of-two sizing helper.
#include "dsp/fft.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numbers>
#include <vector>

namespace {

TEST(NextPow2, SmallValues) {
    EXPECT_EQ(next_pow2(0), 1u);
    EXPECT_EQ(next_pow2(1), 1u);
    EXPECT_EQ(next_pow2(2), 2u);
    EXPECT_EQ(next_pow2(3), 4u);
    EXPECT_EQ(next_pow2(1000), 1024u);
    EXPECT_EQ(next_pow2(1024), 1024u);
    EXPECT_EQ(next_pow2(1025), 2048u);
}

TEST(NextPow2, LargeValues) {
    constexpr std::uint64_t kTop = std::uint64_t{1} << 63;
    EXPECT_EQ(next_pow2((std::uint64_t{1} << 40) + 1), std::uint64_t{1} << 41);
    EXPECT_EQ(next_pow2(std::uint64_t{1} << 40), std::uint64_t{1} << 40);
    EXPECT_EQ(next_pow2(kTop - 1), kTop);
    EXPECT_EQ(next_pow2(kTop), kTop);
    EXPECT_EQ(next_pow2(kTop + 1), 0u);
    EXPECT_EQ(next_pow2(std::numeric_limits<std::uint64_t>::max()), 0u);
}

TEST(FftComplex, SizesBelowTwoLeaveTheBufferUntouched) {
    const std::vector<double> original = {1.5, -2.25, 3.0, 4.0};
    for (std::size_t n : {std::size_t{0}, std::size_t{1}}) {
        for (bool inverse : {false, true}) {
            std::vector<double> data = original;
            fft_complex(data.data(), n, inverse);
            EXPECT_EQ(std::memcmp(data.data(), original.data(), sizeof(double) * original.size()),
                      0)
                << "n=" << n << " inverse=" << inverse;
        }
    }
}

TEST(FftComplex, SizesThatAreNotPowersOfTwoLeaveTheBufferUntouched) {
    const std::vector<double> original = signal_uniform(5, 2 * 12, -1.0, 1.0);
    for (std::size_t n : {std::size_t{3}, std::size_t{6}, std::size_t{12}}) {
        std::vector<double> data = original;
        fft_complex(data.data(), n, false);
        EXPECT_EQ(std::memcmp(data.data(), original.data(), sizeof(double) * original.size()), 0)
            << "n=" << n;
    }
}

std::vector<double> transform(std::vector<double> data, bool inverse) {
    fft_complex(data.data(), data.size() / 2, inverse);
    return data;
}

TEST(FftComplex, ImpulseGivesAllOnes) {
    std::vector<double> impulse(16, 0.0);
    impulse[0] = 1.0;
    const std::vector<double> spectrum = transform(impulse, false);
    for (std::size_t k = 0; k < 8; ++k) {
        EXPECT_EQ(spectrum[2 * k], 1.0) << k;
        EXPECT_EQ(spectrum[2 * k + 1], 0.0) << k;
    }
}

TEST(FftComplex, ConstantConcentratesInBinZero) {
    std::vector<double> constant(16, 0.0);
    for (std::size_t i = 0; i < 8; ++i) {
        constant[2 * i] = 1.0;
    }
    const std::vector<double> spectrum = transform(constant, false);
    EXPECT_EQ(spectrum[0], 8.0);
    EXPECT_EQ(spectrum[1], 0.0);
    for (std::size_t k = 1; k < 8; ++k) {
        EXPECT_NEAR(spectrum[2 * k], 0.0, 1e-15) << k;
        EXPECT_NEAR(spectrum[2 * k + 1], 0.0, 1e-15) << k;
    }
}

TEST(FftComplex, AlternatingSignsConcentrateInBinHalfN) {
    std::vector<double> alternating(16, 0.0);
    for (std::size_t i = 0; i < 8; ++i) {
        alternating[2 * i] = i % 2 == 0 ? 1.0 : -1.0;
    }
    const std::vector<double> spectrum = transform(alternating, false);
    for (std::size_t k = 0; k < 8; ++k) {
        EXPECT_EQ(spectrum[2 * k], k == 4 ? 8.0 : 0.0) << k;
        EXPECT_EQ(spectrum[2 * k + 1], 0.0) << k;
    }
}

// e^{+2 pi i m / 8} is bin 1 of the forward transform (negative exponent convention) and the
// inverse of a unit at bin 1 gives it back divided by n.
TEST(FftComplex, ComplexExponentialHitsItsBinAndInverseScales) {
    std::vector<double> tone(16);
    for (std::size_t m = 0; m < 8; ++m) {
        tone[2 * m] = std::cos(2.0 * std::numbers::pi * static_cast<double>(m) / 8.0);
        tone[2 * m + 1] = std::sin(2.0 * std::numbers::pi * static_cast<double>(m) / 8.0);
    }
    const std::vector<double> spectrum = transform(tone, false);
    for (std::size_t k = 0; k < 8; ++k) {
        EXPECT_NEAR(spectrum[2 * k], k == 1 ? 8.0 : 0.0, 1e-14) << k;
        EXPECT_NEAR(spectrum[2 * k + 1], 0.0, 1e-14) << k;
    }
    std::vector<double> unit(16, 0.0);
    unit[2] = 8.0;
    const std::vector<double> back = transform(unit, true);
    for (std::size_t m = 0; m < 8; ++m) {
        EXPECT_NEAR(back[2 * m], tone[2 * m], 1e-15) << m;
        EXPECT_NEAR(back[2 * m + 1], tone[2 * m + 1], 1e-15) << m;
    }
}

double round_trip_error(std::size_t n) {
    const std::vector<double> input = signal_uniform(77 + n, 2 * n, -1.0, 1.0);
    const std::vector<double> output = transform(transform(input, false), true);
    double largest_input = 0.0;
    double largest_error = 0.0;
    for (std::size_t i = 0; i < input.size(); ++i) {
        largest_input = std::max(largest_input, std::fabs(input[i]));
        largest_error = std::max(largest_error, std::fabs(output[i] - input[i]));
    }
    return largest_error / largest_input;
}

TEST(FftComplex, ForwardThenInverseReproducesTheInput) {
    for (std::size_t n : {std::size_t{2}, std::size_t{64}, std::size_t{1} << 12}) {
        EXPECT_LE(round_trip_error(n), 1e-12) << "n=" << n;
    }
}

// The twiddle advances by repeated multiplication, so its rounding drift grows with the stage
// length: the round trip of a long transform is still close, within about n rounding steps.
TEST(FftComplex, LongRoundTripStaysWithinTheTwiddleDrift) {
    const std::size_t n = std::size_t{1} << 17;
    EXPECT_LE(round_trip_error(n), static_cast<double>(n) * 1e-16);
}

} // namespace
