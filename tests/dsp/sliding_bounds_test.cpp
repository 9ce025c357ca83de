// The batch bounds of the neighbourhood statistics: the union kept by sliding equals the union
// sorted afresh at every batch, on random data, on data full of equal values and signed zeros and
// on sorted runs; every centre's median (two sorts) lies within the median bounds and its MAD is
// at least the MAD bound; the batches start anywhere and run exactly while their windows lie
// inside the series; and values too large for safe arithmetic make the bounds unusable.
#include "dsp/sliding_bounds.h"
#include "support/neighbourhood_reference.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace {

std::vector<double> ternary(std::uint64_t seed, std::size_t count) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> values(count);
    for (double& v : values)
        v = static_cast<double>(signal_next_int(rng, -1, 1));
    return values;
}

std::vector<double> signed_zeros_and_steps(std::size_t count) {
    std::vector<double> values(count);
    for (std::size_t i = 0; i < count; ++i)
        values[i] = i % 5 == 0 ? -0.0 : (i % 5 == 1 ? 0.0 : static_cast<double>(i % 3) * 0.25);
    return values;
}

std::vector<double> sorted_runs(std::size_t count) {
    std::vector<double> values(count);
    for (std::size_t i = 0; i < count; ++i)
        values[i] = (i / 300) % 2 == 0 ? static_cast<double>(i) : -static_cast<double>(i);
    return values;
}

// Slides over the series from the batch at `first` (the first possible one by default); at every
// batch compares the union with a fresh sort of it and checks the bounds of each centre. Returns
// the number of batches.
std::size_t check_every_batch(const std::vector<double>& values, std::size_t half,
                              std::size_t first = 0) {
    first = std::max(first, half);
    SlidingBounds b = sliding_bounds_start(values, half, first);
    std::vector<double> scratch;
    std::size_t batches = 0;
    std::size_t expected_first = first;
    while (b.active) {
        EXPECT_EQ(b.first, expected_first);
        std::vector<double> fresh(values.begin() + static_cast<std::ptrdiff_t>(b.first - half),
                                  values.begin() +
                                      static_cast<std::ptrdiff_t>(b.first + kBoundsBatch + half));
        std::sort(fresh.begin(), fresh.end());
        for (std::size_t i = 0; i < fresh.size(); ++i)
            EXPECT_EQ(b.sorted[i], fresh[i]) << "batch at " << b.first << ", position " << i;
        EXPECT_EQ(b.sorted[fresh.size()], std::numeric_limits<double>::infinity());
        const NeighbourhoodBounds bounds = sliding_bounds_of(b);
        EXPECT_TRUE(bounds.usable);
        for (std::size_t c = b.first; c < b.first + kBoundsBatch; ++c) {
            const ReferenceNeighbourhood plain =
                reference_neighbourhood(values, c, 2 * half, scratch);
            EXPECT_LE(bounds.median_low, plain.median) << "centre " << c;
            EXPECT_GE(bounds.median_high, plain.median) << "centre " << c;
            EXPECT_LE(bounds.mad_low, plain.mad) << "centre " << c;
        }
        sliding_bounds_next(b);
        expected_first += kBoundsBatch;
        ++batches;
    }
    return batches;
}

TEST(SlidingBounds, RandomDataKeepsTheUnionAndTheBounds) {
    for (const std::size_t half : {11u, 12u, 32u, 64u}) {
        SCOPED_TRACE(half);
        const std::vector<double> values = signal_uniform(31 + half, 3000, -1.0, 1.0);
        EXPECT_GT(check_every_batch(values, half), 300u);
    }
}

TEST(SlidingBounds, EqualValuesAndSignedZerosKeepTheUnion) {
    check_every_batch(ternary(37, 3000), 32);
    check_every_batch(ternary(38, 3000), 11);
    check_every_batch(signed_zeros_and_steps(2000), 32);
    check_every_batch(std::vector<double>(500, 0.125), 32);
}

TEST(SlidingBounds, SortedRunsKeepTheUnion) {
    check_every_batch(sorted_runs(3000), 32);
    check_every_batch(sorted_runs(3000), 20);
}

TEST(SlidingBounds, BatchesRunWhileTheirWindowsLieInside) {
    // 2 * 32 + 8 = 72 values hold exactly one batch (centres 32 .. 39); the next would need its
    // last window to end at 47 + 32 = 79.
    EXPECT_FALSE(sliding_bounds_possible(71, 32));
    EXPECT_TRUE(sliding_bounds_possible(72, 32));
    EXPECT_FALSE(sliding_bounds_possible(1000, 10));
    EXPECT_TRUE(sliding_bounds_possible(1000, 11));
    const std::vector<double> values = signal_uniform(39, 80, -1.0, 1.0);
    EXPECT_EQ(check_every_batch(std::vector<double>(values.begin(), values.begin() + 72), 32), 1u);
    EXPECT_EQ(check_every_batch(std::vector<double>(values.begin(), values.begin() + 79), 32), 1u);
    EXPECT_EQ(check_every_batch(values, 32), 2u);
    EXPECT_FALSE(sliding_bounds_start(values, 10, 10).active);
    EXPECT_FALSE(sliding_bounds_start(std::vector<double>(71, 0.0), 32, 32).active);
}

TEST(SlidingBounds, BatchesStartAnywhereTheirWindowsLieInside) {
    const std::vector<double> values = signal_uniform(41, 1000, -1.0, 1.0);
    EXPECT_EQ(check_every_batch(values, 32, 133), (1000 - 133 - 32) / kBoundsBatch);
    // The last centre whose batch still fits: its last window ends at the last value.
    EXPECT_EQ(check_every_batch(values, 32, 1000 - 32 - kBoundsBatch), 1u);
    EXPECT_FALSE(sliding_bounds_start(values, 32, 1000 - 32 - kBoundsBatch + 1).active);
    EXPECT_FALSE(sliding_bounds_start(values, 32, 31).active);
}

TEST(SlidingBounds, HugeValuesMakeTheBoundsUnusable) {
    std::vector<double> values = signal_uniform(40, 200, -1.0, 1.0);
    values[5] = 2e300;
    SlidingBounds b = sliding_bounds_start(values, 32, 32);
    ASSERT_TRUE(b.active);
    EXPECT_FALSE(sliding_bounds_of(b).usable);
    values[5] = -std::numeric_limits<double>::infinity();
    b = sliding_bounds_start(values, 32, 32);
    EXPECT_FALSE(sliding_bounds_of(b).usable);
    // Once the value has left the union the bounds are usable again.
    while (b.active && b.first < 48)
        sliding_bounds_next(b);
    ASSERT_TRUE(b.active);
    EXPECT_TRUE(sliding_bounds_of(b).usable);
}

} // namespace
