// loudness_measure on edge cases: digital silence, files too short for momentary or short-term
// blocks, a single full-scale sample, DC and full-scale square waves, one-frame and empty files,
// the most negative integer code, mono, extra channels and a measured stretch inside a file.
#include "dsp/loudness.h"
#include "dsp/loudness_fixture.h"
#include "dsp/true_peak.h"
#include "support/memory_wav.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

void expect_initial(const LoudnessMeasure& m) {
    EXPECT_EQ(m.integrated_lufs, -200.0);
    EXPECT_EQ(m.range_lu, 0.0);
    EXPECT_EQ(m.true_peak_dbtp, -200.0);
    EXPECT_EQ(m.sample_peak_dbfs, -200.0);
    EXPECT_EQ(m.max_momentary_lufs, -200.0);
    EXPECT_EQ(m.max_short_term_lufs, -200.0);
}

void expect_equal(const LoudnessMeasure& a, const LoudnessMeasure& b) {
    EXPECT_EQ(a.integrated_lufs, b.integrated_lufs);
    EXPECT_EQ(a.range_lu, b.range_lu);
    EXPECT_EQ(a.true_peak_dbtp, b.true_peak_dbtp);
    EXPECT_EQ(a.sample_peak_dbfs, b.sample_peak_dbfs);
    EXPECT_EQ(a.max_momentary_lufs, b.max_momentary_lufs);
    EXPECT_EQ(a.max_short_term_lufs, b.max_short_term_lufs);
}

void expect_finite(const LoudnessMeasure& m) {
    EXPECT_TRUE(std::isfinite(m.integrated_lufs));
    EXPECT_TRUE(std::isfinite(m.range_lu));
    EXPECT_TRUE(std::isfinite(m.true_peak_dbtp));
    EXPECT_TRUE(std::isfinite(m.sample_peak_dbfs));
    EXPECT_TRUE(std::isfinite(m.max_momentary_lufs));
    EXPECT_TRUE(std::isfinite(m.max_short_term_lufs));
}

std::vector<double> tone(double level_dbfs, double seconds) {
    const std::vector<ToneSegment> segments = {{level_dbfs, seconds}};
    return tone_programme(segments);
}

TEST(LoudnessMeasure, DigitalSilence) {
    expect_initial(measure_whole(identical_stereo(std::vector<double>(loudness_frames(4.0)))));
}

TEST(LoudnessMeasure, ShorterThanOneMomentaryBlock) {
    // 0.35 s: no 400 ms block, and with the 1.5 s padding still no 3 s block.
    const LoudnessMeasure m = measure_whole(identical_stereo(tone(-20.0, 0.35)));
    EXPECT_EQ(m.integrated_lufs, -200.0);
    EXPECT_EQ(m.max_momentary_lufs, -200.0);
    EXPECT_EQ(m.max_short_term_lufs, -200.0);
    EXPECT_EQ(m.range_lu, 0.0);
    EXPECT_NEAR(m.sample_peak_dbfs, -20.0, 1e-3);
}

TEST(LoudnessMeasure, ShorterThanOneShortTermBlockButPaddedRangeFindsBlocks) {
    // 2 s of tone: no 3 s block for the maximum, but the padded 3.5 s hold six short-term blocks
    // covering 2, 1.91, ..., 1.55 s of the tone; their levels spread by about 0.93 LU.
    const LoudnessMeasure m = measure_whole(identical_stereo(tone(-23.0, 2.0)));
    EXPECT_EQ(m.max_short_term_lufs, -200.0);
    EXPECT_NEAR(m.max_momentary_lufs, -23.0, 0.1);
    EXPECT_NEAR(m.integrated_lufs, -23.0, 0.1);
    EXPECT_NEAR(m.range_lu, 0.934, 0.01);
}

TEST(LoudnessMeasure, OneFullScaleSampleInSilence) {
    std::vector<double> x(loudness_frames(1.0), 0.0);
    x[1000] = 1.0;
    const LoudnessMeasure m = measure_whole(identical_stereo(x));
    EXPECT_EQ(m.sample_peak_dbfs, 0.0);
    // The sample itself is no true-peak candidate; its largest interpolated neighbour is the
    // largest tap.
    EXPECT_EQ(m.true_peak_dbtp, 20.0 * std::log10(true_peak_filter()[23]));
    expect_finite(m);
}

TEST(LoudnessMeasure, DcOnlyIsFinite) {
    const LoudnessMeasure m =
        measure_whole(identical_stereo(std::vector<double>(loudness_frames(5.0), 0.5)));
    expect_finite(m);
    EXPECT_EQ(m.sample_peak_dbfs, 20.0 * std::log10(0.5));
    // The K-weighting removes the constant: only the onset registers, well under the tone level.
    EXPECT_LT(m.max_short_term_lufs, -20.0);
    // The interpolation rings at the step from the silence before the file: the peak is 0.5 times
    // the largest partial sum of one phase's taps.
    const TruePeakFilter h = true_peak_filter();
    double largest = 0.0;
    for (std::size_t p = 0; p < 4; ++p) {
        double partial = 0.0;
        for (std::size_t j = 0; j < 12; ++j) {
            partial += h[p + 4 * j];
            largest = std::max(largest, std::abs(partial));
        }
    }
    EXPECT_EQ(m.true_peak_dbtp, 20.0 * std::log10(0.5 * largest));
}

