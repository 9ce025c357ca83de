// The frames and channels the Time Domain scan covers: file offsets, empty overlaps, silent and
// one-frame files, full-scale extremes, stereo interleaving and the channel limits.
#include "checks/time_domain_fixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

using namespace time_domain_test;

constexpr double kMostNegative16 = -32768.0 / 32767.0;

void expect_untouched(const TimeDomainChannel& c) {
    EXPECT_EQ(c.samples_included, 0u);
    EXPECT_EQ(c.samples_excluded, 0u);
    EXPECT_EQ(c.total_fails, 0u);
    EXPECT_FALSE(c.has_failures);
    EXPECT_EQ(c.worst_sample, 0u);
    EXPECT_EQ(c.worst_diff_pct, 0.0);
}

TEST(TimeDomainRange, LateDutPairsReferenceFrameNWithDutFrameNPlusOffset) {
    const WavFile ref = make_file({0.5, 0.5, 0.5, 0.5, 0.5});
    const WavFile dut = make_file({0.9, 0.9, 0.9, 0.5, 0.5, 0.9, 0.5, 0.5});
    const TimeDomainChannel c = scan_defaults(ref, dut, 3).channel[0];
    EXPECT_EQ(c.samples_included, 5u);
    EXPECT_EQ(c.total_fails, 1u);
    EXPECT_EQ(c.worst_sample, 2u); // a reference frame index
    EXPECT_EQ(c.worst_dut_amp, 0.9);
}

TEST(TimeDomainRange, EarlyDutSkipsTheReferenceHead) {
    // Offset -2: reference frames 0 and 1 have no DUT frame; frame 3 pairs with DUT frame 1.
    const WavFile ref = make_file({0.9, 0.9, 0.5, 0.5, 0.5});
    const WavFile dut = make_file({0.5, 0.8, 0.5});
    const TimeDomainChannel c = scan_defaults(ref, dut, -2).channel[0];
    EXPECT_EQ(c.samples_included, 3u);
    EXPECT_EQ(c.worst_sample, 3u);
    EXPECT_EQ(c.worst_ref_amp, 0.5);
    EXPECT_EQ(c.worst_dut_amp, 0.8);
    EXPECT_DOUBLE_EQ(c.worst_diff_pct, 60.0);
}

TEST(TimeDomainRange, EmptyOverlapCountsNothingAndPasses) {
    const WavFile ref = make_file({0.5, -0.5, 0.5});
    const WavFile dut = make_file({0.1, 0.1, 0.1});
    for (const std::int64_t offset : {std::int64_t{3}, std::int64_t{50}, std::int64_t{-3}}) {
        const TimeDomainResult result = scan_defaults(ref, dut, offset);
        EXPECT_TRUE(result.passed) << offset;
        EXPECT_TRUE(result.channel[0].passed) << offset;
        expect_untouched(result.channel[0]);
    }
    const TimeDomainResult empty = scan_defaults(make_file({}), make_file({}));
    EXPECT_TRUE(empty.passed);
    EXPECT_EQ(empty.channels, 1u);
    expect_untouched(empty.channel[0]);
}

TEST(TimeDomainRange, AllSilentFilesAreAllExcluded) {
    const std::vector<double> silence(1000, 0.0);
    const TimeDomainResult result = scan_defaults(make_file(silence, 2), make_file(silence, 2), 0);
    EXPECT_TRUE(result.passed);
    for (const TimeDomainChannel& c : result.channel) {
        EXPECT_TRUE(c.passed);
        EXPECT_EQ(c.samples_excluded, 500u);
        EXPECT_EQ(c.samples_included, 0u);
        EXPECT_EQ(c.total_fails, 0u);
    }
}

TEST(TimeDomainRange, OneFrameFiles) {
    const TimeDomainChannel same = scan_mono({0.25}, {0.25});
    EXPECT_EQ(same.samples_included, 1u);
    EXPECT_TRUE(same.passed);
    const TimeDomainChannel louder = scan_mono({0.25}, {0.5});
    EXPECT_EQ(louder.fails_peak_tier, 1u);
    EXPECT_DOUBLE_EQ(louder.worst_diff_pct, 100.0);
}

