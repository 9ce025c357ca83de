// The sync tone search: exact positions in silence and in quiet noise at 48 and 44.1 kHz, either
// channel of a stereo file, ties between channels, buried and inverted tones, material that is not
// the tone, the per-chirp checks and the regions that cannot hold the tone.
#include "align/find_sync_tone.h"
#include "align/matched_filter.h"
#include "support/memory_wav.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

constexpr double kPsrThreshold = 6.0;
constexpr double kSimilarityThreshold = 0.12;

std::vector<double> tone(std::uint32_t rate) {
    std::vector<double> out(sync_template_length(rate));
    sync_template_generate(out, rate);
    return out;
}

// Uniform noise with the given RMS level: a half-width of rms * sqrt(3).
std::vector<double> noise(std::uint64_t seed, std::size_t frames, double rms) {
    const double half = rms * std::sqrt(3.0);
    return signal_uniform(seed, frames, -half, half);
}

// `base` with the tone (scaled by `gain`) added from frame `offset` on.
std::vector<double> with_tone(std::vector<double> base, std::uint32_t rate, std::size_t offset,
                              double gain = 1.0) {
    const std::vector<double> t = tone(rate);
    for (std::size_t i = 0; i < t.size(); ++i) {
        base[offset + i] += gain * t[i];
    }
    return base;
}

SyncDetection search_all(const WavFile& wav) {
    return find_sync_tone(wav, 0, wav.frames, kPsrThreshold, kSimilarityThreshold);
}

// A detection of the tone at `position`; quiet noise of -40 dB costs about 1.3 % of similarity.
void expect_clean_hit(const SyncDetection& hit, std::uint64_t position, std::int32_t channel,
                      double min_similarity = 0.98) {
    EXPECT_TRUE(hit.found);
    EXPECT_EQ(hit.position, position);
    EXPECT_EQ(hit.channel, channel);
    EXPECT_GE(hit.psr, kPsrThreshold);
    EXPECT_GT(hit.similarity, min_similarity);
    EXPECT_LE(hit.similarity, 1.0 + 1e-9);
    EXPECT_EQ(hit.rep_count, 4);
    for (double psr : hit.rep_psr) {
        EXPECT_GE(psr, kPsrThreshold);
    }
}

TEST(FindSyncTone, FindsToneInSilenceAtExactOffset48k) {
    const WavFile wav =
        memory_wav({with_tone(std::vector<double>(60000, 0.0), 48000, 12345)}, 48000);
    expect_clean_hit(search_all(wav), 12345, 0);
}

TEST(FindSyncTone, FindsToneInSilenceAtExactOffset44k) {
    const WavFile wav =
        memory_wav({with_tone(std::vector<double>(50000, 0.0), 44100, 7001)}, 44100);
    expect_clean_hit(search_all(wav), 7001, 0, 1.0 - 1e-9);
}

TEST(FindSyncTone, FindsToneInMinus40dBNoiseAtExactOffset) {
    const WavFile wav = memory_wav({with_tone(noise(5, 70000, 0.01), 48000, 20011)}, 48000);
    const SyncDetection hit = search_all(wav);
    expect_clean_hit(hit, 20011, 0);
    EXPECT_LT(hit.similarity, 1.0);
}

TEST(FindSyncTone, PositionCountsFromTheFileStartAndRegionIsCutAtTheEnd) {
    const WavFile wav = memory_wav({with_tone(noise(6, 80000, 0.01), 48000, 40000)}, 48000);
    const SyncDetection hit =
        find_sync_tone(wav, 30000, 1000000, kPsrThreshold, kSimilarityThreshold);
    expect_clean_hit(hit, 40000, 0);
}

