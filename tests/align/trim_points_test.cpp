// The trim search window (rounding, the cap at half the file, settings that ask for nothing) and
// the location of the clean signal: both occurrences, the failure lines in their order of tests,
// the trailing search left out after a failed leading one, and overlapping occurrences.
#include "align/trim_points.h"
#include "support/memory_wav.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace {

std::vector<double> tone(std::uint32_t rate) {
    std::vector<double> out(sync_template_length(rate));
    sync_template_generate(out, rate);
    return out;
}

// Silence of `frames` frames with the tone added at each offset, scaled by `gain`.
WavFile with_tones(std::size_t frames, std::initializer_list<std::size_t> offsets,
                   double gain = 1.0) {
    std::vector<double> samples(frames, 0.0);
    const std::vector<double> t = tone(48000);
    for (const std::size_t offset : offsets) {
        for (std::size_t i = 0; i < t.size(); ++i) {
            samples[offset + i] += gain * t[i];
        }
    }
    return memory_wav({samples}, 48000);
}

TEST(SyncSearchWindow, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(sync_search_window(1.25, 2, 100).requested, 3u);
    EXPECT_EQ(sync_search_window(1.0 / 3.0, 3, 100).requested, 1u);
    EXPECT_EQ(sync_search_window(45.0, 48000, 10000000).frames, 2160000u);
    EXPECT_FALSE(sync_search_window(45.0, 48000, 10000000).capped);
}

TEST(SyncSearchWindow, IsCappedAtTheIntegerHalfOfTheFile) {
    const SyncSearchWindow window = sync_search_window(45.0, 48000, 2880001);
    EXPECT_EQ(window.requested, 2160000u);
    EXPECT_EQ(window.frames, 1440000u);
    EXPECT_TRUE(window.capped);
    EXPECT_FALSE(sync_search_window(1.0, 100, 200).capped); // exactly half is not over it
}

TEST(SyncSearchWindow, NegativeOrHugeSettings) {
    EXPECT_EQ(sync_search_window(-3.0, 48000, 1000).requested, 0u);
    EXPECT_EQ(sync_search_window(-3.0, 48000, 1000).frames, 0u);
    const SyncSearchWindow huge = sync_search_window(1e300, 48000, 1000);
    EXPECT_EQ(huge.requested, std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(huge.frames, 500u);
}

TEST(TrimPoints, CleanSignalLiesBetweenTheTones) {
    const WavFile wav = with_tones(300000, {12345, 250000});
    TrimPoints points;
    std::string error;
    ASSERT_TRUE(locate_trim_points(wav, 150000, 6.0, points, error)) << error;
    EXPECT_EQ(points.leading.position, 12345u);
    EXPECT_EQ(points.trailing.position, 250000u);
    EXPECT_EQ(points.sync_point, 12345u + 36000u);
    EXPECT_EQ(points.trim_point, 250000u);
    EXPECT_EQ(points.leading.rep_count, 4);
    EXPECT_EQ(error, "");
}

TEST(TrimPoints, RegionShorterThanTheToneIsNotDetected) {
    const WavFile wav = with_tones(100000, {0});
    TrimPoints points;
    std::string error;
    EXPECT_FALSE(locate_trim_points(wav, 35999, 6.0, points, error));
    EXPECT_EQ(error, "error: sync tone not detected (leading)\n");
    EXPECT_EQ(points.trailing.channel, 0); // never searched
}

TEST(TrimPoints, SilentTrailingWindowHasNoPsr) {
    const WavFile wav = with_tones(200000, {1000});
    TrimPoints points;
    std::string error;
    EXPECT_FALSE(locate_trim_points(wav, 100000, 6.0, points, error));
    EXPECT_EQ(error, "error: PSR below threshold (trailing): got 0.00, need 6.00\n");
}

TEST(TrimPoints, InvertedToneDoesNotResembleTheTone) {
    const WavFile wav = with_tones(200000, {1000}, -1.0);
    TrimPoints points;
    std::string error;
    EXPECT_FALSE(locate_trim_points(wav, 100000, 6.0, points, error));
    ASSERT_GE(points.leading.psr, 6.0);
    EXPECT_EQ(error, "error: sync tone not detected (leading): the strongest match does not "
                     "resemble the sync tone (similarity 0.00, need 0.12)\n");
}

TEST(TrimPoints, PsrThresholdIsTestedBeforeSimilarity) {
    const WavFile wav = with_tones(200000, {1000}, -1.0);
    TrimPoints points;
    std::string error;
    EXPECT_FALSE(locate_trim_points(wav, 100000, 1e9, points, error));
    char expected[128];
    std::snprintf(expected, sizeof expected,
                  "error: PSR below threshold (leading): got %.2f, need 1000000000.00\n",
                  points.leading.psr);
    EXPECT_EQ(error, expected);
}

TEST(TrimPoints, WindowsCoveringOneToneFindItTwiceAndRefuseTheCut) {
    const WavFile wav = with_tones(120000, {40000});
    TrimPoints points;
    std::string error;
    EXPECT_FALSE(locate_trim_points(wav, 120000, 6.0, points, error));
    EXPECT_EQ(error, "error: trailing occurrence (sample 40000) is not after the leading "
                     "occurrence ends (sample 76000) -- check the input file\n");
}

} // namespace
