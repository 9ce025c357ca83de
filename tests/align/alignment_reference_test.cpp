// The blocked correlation search against the whole-signal search it replaced (kept in
// support/reference_correlation): the same lag and a confidence within 1e-9 relative on noise and
// music-like material, at delays on and just past the edges of the window, with the sign flipped,
// at lengths around block boundaries and powers of two, on silent, empty and very unequal inputs,
// and through align_channels and diagnose_alignment on interleaved files.
#include "align/alignment.h"
#include "align/alignment_diagnosis.h"
#include "align/correlation_plan.h"
#include "alignment_signals.h"
#include "support/reference_correlation.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kMaxLag = 4800;

// Frames per block of the default search with a window of +-kMaxLag.
std::size_t default_block() {
    const std::size_t long_input = 10 * kMinBlockPoints;
    return plan_blocks(long_input, long_input, lag_window(long_input, long_input, kMaxLag)).block;
}

void expect_matches_reference(std::span<const double> a, std::span<const double> b,
                              std::size_t max_lag, bool invert, const std::string& what) {
    const CorrelationPeak fast = cross_correlate(a, b, max_lag, invert);
    const ReferencePeak reference = reference_correlate(a, b, max_lag, invert);
    EXPECT_FALSE(fast.out_of_memory) << what;
    EXPECT_EQ(fast.lag, reference.lag) << what;
    EXPECT_LE(std::fabs(fast.corr - reference.corr), 1e-9 * std::fabs(reference.corr))
        << what << ": " << fast.corr << " against " << reference.corr;
}

std::string describe(Material material, std::size_t frames, std::int64_t delay, bool invert) {
    return material_name(material) + " frames " + std::to_string(frames) + " delay " +
           std::to_string(delay) + (invert ? " inverted" : "");
}

TEST(BlockedCorrelation, MatchesTheReferenceAtTheEdgesOfTheWindow) {
    const auto reach = static_cast<std::int64_t>(kMaxLag);
    const std::int64_t delays[] = {0, 1, -1, reach, -reach, reach + 1, -(reach + 1)};
    const std::size_t frames = 2 * default_block() + 1;
    for (Material material : {Material::noise, Material::music}) {
        for (std::int64_t delay : delays) {
            const DelayedPair pair = delayed_pair(material, 101, frames, delay);
            for (const bool invert : {false, true}) {
                const std::vector<double> dut = invert ? negated(pair.dut) : pair.dut;
                expect_matches_reference(pair.ref, dut, kMaxLag, invert,
                                         describe(material, frames, delay, invert));
            }
        }
    }
}

TEST(BlockedCorrelation, DelaysJustPastTheWindowAreNotFound) {
    const auto reach = static_cast<std::int64_t>(kMaxLag);
    for (std::int64_t delay : {reach + 1, -(reach + 1)}) {
        const DelayedPair pair = delayed_pair(Material::noise, 102, default_block() + 7, delay);
        const CorrelationPeak peak = cross_correlate(pair.ref, pair.dut, kMaxLag, false);
        EXPECT_LE(std::llabs(peak.lag), reach);
        EXPECT_LT(peak.corr, 0.1);
    }
}

TEST(BlockedCorrelation, MatchesTheReferenceAtLengthsAroundBlocksAndPowersOfTwo) {
    const std::size_t block = default_block();
    const std::size_t lengths[] = {block - 1,      block,          block + 1,      2 * block - 1,
                                   2 * block,      3 * block + 1,  (1u << 12) - 1, 1u << 12,
                                   (1u << 12) + 1, (1u << 16) - 1, (1u << 16) + 1, (1u << 17) + 1};
    for (const std::size_t frames : lengths) {
        for (Material material : {Material::noise, Material::music}) {
            const DelayedPair pair = delayed_pair(material, 103, frames, -480);
            expect_matches_reference(pair.ref, pair.dut, kMaxLag, false,
                                     describe(material, frames, -480, false));
        }
    }
}