TEST(LoudnessMeasure, FullScaleSquareWaveIsFinite) {
    // 1 kHz square wave between -1 and +1: 24 samples up, 24 down.
    std::vector<double> x(loudness_frames(4.0));
    for (std::size_t n = 0; n < x.size(); ++n)
        x[n] = (n / 24) % 2 == 0 ? 1.0 : -1.0;
    const LoudnessMeasure m = measure_whole(identical_stereo(x));
    expect_finite(m);
    EXPECT_EQ(m.sample_peak_dbfs, 0.0);
    // The interpolation rings over each edge.
    EXPECT_GT(m.true_peak_dbtp, 0.0);
    EXPECT_GT(m.integrated_lufs, 0.0);
    // Steady for 4 s, then the 1.5 s of padding: the last short-term blocks cover less and less
    // of the signal, down to 1.57 of 3 s, and the quantiles put the range near 2.19 LU.
    EXPECT_NEAR(m.range_lu, 2.19, 0.01);
}

TEST(LoudnessMeasure, MostNegativeIntegerCode) {
    WavFile file = memory_wav({std::vector<double>(48000, -32768.0 / 32767.0)}, 48000);
    file.format = kWavFormatInt16;
    const LoudnessMeasure m = measure_whole(file);
    EXPECT_EQ(m.sample_peak_dbfs, 20.0 * std::log10(32768.0 / 32767.0));
    expect_finite(m);
}

TEST(LoudnessMeasure, OneFrameFile) {
    const LoudnessMeasure m = measure_whole(identical_stereo({0.5}));
    EXPECT_EQ(m.integrated_lufs, -200.0);
    EXPECT_EQ(m.max_momentary_lufs, -200.0);
    EXPECT_EQ(m.max_short_term_lufs, -200.0);
    EXPECT_EQ(m.range_lu, 0.0);
    EXPECT_EQ(m.sample_peak_dbfs, 20.0 * std::log10(0.5));
    const TruePeakFilter h = true_peak_filter();
    const double first_taps =
        std::max({std::abs(h[0]), std::abs(h[1]), std::abs(h[2]), std::abs(h[3])});
    EXPECT_EQ(m.true_peak_dbtp, 20.0 * std::log10(0.5 * first_taps));
}

TEST(LoudnessMeasure, NothingToMeasureKeepsInitialValues) {
    const WavFile file = identical_stereo(tone(-20.0, 1.0));
    expect_initial(loudness_measure(file, 2, 0, 0, kLoudnessRate));
    expect_initial(loudness_measure(file, 0, 0, file.frames, kLoudnessRate));
    // A start past the end leaves nothing.
    expect_initial(loudness_measure(file, 2, file.frames, 100, kLoudnessRate));
    expect_initial(measure_whole(memory_wav({}, 48000)));
}

TEST(LoudnessMeasure, MonoIsOneChannel) {
    const std::vector<double> x = tone(-23.0, 5.0);
    const LoudnessMeasure mono = measure_whole(memory_wav({x}, 48000));
    const LoudnessMeasure stereo = measure_whole(identical_stereo(x));
    // One channel carries half the power of two identical ones.
    EXPECT_NEAR(mono.integrated_lufs, stereo.integrated_lufs - 10.0 * std::log10(2.0), 1e-9);
    EXPECT_NEAR(mono.max_momentary_lufs, stereo.max_momentary_lufs - 10.0 * std::log10(2.0), 1e-9);
    EXPECT_EQ(mono.true_peak_dbtp, stereo.true_peak_dbtp);
    EXPECT_EQ(mono.sample_peak_dbfs, stereo.sample_peak_dbfs);
}

TEST(LoudnessMeasure, OnlyTheFirstTwoChannelsCount) {
    const std::vector<double> x = tone(-23.0, 4.0);
    const std::vector<double> loud = tone(-3.0, 4.0);
    const LoudnessMeasure two = measure_whole(identical_stereo(x));
    const LoudnessMeasure three = loudness_measure(memory_wav({x, x, loud}, 48000), 3, 0,
                                                   loudness_frames(4.0), kLoudnessRate);
    expect_equal(three, two);
}

TEST(LoudnessMeasure, StretchInsideAFileEqualsTheStretchAlone) {
    const std::vector<ToneSegment> segments = {{-30.0, 1.0}, {-20.0, 3.5}, {-40.0, 1.0}};
    const std::vector<double> x = tone_programme(segments);
    const std::size_t start = loudness_frames(0.7);
    const std::size_t length = loudness_frames(4.2);
    const std::vector<double> part(x.begin() + start, x.begin() + start + length);
    const LoudnessMeasure inside =
        loudness_measure(identical_stereo(x), 2, start, length, kLoudnessRate);
    expect_equal(inside, measure_whole(identical_stereo(part)));
    // A length running past the end is cut to the frames present.
    const LoudnessMeasure cut =
        loudness_measure(identical_stereo(x), 2, start, x.size(), kLoudnessRate);
    const std::vector<double> rest(x.begin() + start, x.end());
    expect_equal(cut, measure_whole(identical_stereo(rest)));
}

} // namespace
