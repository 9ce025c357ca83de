// The loudness measure and its parts against the plain computation
// (support/loudness_reference.h), with exact equality: the K-weighted squares of one and two
// interleaved channels filtered whole and in pieces, the true peak across chunk boundaries and
// strides, the block scans of one and two channels with blocks of unequal lengths and counts that
// do not fill the last group, the short-term blocks of a signal as the first blocks of the padded
// scan, and whole measures of mono, stereo and wider files at several rates and lengths, from a
// single frame to signals many times longer than the window of squares the measure keeps.
#include "dsp/k_weighting.h"
#include "dsp/loudness.h"
#include "dsp/loudness_blocks.h"
#include "dsp/true_peak.h"
#include "support/loudness_reference.h"
#include "support/memory_wav.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr LoudnessBlockShape kMomentary{0.4, 0.75};
constexpr LoudnessBlockShape kShortTerm{3.0, 0.97};

// Music-like material at `rate`: two tones under a phrase envelope with a silent gap, a little
// noise, and a few full-scale samples.
std::vector<double> music(std::uint64_t seed, std::size_t frames, double rate) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> x(frames);
    const double two_pi = 2.0 * std::numbers::pi;
    for (std::size_t n = 0; n < frames; ++n) {
        const double t = static_cast<double>(n) / rate;
        const double phrase = std::fmod(t, 2.3) < 0.3 ? 0.0 : 0.3 + 0.25 * std::sin(0.9 * t);
        x[n] = phrase * (std::sin(two_pi * 220.0 * t) + 0.4 * std::sin(two_pi * 1310.0 * t + 1.0)) +
               0.02 * phrase * signal_next_uniform(rng, -1.0, 1.0);
        if (n % 20011 == 7) x[n] = n % 2 == 0 ? 1.0 : -1.0;
    }
    return x;
}

void expect_same_measure(const WavFile& file, unsigned channels, std::size_t start,
                         std::size_t length, double rate) {
    const LoudnessMeasure fast = loudness_measure(file, channels, start, length, rate);
    const ReferenceLoudness plain = reference_loudness(file, channels, start, length, rate);
    EXPECT_EQ(fast.integrated_lufs, plain.integrated_lufs);
    EXPECT_EQ(fast.range_lu, plain.range_lu);
    EXPECT_EQ(fast.true_peak_dbtp, plain.true_peak_dbtp);
    EXPECT_EQ(fast.sample_peak_dbfs, plain.sample_peak_dbfs);
    EXPECT_EQ(fast.max_momentary_lufs, plain.max_momentary_lufs);
    EXPECT_EQ(fast.max_short_term_lufs, plain.max_short_term_lufs);
}

// The squares of K-weighted channels as the plain filter gives them, frame by frame.
std::vector<double> plain_squares(const std::vector<std::vector<double>>& channels, double rate) {
    std::vector<std::vector<double>> weighted;
    for (const std::vector<double>& x : channels)
        weighted.push_back(reference_k_weighted(x, rate));
    std::vector<double> squares;
    for (std::size_t n = 0; n < channels[0].size(); ++n) {
        for (const std::vector<double>& w : weighted)
            squares.push_back(w[n] * w[n]);
    }
    return squares;
}

// The squares of `frames` frames of interleaved input, filtered in pieces of the given lengths
// (the last piece takes what is left), each piece going on from the state the one before left.
std::vector<double> squares_in_pieces(const KWeighting& k, const double* first, std::size_t frames,
                                      std::size_t stride, std::size_t channels,
                                      const std::vector<std::size_t>& pieces) {
    std::vector<double> out(frames * channels);
    KWeightingState state;
    std::size_t done = 0;
    for (std::size_t i = 0; i <= pieces.size() && done < frames; ++i) {
        const std::size_t n =
            i < pieces.size() ? std::min(pieces[i], frames - done) : frames - done;
        k_weighting_squares(k, {first + done * stride, n, stride, channels}, state,
                            out.data() + done * channels);
        done += n;
    }
    return out;
}