TEST(TimeDomainRange, FullScaleExtremesGiveFiniteScores) {
    // +1.0 against the most negative 16-bit code, and the reverse.
    const TimeDomainChannel c = scan_mono({1.0, kMostNegative16}, {kMostNegative16, 1.0});
    EXPECT_EQ(c.samples_included, 2u);
    EXPECT_EQ(c.total_fails, 1u);
    EXPECT_EQ(c.worst_sample, 0u);
    EXPECT_DOUBLE_EQ(c.worst_diff_pct, (1.0 - kMostNegative16) * 100.0);
    EXPECT_EQ(c.worst_dut_amp, kMostNegative16);
}

TEST(TimeDomainRange, StereoChannelsAreScannedSeparately) {
    // Frames interleave left, right: only the right channel differs, at frame 2.
    const WavFile ref = make_file({0.5, 0.25, 0.5, 0.25, 0.5, 0.25}, 2);
    const WavFile dut = make_file({0.5, 0.25, 0.5, 0.25, 0.5, 0.5}, 2);
    const TimeDomainResult result = scan_defaults(ref, dut);
    EXPECT_EQ(result.channels, 2u);
    EXPECT_FALSE(result.passed);
    EXPECT_TRUE(result.channel[0].passed);
    EXPECT_EQ(result.channel[0].samples_included, 3u);
    const TimeDomainChannel& right = result.channel[1];
    EXPECT_FALSE(right.passed);
    EXPECT_EQ(right.samples_included, 3u);
    EXPECT_EQ(right.total_fails, 1u);
    EXPECT_EQ(right.worst_sample, 2u);
    EXPECT_EQ(right.worst_ref_amp, 0.25);
    EXPECT_EQ(right.worst_dut_amp, 0.5);
}

TEST(TimeDomainRange, MonoLeavesTheSecondChannelZeroed) {
    const TimeDomainResult result = scan_defaults(make_file({0.5}), make_file({0.5}));
    EXPECT_EQ(result.channels, 1u);
    EXPECT_TRUE(result.passed);
    EXPECT_TRUE(result.channel[0].passed);
    EXPECT_FALSE(result.channel[1].passed);
    expect_untouched(result.channel[1]);
}

TEST(TimeDomainRange, ReferenceWithoutChannelsPasses) {
    const TimeDomainResult result = scan_defaults(make_file({}, 0), make_file({0.5}));
    EXPECT_EQ(result.channels, 0u);
    EXPECT_TRUE(result.passed);
    expect_untouched(result.channel[0]);
}

TEST(TimeDomainRange, OnlyTheFirstTwoChannelsAreExamined) {
    // The third channel differs wildly but is never looked at.
    const WavFile ref = make_file({0.5, 0.5, 0.5, 0.5, 0.5, 0.5}, 3);
    const WavFile dut = make_file({0.5, 0.5, 0.9, 0.5, 0.5, 0.9}, 3);
    const TimeDomainResult result = scan_defaults(ref, dut);
    EXPECT_EQ(result.channels, 3u);
    EXPECT_TRUE(result.passed);
    EXPECT_EQ(result.channel[1].samples_included, 2u);
}

TEST(TimeDomainRange, DutWithoutTheSecondChannelLeavesItUnscanned) {
    const WavFile ref = make_file({0.5, 0.1, 0.5, 0.1}, 2);
    const WavFile dut = make_file({0.5, 0.6});
    const TimeDomainResult result = scan_defaults(ref, dut);
    EXPECT_EQ(result.channel[0].samples_included, 2u);
    EXPECT_EQ(result.channel[0].total_fails, 1u);
    EXPECT_TRUE(result.channel[1].passed);
    EXPECT_EQ(result.channel[1].samples_included, 0u);
    EXPECT_FALSE(result.passed);
}

} // namespace
