// The sliding neighbourhood median and MAD: small series worked by hand, then value-for-value
// agreement with the two-sorts computation on random data, on data full of equal values, on
// sorted runs, at the shortened ends and on series shorter than the window, for odd and even
// window sizes; and cursors moved by seeking, near and far, forwards and back.
#include "dsp/sliding_median.h"
#include "support/neighbourhood_reference.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// The statistics of every value of `values` in order.
std::vector<NeighbourhoodStats> sliding_all(const std::vector<double>& values, std::size_t window) {
    std::vector<double> scratch(sliding_scratch_size(values.size(), window / 2));
    SlidingNeighbourhood s = sliding_start(values, window / 2, scratch);
    std::vector<NeighbourhoodStats> out;
    for (std::size_t i = 0; i < values.size(); ++i, sliding_advance(s)) {
        EXPECT_EQ(s.centre, i);
        out.push_back(neighbourhood_stats(s));
    }
    return out;
}

void expect_matches_reference(const std::vector<double>& values, std::size_t window) {
    const std::vector<NeighbourhoodStats> fast = sliding_all(values, window);
    std::vector<double> scratch;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const ReferenceNeighbourhood slow = reference_neighbourhood(values, i, window, scratch);
        ASSERT_EQ(fast[i].median, slow.median) << "window " << window << ", value " << i;
        ASSERT_EQ(fast[i].mad, slow.mad) << "window " << window << ", value " << i;
    }
}

std::vector<double> ternary_values(std::uint64_t seed, std::size_t count) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> values(count);
    for (double& v : values)
        v = static_cast<double>(signal_next_int(rng, -1, 1));
    return values;
}

constexpr std::size_t kWindows[] = {1, 2, 3, 64, 65, 128};

TEST(SlidingMedian, EvenWindowOfTwoByHand) {
    // Half-width 1: the neighbours on either side, one of them at the ends.
    const std::vector<NeighbourhoodStats> s = sliding_all({1.0, 2.0, 3.0, 4.0, 5.0}, 2);
    EXPECT_EQ(s[0].median, 2.0);
    EXPECT_EQ(s[0].mad, 0.0);
    EXPECT_EQ(s[2].median, 3.0);
    EXPECT_EQ(s[2].mad, 1.0);
    EXPECT_EQ(s[4].median, 4.0);
    EXPECT_EQ(s[4].mad, 0.0);
}

TEST(SlidingMedian, WindowOfFiveByHand) {
    const std::vector<NeighbourhoodStats> s = sliding_all({1.0, 10.0, 2.0, 8.0, 3.0}, 5);
    // Value 0: {10, 2} gives median 6 and deviations {4, 4}.
    EXPECT_EQ(s[0].median, 6.0);
    EXPECT_EQ(s[0].mad, 4.0);
    // Value 1: {1, 2, 8} gives median 2 and deviations {1, 0, 6}.
    EXPECT_EQ(s[1].median, 2.0);
    EXPECT_EQ(s[1].mad, 1.0);
    // Value 2: {1, 10, 8, 3} gives median (3 + 8) / 2 and deviations {4.5, 4.5, 2.5, 2.5}.
    EXPECT_EQ(s[2].median, 5.5);
    EXPECT_EQ(s[2].mad, 3.5);
    // Value 4: {2, 8} gives median 5 and deviations {3, 3}.
    EXPECT_EQ(s[4].median, 5.0);
    EXPECT_EQ(s[4].mad, 3.0);
}

TEST(SlidingMedian, WindowOfOneLeavesEveryNeighbourhoodEmpty) {
    for (const NeighbourhoodStats& s : sliding_all({0.5, -3.0, 7.0}, 1)) {
        EXPECT_EQ(s.median, 0.0);
        EXPECT_EQ(s.mad, 0.0);
    }
}

TEST(SlidingMedian, SingleValueAndEmptySeries) {
    const std::vector<NeighbourhoodStats> one = sliding_all({0.25}, 64);
    ASSERT_EQ(one.size(), 1u);
    EXPECT_EQ(one[0].median, 0.0);
    EXPECT_EQ(one[0].mad, 0.0);
    EXPECT_EQ(sliding_scratch_size(0, 32), 0u);
    const std::vector<double> none;
    SlidingNeighbourhood s = sliding_start(none, 32, {});
    sliding_advance(s);
    EXPECT_EQ(s.centre, 0u);
    EXPECT_EQ(s.held, 0u);
}

TEST(SlidingMedian, ScratchIsTheLongestWindowRoundedUpToAPowerOfTwo) {
    EXPECT_EQ(sliding_scratch_size(1000, 32), 128u);
    EXPECT_EQ(sliding_scratch_size(1000, 31), 64u);
    EXPECT_EQ(sliding_scratch_size(1000, 0), 1u);
    EXPECT_EQ(sliding_scratch_size(40, 32), 64u);
    EXPECT_EQ(sliding_scratch_size(10, 1000000), 16u);
    EXPECT_EQ(sliding_scratch_size(1, 32), 1u);
}