TEST(LoudnessIdentity, WeightedSquaresOfOneAndTwoChannelsInPieces) {
    const std::vector<double> a = music(1, 30000, 44100.0);
    const std::vector<double> b = signal_uniform(2, 30000, -1.0, 1.0);
    const std::vector<double> c = signal_uniform(3, 30000, -0.1, 0.1);
    const KWeighting k = k_weighting_design(44100.0);
    const std::vector<double> frames = signal_interleave(std::vector{a, b, c});
    const std::vector<double> one_channel = plain_squares({a}, 44100.0);
    const std::vector<double> two_channels = plain_squares({a, b}, 44100.0);
    for (const std::vector<std::size_t>& pieces :
         {std::vector<std::size_t>{}, {1, 4095, 4096}, {0, 7, 29000}, {12345}}) {
        EXPECT_EQ(squares_in_pieces(k, a.data(), a.size(), 1, 1, pieces), one_channel);
        EXPECT_EQ(squares_in_pieces(k, frames.data(), a.size(), 3, 2, pieces), two_channels);
        EXPECT_EQ(squares_in_pieces(k, frames.data() + 2, a.size(), 3, 1, pieces),
                  plain_squares({c}, 44100.0));
    }
}

TEST(LoudnessIdentity, TruePeakAcrossChunksAndStrides) {
    const TruePeakFilter h = true_peak_filter();
    for (const std::size_t n :
         {0u, 1u, 3u, 4u, 5u, 11u, 12u, 13u, 2047u, 2048u, 2049u, 2059u, 4100u, 9000u}) {
        SCOPED_TRACE(n);
        const std::vector<double> x = signal_uniform(10 + n, n, -1.0, 1.0);
        EXPECT_EQ(channel_true_peak(x.data(), x.size(), 1, h), reference_true_peak(x));
        const std::vector<double> y = signal_uniform(20 + n, n, -1e3, 1e3);
        const std::vector<double> frames = signal_interleave(std::vector{x, y, x});
        EXPECT_EQ(channel_true_peak(frames.data() + 1, n, 3, h), reference_true_peak(y));
        double peak = 0.0;
        for (const double v : y)
            peak = std::max(peak, std::fabs(v));
        EXPECT_EQ(channel_sample_peak(frames.data() + 1, n, 3), peak);
    }
}

// Compares the fast scan of the channels' squares with the plain scan of the weighted channels.
void expect_same_blocks(const std::vector<std::vector<double>>& weighted, double rate,
                        LoudnessBlockShape shape) {
    const std::size_t length = weighted[0].size();
    std::vector<double> squares;
    for (std::size_t n = 0; n < length; ++n) {
        for (const std::vector<double>& w : weighted)
            squares.push_back(w[n] * w[n]);
    }
    const LoudnessBlockList fast =
        loudness_blocks({squares.data(), weighted.size(), length}, rate, shape, true);
    const ReferenceBlocks plain =
        reference_blocks(weighted, length, rate, shape.block_seconds, shape.overlap);
    ASSERT_EQ(fast.count, plain.loudness.size());
    for (std::size_t i = 0; i < fast.count; ++i) {
        EXPECT_EQ(fast.loudness[i], plain.loudness[i]) << "block " << i;
        for (std::size_t k = 0; k < weighted.size(); ++k) {
            EXPECT_EQ(fast.mean_squares[i * weighted.size() + k],
                      plain.mean_squares[i * weighted.size() + k])
                << "block " << i << ", channel " << k;
        }
    }
}

TEST(LoudnessIdentity, BlockScansOfOneAndTwoChannels) {
    const std::vector<double> a = reference_k_weighted(music(4, 200000, 22050.0), 22050.0);
    const std::vector<double> b = signal_uniform(5, 200000, -0.3, 0.3);
    for (const double rate : {22050.0, 48000.0}) {
        expect_same_blocks({a}, rate, kMomentary);
        expect_same_blocks({a, b}, rate, kMomentary);
        expect_same_blocks({a}, rate, kShortTerm);
        expect_same_blocks({a, b}, rate, kShortTerm);
    }
    // Blocks of 3 or 4 samples, 113 of them: groups of eight and a last group of one.
    expect_same_blocks({std::vector<double>(a.begin(), a.begin() + 200),
                        std::vector<double>(b.begin(), b.begin() + 200)},
                       10.0, {0.35, 0.5});
}

