// The sync tone: piece lengths at several rates, the phase, fade and gap values at exact indexes,
// the whole tone against a sample-by-sample rebuild, and short and long output buffers.
#include "align/sync_tone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

namespace {

struct Band {
    double low;
    double high;
};
constexpr Band kBands[4] = {{1100, 7800}, {900, 7000}, {1300, 8200}, {1000, 7500}};

// Accumulated phase of every sample of one chirp of `length` samples.
std::vector<double> chirp_phases(Band band, std::size_t length, double rate) {
    std::vector<double> phases(length);
    const std::size_t h = length / 2;
    double phase = 0.0;
    for (std::size_t i = 0; i < length; ++i) {
        double f = 0.0;
        if (i < h) {
            f = band.high + (double(i) / double(h)) * (band.low - band.high);
        } else {
            f = band.low + (double(i - h) / double(length - h)) * (band.high - band.low);
        }
        phase = phase + 2.0 * std::numbers::pi * f / rate;
        phases[i] = phase;
    }
    return phases;
}

double sample(const std::vector<double>& phases, std::size_t i, double envelope) {
    return std::sin(phases[i]) * 0.1 * envelope;
}

// The whole tone rebuilt chirp by chirp with explicit fades.
std::vector<double> rebuilt_tone(std::uint32_t rate, std::size_t chirp, std::size_t gap,
                                 std::size_t fade) {
    std::vector<double> out;
    for (int c = 0; c < 4; ++c) {
        const std::vector<double> phases = chirp_phases(kBands[c], chirp, rate);
        for (std::size_t i = 0; i < chirp; ++i) {
            double envelope = 1.0;
            if (i < fade) envelope = double(i) / double(fade);
            if (i >= chirp - fade) envelope = double(chirp - 1 - i) / double(fade);
            out.push_back(sample(phases, i, envelope));
        }
        if (c < 3) out.insert(out.end(), gap, 0.0);
    }
    return out;
}

std::vector<double> generated(std::uint32_t rate) {
    std::vector<double> tone(sync_template_length(rate));
    sync_template_generate(tone, rate);
    return tone;
}

TEST(SyncTone, LengthsAtCommonRates) {
    EXPECT_EQ(sync_template_length(48000), 36000u);
    EXPECT_EQ(sync_template_length(44100), 33075u); // 4 * 6615 + 3 * 2205
    EXPECT_EQ(sync_template_length(96000), 72000u);
    const SyncToneLayout layout = sync_tone_layout(44100);
    EXPECT_EQ(layout.chirp, 6615u);
    EXPECT_EQ(layout.gap, 2205u);
    // 0.15 * 22050 = 3307.5 and 0.05 * 22050 = 1102.5: halves round away from zero.
    EXPECT_EQ(sync_tone_layout(22050).chirp, 3308u);
    EXPECT_EQ(sync_tone_layout(22050).gap, 1103u);
    EXPECT_EQ(sync_template_length(0), 0u);
}

TEST(SyncTone, FadeValuesAtExactIndexesAt48k) {
    const std::vector<double> tone = generated(48000);
    const std::vector<double> phases = chirp_phases(kBands[0], 7200, 48000);
    // Fade length round(0.003 * 48000) = 144 samples at each end of each 7200-sample chirp.
    EXPECT_EQ(tone[0], 0.0);
    EXPECT_EQ(tone[1], sample(phases, 1, 1.0 / 144.0));
    EXPECT_EQ(tone[72], sample(phases, 72, 0.5));
    EXPECT_EQ(tone[143], sample(phases, 143, 143.0 / 144.0));
    EXPECT_EQ(tone[144], sample(phases, 144, 1.0));
    EXPECT_EQ(tone[3600], sample(phases, 3600, 1.0));
    EXPECT_EQ(tone[7055], sample(phases, 7055, 1.0));
    EXPECT_EQ(tone[7056], sample(phases, 7056, 143.0 / 144.0));
    EXPECT_EQ(tone[7127], sample(phases, 7127, 0.5));
    EXPECT_EQ(tone[7199], 0.0);
    // The first sample already carries one phase step at the starting (high) frequency.
    EXPECT_EQ(phases[0], 2.0 * std::numbers::pi * 7800.0 / 48000.0);
    EXPECT_NEAR(std::fabs(tone[200]), 0.1 * std::fabs(std::sin(phases[200])), 1e-15);
}

TEST(SyncTone, GapsAreZeroAndNoGapFollowsTheLastChirp) {
    const std::vector<double> tone = generated(48000);
    for (std::size_t start : {std::size_t{7200}, std::size_t{16800}, std::size_t{26400}}) {
        for (std::size_t i = start; i < start + 2400; ++i) {
            ASSERT_EQ(tone[i], 0.0) << i;
        }
        EXPECT_NE(tone[start - 2], 0.0);
        EXPECT_NE(tone[start + 2400 + 1], 0.0);
    }
    // Chirp 4 runs from 28800 to the very end.
    EXPECT_NE(tone[35998], 0.0);
    EXPECT_EQ(tone[35999], 0.0);
}

TEST(SyncTone, WholeToneMatchesRebuildAt48kAnd44k) {
    EXPECT_EQ(generated(48000), rebuilt_tone(48000, 7200, 2400, 144));
    EXPECT_EQ(generated(44100), rebuilt_tone(44100, 6615, 2205, 132));
}

TEST(SyncTone, PeakLevelIsMinus20dB) {
    double peak = 0.0;
    for (double v : generated(48000)) {
        peak = std::fmax(peak, std::fabs(v));
    }
    EXPECT_LE(peak, 0.1);
    EXPECT_GT(peak, 0.0999);
}

TEST(SyncTone, SingleChirpEqualsItsStretchOfTheTone) {
    const std::vector<double> tone = generated(44100);
    for (int c = 0; c < 4; ++c) {
        std::vector<double> chirp(6615);
        sync_chirp_generate(chirp, c, 44100);
        const std::size_t offset = std::size_t(c) * (6615 + 2205);
        EXPECT_EQ(chirp, std::vector<double>(tone.begin() + offset, tone.begin() + offset + 6615))
            << c;
    }
}

TEST(SyncTone, ShortBufferGetsPrefixAndLongBufferZeroTail) {
    const std::vector<double> tone = generated(48000);
    std::vector<double> shorter(10000, 7.0);
    sync_template_generate(shorter, 48000);
    EXPECT_EQ(shorter, std::vector<double>(tone.begin(), tone.begin() + 10000));
    std::vector<double> longer(36100, 7.0);
    sync_template_generate(longer, 48000);
    EXPECT_EQ(std::vector<double>(longer.begin(), longer.begin() + 36000), tone);
    for (std::size_t i = 36000; i < longer.size(); ++i) {
        ASSERT_EQ(longer[i], 0.0);
    }
}

} // namespace