TEST(SlidingMedian, LongerScratchIsCutToThePowerOfTwo) {
    const std::vector<double> values = signal_uniform(59, 300, -1.0, 1.0);
    std::vector<double> scratch(1000);
    SlidingNeighbourhood s = sliding_start(values, 32, scratch);
    EXPECT_EQ(s.sorted.size(), 128u);
    std::vector<double> reference_scratch;
    for (std::size_t i = 0; i < values.size(); ++i, sliding_advance(s)) {
        const NeighbourhoodStats fast = neighbourhood_stats(s);
        const ReferenceNeighbourhood slow =
            reference_neighbourhood(values, i, 64, reference_scratch);
        ASSERT_EQ(fast.median, slow.median) << i;
        ASSERT_EQ(fast.mad, slow.mad) << i;
    }
}

TEST(SlidingMedian, RandomDataMatchesTwoSorts) {
    for (std::size_t window : kWindows)
        expect_matches_reference(signal_uniform(11 + window, 1500, -1.0, 1.0), window);
}

TEST(SlidingMedian, ManyEqualValuesMatchTwoSorts) {
    for (std::size_t window : kWindows)
        expect_matches_reference(ternary_values(23 + window, 1500), window);
}

TEST(SlidingMedian, ConstantAndSortedRunsMatchTwoSorts) {
    std::vector<double> values(300, 0.125);
    for (std::size_t i = 0; i < 300; ++i)
        values.push_back(static_cast<double>(i) / 64.0);
    for (std::size_t i = 0; i < 300; ++i)
        values.push_back(-static_cast<double>(i) / 32.0);
    for (std::size_t window : kWindows)
        expect_matches_reference(values, window);
}

TEST(SlidingMedian, SeriesShorterThanTheWindowMatchTwoSorts) {
    for (std::size_t count : {1u, 2u, 3u, 7u, 32u, 33u, 63u, 64u, 65u, 100u}) {
        for (std::size_t window : kWindows) {
            expect_matches_reference(signal_uniform(37 + count, count, -1.0, 1.0), window);
            expect_matches_reference(ternary_values(41 + count, count), window);
        }
    }
}

TEST(SlidingMedian, WindowFarLongerThanTheSeriesMatchesTwoSorts) {
    expect_matches_reference(signal_uniform(53, 20, -1.0, 1.0), 1000000);
}

TEST(SlidingMedian, SignedZerosGiveTheSameFigures) {
    std::vector<double> values;
    for (std::size_t i = 0; i < 200; ++i)
        values.push_back(i % 3 == 0 ? -0.0 : (i % 3 == 1 ? 0.0 : 1e-300));
    for (std::size_t window : kWindows)
        expect_matches_reference(values, window);
}

// Seeks to each target in turn and compares the figures there with the two sorts.
void expect_seeks_match(const std::vector<double>& values, std::size_t window,
                        const std::vector<std::size_t>& targets) {
    std::vector<double> scratch(sliding_scratch_size(values.size(), window / 2));
    SlidingNeighbourhood s = sliding_start(values, window / 2, scratch);
    std::vector<double> reference_scratch;
    for (const std::size_t target : targets) {
        sliding_seek(s, target);
        ASSERT_EQ(s.centre, target);
        const NeighbourhoodStats fast = neighbourhood_stats(s);
        const ReferenceNeighbourhood slow =
            reference_neighbourhood(values, target, window, reference_scratch);
        ASSERT_EQ(fast.median, slow.median) << "window " << window << ", target " << target;
        ASSERT_EQ(fast.mad, slow.mad) << "window " << window << ", target " << target;
    }
}

TEST(SlidingMedian, SeeksNearAndFarForwardsAndBackMatchTwoSorts) {
    const std::vector<double> values = signal_uniform(61, 1500, -1.0, 1.0);
    // Steps within half a window, jumps beyond it, backwards, to the ends and in place.
    const std::vector<std::size_t> targets = {0,   1,   5,   37,   38,   200,  199, 0,
                                              700, 732, 733, 1499, 1499, 1400, 3,   1450};
    for (std::size_t window : kWindows)
        expect_seeks_match(values, window, targets);
    for (std::size_t window : kWindows)
        expect_seeks_match(ternary_values(62, 1500), window, targets);
}

TEST(SlidingMedian, SeekingEveryValueInTurnMatchesAdvancing) {
    const std::vector<double> values = signal_uniform(63, 400, -1.0, 1.0);
    std::vector<std::size_t> targets(values.size());
    for (std::size_t i = 0; i < targets.size(); ++i)
        targets[i] = i;
    expect_seeks_match(values, 64, targets);
}

} // namespace