TEST(LoudnessIdentity, ShortTermBlocksOfTheSignalLeadThePaddedScan) {
    const std::vector<double> a = music(6, 300000, 48000.0);
    for (const double rate : {48000.0, 44100.0, 22050.0, 8000.0}) {
        for (const std::size_t length : {150000u, 161234u, 200001u}) {
            std::vector<double> padded(a.begin(), a.begin() + length);
            const std::size_t kept = loudness_kept_blocks(length, rate, kShortTerm);
            padded.resize(length + static_cast<std::size_t>(std::round(1.5 * rate)), 0.0);
            std::vector<double> squares(padded.size());
            for (std::size_t n = 0; n < padded.size(); ++n)
                squares[n] = padded[n] * padded[n];
            const LoudnessBlockList whole =
                loudness_blocks({squares.data(), 1, padded.size()}, rate, kShortTerm, false);
            const LoudnessBlockList part =
                loudness_blocks({squares.data(), 1, length}, rate, kShortTerm, false);
            ASSERT_EQ(part.count, kept);
            ASSERT_GE(whole.count, kept);
            for (std::size_t i = 0; i < kept; ++i)
                EXPECT_EQ(whole.loudness[i], part.loudness[i]) << rate << ", block " << i;
        }
    }
}

TEST(LoudnessIdentity, StereoMeasuresAtSeveralLengths) {
    const std::vector<double> a = music(7, 500000, 48000.0);
    const std::vector<double> b = music(8, 500000, 48000.0);
    const WavFile file = memory_wav({a, b}, 48000);
    for (const std::size_t length : {1u, 11u, 12u, 4799u, 19199u, 19200u, 19201u, 130000u, 144000u,
                                     144001u, 218765u, 500000u}) {
        SCOPED_TRACE(length);
        expect_same_measure(file, 2, 0, length, 48000.0);
    }
    expect_same_measure(file, 2, 12345, 300000, 48000.0);
    expect_same_measure(file, 2, 499990, 300000, 48000.0);
}

TEST(LoudnessIdentity, MonoAndWiderFilesAtOtherRates) {
    for (const double rate : {44100.0, 22050.0, 8000.0, 96000.0}) {
        SCOPED_TRACE(rate);
        const auto frames = static_cast<std::size_t>(4.7 * rate) + 3;
        const std::vector<double> a = music(9, frames, rate);
        const std::vector<double> b = music(10, frames, rate);
        const std::vector<double> c = signal_uniform(11, frames, -0.2, 0.2);
        const auto r = static_cast<std::uint32_t>(rate);
        expect_same_measure(memory_wav({a}, r), 2, 0, frames, rate);
        expect_same_measure(memory_wav({a, b, c}, r), 2, 0, frames, rate);
        expect_same_measure(memory_wav({c, a, b}, r), 1, 7, frames, rate);
        expect_same_measure(memory_wav({a, b}, r), 1, 0, frames, rate);
    }
}

TEST(LoudnessIdentity, LongSignalsPassThroughTheSquaresWindowManyTimes) {
    // The measure keeps only a few seconds of squares at a time; these signals pass through it
    // about twenty times.
    const std::vector<double> a = music(12, 720003, 8000.0);
    const std::vector<double> b = music(13, 720003, 8000.0);
    expect_same_measure(memory_wav({a, b}, 8000), 2, 0, a.size(), 8000.0);
    expect_same_measure(memory_wav({b}, 22050), 2, 0, b.size(), 22050.0);
}

TEST(LoudnessIdentity, SilenceAndFullScaleSquareWave) {
    std::vector<double> x(200000, 0.0);
    expect_same_measure(memory_wav({x, x}, 48000), 2, 0, x.size(), 48000.0);
    for (std::size_t n = 0; n < x.size(); ++n)
        x[n] = (n / 24) % 2 == 0 ? 1.0 : -1.0;
    expect_same_measure(memory_wav({x, x}, 48000), 2, 0, x.size(), 48000.0);
}

} // namespace