TEST(BlockedCorrelation, MatchesTheReferenceOnRandomLengthsWindowsAndDelays) {
    SignalRng rng = signal_rng(104);
    for (int trial = 0; trial < 12; ++trial) {
        const auto frames = static_cast<std::size_t>(signal_next_int(rng, 2000, 150000));
        const auto max_lag = static_cast<std::size_t>(signal_next_int(rng, 0, 6000));
        const std::int64_t delay = signal_next_int(rng, -6000, 6000);
        const Material material = trial % 2 == 0 ? Material::noise : Material::music;
        const DelayedPair pair = delayed_pair(material, 200 + trial, frames, delay);
        const auto cut = static_cast<std::size_t>(signal_next_int(rng, 1, frames));
        const std::vector<double> dut(pair.dut.begin(), pair.dut.begin() + cut);
        expect_matches_reference(pair.ref, dut, max_lag, trial % 3 == 0,
                                 describe(material, frames, delay, trial % 3 == 0) + " dut " +
                                     std::to_string(cut) + " max_lag " + std::to_string(max_lag));
    }
}

TEST(BlockedCorrelation, SilentInputsTieEverywhereAsInTheReference) {
    const std::size_t frames = 2 * default_block() + 3;
    const std::vector<double> zeros(frames, 0.0);
    const std::vector<double> noise = signal_uniform(105, frames, -1.0, 1.0);
    for (const bool invert : {false, true}) {
        expect_matches_reference(zeros, noise, kMaxLag, invert, "silent a");
        expect_matches_reference(noise, zeros, kMaxLag, invert, "silent b");
        expect_matches_reference(zeros, zeros, kMaxLag, invert, "both silent");
    }
    // Every sum is exactly 0, so the smallest shift wins: the largest lag of the window.
    EXPECT_EQ(cross_correlate(zeros, noise, kMaxLag, false).lag, 4800);
    EXPECT_EQ(cross_correlate(noise, zeros, kMaxLag, true).corr, 0.0);
}

TEST(BlockedCorrelation, MatchesTheReferenceOnEmptyAndVeryUnequalInputs) {
    const std::size_t frames = 3 * default_block() + 11;
    const DelayedPair pair = delayed_pair(Material::music, 106, frames, 123);
    const std::vector<double> empty;
    expect_matches_reference(empty, pair.dut, kMaxLag, false, "empty a");
    expect_matches_reference(pair.ref, empty, kMaxLag, false, "empty b");
    for (const std::size_t short_length : {1u, 10u, 3000u, 4801u, 9000u}) {
        const std::vector<double> head(pair.ref.begin(), pair.ref.begin() + short_length);
        const std::vector<double> tail(pair.dut.end() - short_length, pair.dut.end());
        const std::string what = "short " + std::to_string(short_length);
        expect_matches_reference(head, pair.dut, kMaxLag, false, what + " a, head");
        expect_matches_reference(pair.ref, head, kMaxLag, false, what + " b, head");
        expect_matches_reference(tail, pair.dut, kMaxLag, true, what + " a, tail");
        expect_matches_reference(pair.ref, tail, kMaxLag, false, what + " b, tail");
    }
}

// Equally long channels, for make_wav.
std::vector<std::vector<double>> channel_set(std::initializer_list<std::vector<double>> list) {
    return {list};
}

TEST(BlockedCorrelation, AlignChannelsOnInterleavedFilesMatchesTheReference) {
    const std::size_t frames = 2 * default_block() + 5;
    for (std::int64_t delay : {-4800, -1, 0, 1, 4800, 4801}) {
        const DelayedPair left = delayed_pair(Material::music, 107, frames, delay);
        const DelayedPair right = delayed_pair(Material::noise, 108, frames, delay);
        const DelayedPair third = delayed_pair(Material::transients, 109, frames, -delay);
        for (const bool three : {false, true}) {
            const auto ref_channels = three ? channel_set({left.ref, right.ref, third.ref})
                                            : channel_set({left.ref, right.ref});
            const auto dut_channels = three ? channel_set({left.dut, right.dut, third.dut})
                                            : channel_set({left.dut, right.dut});
            const AlignmentResult result = align_channels(
                make_wav(ref_channels), make_wav(dut_channels), kMaxLag, 2, 0.9, -70.0);
            EXPECT_FALSE(result.out_of_memory);
            for (std::size_t k = 0; k < 2; ++k) {
                const ReferencePeak expected =
                    reference_correlate(ref_channels[k], dut_channels[k], kMaxLag, false);
                const ChannelAlignment& channel = result.channel[k];
                EXPECT_EQ(channel.state, AlignmentState::measured);
                EXPECT_EQ(channel.offset, expected.lag) << "delay " << delay << " channel " << k;
                EXPECT_LE(std::fabs(channel.confidence - expected.corr),
                          1e-9 * std::fabs(expected.corr))
                    << "delay " << delay << " channel " << k;
            }
        }
    }
}