TEST(FindSyncTone, ToneAtFileStartAndEndStillGetsFourChirpChecks) {
    const WavFile at_start =
        memory_wav({with_tone(std::vector<double>(40000, 0.0), 48000, 0)}, 48000);
    expect_clean_hit(search_all(at_start), 0, 0);
    const WavFile at_end = memory_wav({with_tone(noise(7, 40000, 0.01), 48000, 4000)}, 48000);
    expect_clean_hit(search_all(at_end), 4000, 0);
}

TEST(FindSyncTone, ChirpPsrIsTheFilterOverTheWindowAroundEachChirp) {
    const std::vector<double> samples = with_tone(noise(8, 60000, 0.01), 48000, 9000);
    const SyncDetection hit = search_all(memory_wav({samples}, 48000));
    ASSERT_TRUE(hit.found);
    // Chirp 2 (index 2) starts at 9000 + 2 * 9600; its window reaches half a chirp either side.
    const std::size_t expected = 9000 + 2 * 9600;
    const std::vector<double> window(samples.begin() + (expected - 3600),
                                     samples.begin() + (expected + 3600 + 7200));
    std::vector<double> chirp(7200);
    sync_chirp_generate(chirp, 2, 48000);
    const MatchedFilterResult direct = matched_filter(window, chirp);
    EXPECT_EQ(direct.index, 3600u);
    EXPECT_EQ(hit.rep_psr[2], direct.psr);
}

TEST(FindSyncTone, ToneOnEitherChannelOfAStereoFile) {
    const std::vector<double> quiet = noise(11, 60000, 0.01);
    const std::vector<double> toned = with_tone(noise(12, 60000, 0.01), 48000, 15000);
    expect_clean_hit(search_all(memory_wav({toned, quiet}, 48000)), 15000, 0);
    expect_clean_hit(search_all(memory_wav({quiet, toned}, 48000)), 15000, 1);
}

TEST(FindSyncTone, EqualPsrOnBothChannelsReportsChannelZero) {
    const std::vector<double> toned = with_tone(noise(13, 60000, 0.01), 48000, 15000);
    const SyncDetection hit = search_all(memory_wav({toned, toned}, 48000));
    expect_clean_hit(hit, 15000, 0);
}

TEST(FindSyncTone, EveryChannelIsSearchedNotOnlyTheFirstTwo) {
    const std::vector<double> quiet = noise(14, 50000, 0.01);
    const std::vector<double> toned = with_tone(noise(15, 50000, 0.01), 48000, 5000);
    expect_clean_hit(search_all(memory_wav({quiet, quiet, toned}, 48000)), 5000, 2);
}

TEST(FindSyncTone, ToneBuriedInLoudNoiseHasPsrBelowThreshold) {
    // The filter gains about 21 dB over 36000 samples, so the noise must be far above the tone.
    const WavFile wav = memory_wav({with_tone(noise(16, 80000, 8.0), 48000, 20000)}, 48000);
    const SyncDetection hit = search_all(wav);
    EXPECT_FALSE(hit.found);
    EXPECT_EQ(hit.channel, 0);
    EXPECT_GT(hit.psr, 0.0);
    EXPECT_LT(hit.psr, kPsrThreshold);
    EXPECT_EQ(hit.rep_count, 0);
    EXPECT_EQ(hit.rep_psr[0], 0.0);
}

TEST(FindSyncTone, ClickIsNotTheToneAndGivesLowSimilarity) {
    std::vector<double> samples(60000, 0.0);
    samples[30000] = 0.9;
    const SyncDetection hit = search_all(memory_wav({samples}, 48000));
    EXPECT_FALSE(hit.found);
    EXPECT_EQ(hit.channel, 0);
    EXPECT_LT(hit.similarity, 0.05);
    EXPECT_EQ(hit.rep_count, 0);
}