TEST(BlockedCorrelation, AlignChannelsBorrowsTheReferenceLagForASilentChannel) {
    const std::size_t frames = default_block() + 1;
    const DelayedPair left = delayed_pair(Material::music, 110, frames, 777);
    const std::vector<double> silence(frames, 0.0);
    const AlignmentResult result = align_channels(
        make_wav({left.ref, silence}), make_wav({left.dut, silence}), kMaxLag, 2, 0.9, -70.0);
    const ReferencePeak expected = reference_correlate(left.ref, left.dut, kMaxLag, false);
    EXPECT_EQ(result.channel[0].offset, expected.lag);
    EXPECT_EQ(result.channel[1].state, AlignmentState::silent_borrowed);
    EXPECT_EQ(result.channel[1].offset, expected.lag);
    EXPECT_EQ(result.channel[1].confidence, result.channel[0].confidence);
    EXPECT_TRUE(result.aligned);
}

TEST(BlockedCorrelation, DiagnosisSearchesMatchTheReference) {
    // Too late for the window: every search of the diagnosis runs, the wide one finds the delay.
    const std::size_t frames = 120000;
    const std::int64_t delay = 5500;
    const DelayedPair pair = delayed_pair(Material::noise, 111, frames, delay);
    const WavFile ref = make_wav({pair.ref});
    const WavFile dut = make_wav({pair.dut});
    const AlignmentResult alignment = align_channels(ref, dut, kMaxLag, 2, 0.9, -70.0);
    ASSERT_FALSE(alignment.aligned);
    const AlignmentDiagnosis d = diagnose_alignment(ref, dut, alignment, kMaxLag, 0.9)[0];
    EXPECT_FALSE(d.out_of_memory);
    EXPECT_EQ(d.cause, AlignmentCause::outside_search_window);
    const auto near = [](double fast, double reference) {
        return std::fabs(fast - reference) <= 1e-9 * std::fabs(reference);
    };
    const ReferencePeak inverted = reference_correlate(pair.ref, pair.dut, kMaxLag, true);
    EXPECT_TRUE(near(d.inverted_corr, inverted.corr)) << d.inverted_corr;
    const std::span<const double> ref_span(pair.ref);
    const std::span<const double> dut_span(pair.dut);
    const std::size_t q = d.stretch_len;
    ASSERT_EQ(q, 30000u);
    const ReferencePeak first =
        reference_correlate(ref_span.first(q), dut_span.first(q), kMaxLag, false);
    const ReferencePeak last = reference_correlate(
        ref_span.subspan(d.last_start, q), dut_span.subspan(d.last_start, q), kMaxLag, false);
    EXPECT_EQ(d.first_lag, first.lag);
    EXPECT_TRUE(near(d.first_corr, first.corr)) << d.first_corr;
    EXPECT_EQ(d.last_lag, last.lag);
    EXPECT_TRUE(near(d.last_corr, last.corr)) << d.last_corr;
    const ReferencePeak wide = reference_correlate(pair.ref, pair.dut, frames / 2, false);
    EXPECT_EQ(d.wide_lag, delay);
    EXPECT_EQ(d.wide_lag, wide.lag);
    EXPECT_TRUE(near(d.wide_corr, wide.corr)) << d.wide_corr;
}

} // namespace