TEST(FindSyncTone, ToneUnderLoudHumPassesPsrButNotSimilarity) {
    // A 60 Hz hum lies far below the chirps, so the peak stands out, but the hum's energy in the
    // matched stretch dwarfs the tone's.
    const std::vector<double> hum = signal_sine(60.0, 0.9, 48000, 60000);
    const SyncDetection hit = search_all(memory_wav({with_tone(hum, 48000, 11000)}, 48000));
    EXPECT_FALSE(hit.found);
    EXPECT_EQ(hit.position, 11000u);
    EXPECT_GE(hit.psr, kPsrThreshold);
    EXPECT_GT(hit.similarity, 0.0);
    EXPECT_LT(hit.similarity, kSimilarityThreshold);
    EXPECT_EQ(hit.rep_count, 0);
}

TEST(FindSyncTone, SteadySineIsNotTheTone) {
    const SyncDetection hit =
        search_all(memory_wav({signal_sine(1000.0, 0.5, 48000, 60000)}, 48000));
    EXPECT_FALSE(hit.found);
    EXPECT_LT(hit.similarity, kSimilarityThreshold);
}

TEST(FindSyncTone, InvertedToneHasSimilarityZero) {
    const WavFile wav =
        memory_wav({with_tone(std::vector<double>(60000, 0.0), 48000, 10000, -1.0)}, 48000);
    const SyncDetection hit = search_all(wav);
    EXPECT_FALSE(hit.found);
    EXPECT_EQ(hit.position, 10000u);
    EXPECT_GE(hit.psr, kPsrThreshold);
    EXPECT_EQ(hit.similarity, 0.0);
}

TEST(FindSyncTone, SilenceGivesPsrZeroAndNoMatch) {
    const SyncDetection hit = search_all(memory_wav({std::vector<double>(40000, 0.0)}, 48000));
    EXPECT_FALSE(hit.found);
    EXPECT_EQ(hit.channel, 0);
    EXPECT_EQ(hit.position, 0u);
    EXPECT_EQ(hit.psr, 0.0);
    EXPECT_EQ(hit.similarity, 0.0);
}

void expect_not_searched(const SyncDetection& hit) {
    EXPECT_FALSE(hit.found);
    EXPECT_EQ(hit.channel, -1);
    EXPECT_EQ(hit.psr, -1.0);
    EXPECT_EQ(hit.rep_count, 0);
}

TEST(FindSyncTone, RegionsThatCannotHoldTheToneAreNotSearched) {
    const WavFile wav =
        memory_wav({with_tone(std::vector<double>(50000, 0.0), 48000, 1000)}, 48000);
    expect_not_searched(find_sync_tone(wav, 50000, 100, kPsrThreshold, kSimilarityThreshold));
    expect_not_searched(find_sync_tone(wav, 90000, 100, kPsrThreshold, kSimilarityThreshold));
    expect_not_searched(find_sync_tone(wav, 0, 35999, kPsrThreshold, kSimilarityThreshold));
    // Cut at the file's end, 14001 frames remain of the requested 40000.
    expect_not_searched(find_sync_tone(wav, 35999, 40000, kPsrThreshold, kSimilarityThreshold));
    // Exactly the tone's length is searched, but its single lag leaves no sidelobe: PSR 0.
    const SyncDetection exact = find_sync_tone(wav, 1000, 36000, kPsrThreshold, 0.0);
    EXPECT_FALSE(exact.found);
    EXPECT_EQ(exact.channel, 0);
    EXPECT_EQ(exact.position, 1000u);
    EXPECT_EQ(exact.psr, 0.0);
    EXPECT_NEAR(exact.similarity, 1.0, 1e-9);
}

TEST(FindSyncTone, FileShorterThanTheToneIsNotSearched) {
    // A file shorter than twice the tone: half of it cannot hold the tone.
    const WavFile wav = memory_wav({std::vector<double>(60000, 0.0)}, 48000);
    expect_not_searched(find_sync_tone(wav, 0, 30000, kPsrThreshold, kSimilarityThreshold));
    expect_not_searched(search_all(memory_wav({std::vector<double>(100, 0.0)}, 48000)));
}

} // namespace
