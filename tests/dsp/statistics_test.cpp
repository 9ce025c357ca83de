// Median and nearest-rank percentile by selection: hand-worked lists, then agreement with a full
// sort on random lists of every small length.
#include "dsp/statistics.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

double median(std::vector<double> values) {
    return median_of(values);
}

double percentile(std::vector<double> values, double p) {
    return nearest_rank_percentile(values, p);
}

TEST(Statistics, EmptyListsGiveZero) {
    EXPECT_EQ(median({}), 0.0);
    EXPECT_EQ(percentile({}, 0.99), 0.0);
}

TEST(Statistics, MedianOfAnOddCountIsTheMiddleElement) {
    EXPECT_EQ(median({7.0}), 7.0);
    EXPECT_EQ(median({3.0, -1.0, 2.0}), 2.0);
    EXPECT_EQ(median({5.0, 1.0, 4.0, 2.0, 3.0}), 3.0);
}

TEST(Statistics, MedianOfAnEvenCountIsTheMeanOfTheTwoMiddleElements) {
    EXPECT_EQ(median({2.0, 1.0}), 1.5);
    EXPECT_EQ(median({4.0, -3.0, 1.0, 10.0}), 2.5);
    EXPECT_EQ(median({-1.0, -6.0, -2.0, -5.0}), -3.5);
}

TEST(Statistics, MedianWithTies) {
    EXPECT_EQ(median({1.0, 1.0, 1.0, 1.0}), 1.0);
    EXPECT_EQ(median({2.0, 1.0, 2.0, 2.0}), 2.0);
    EXPECT_EQ(median({0.0, 0.0, 9.0, 9.0}), 4.5);
}

TEST(Statistics, PercentileRoundsTheRankHalfAwayFromZero) {
    // Four values: p = 0.5 gives rank 1.5, which rounds up to index 2.
    EXPECT_EQ(percentile({40.0, 10.0, 30.0, 20.0}, 0.5), 30.0);
    // 51 values: 50 * 0.99 = 49.5 rounds to 50, the largest.
    std::vector<double> ranks(51);
    for (std::size_t i = 0; i < ranks.size(); ++i)
        ranks[i] = static_cast<double>(50 - i);
    EXPECT_EQ(percentile(ranks, 0.99), 50.0);
    // 101 values: rank 99 exactly.
    std::vector<double> hundred(101);
    for (std::size_t i = 0; i < hundred.size(); ++i)
        hundred[i] = static_cast<double>(i) * 0.5;
    EXPECT_EQ(percentile(hundred, 0.99), 49.5);
}

TEST(Statistics, PercentileEndsAndClamping) {
    const std::vector<double> values = {3.0, -8.0, 12.0, 0.5};
    EXPECT_EQ(percentile(values, 0.0), -8.0);
    EXPECT_EQ(percentile(values, 1.0), 12.0);
    EXPECT_EQ(percentile(values, 1.7), 12.0);
    EXPECT_EQ(percentile(values, -0.4), -8.0);
    EXPECT_EQ(percentile({4.25}, 0.99), 4.25);
}

// The same list sorted in full, for comparison.
std::vector<double> sorted_copy(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values;
}

TEST(Statistics, SelectionAgreesWithAFullSort) {
    for (std::size_t m = 1; m <= 80; ++m) {
        // Values on a coarse grid so that ties are frequent.
        std::vector<double> values = signal_uniform(m, m, -4.0, 4.0);
        for (double& value : values)
            value = std::round(value * 2.0) / 2.0;
        const std::vector<double> sorted = sorted_copy(values);
        const double expected_median =
            m % 2 == 1 ? sorted[m / 2] : (sorted[m / 2 - 1] + sorted[m / 2]) / 2.0;
        EXPECT_EQ(median(values), expected_median) << m;
        for (const double p : {0.0, 0.25, 0.5, 0.95, 0.99, 1.0}) {
            const auto index = static_cast<std::size_t>(std::round(p * static_cast<double>(m - 1)));
            EXPECT_EQ(percentile(values, p), sorted[std::min(index, m - 1)]) << m << " " << p;
        }
    }
}

TEST(Statistics, SelectionKeepsTheValues) {
    std::vector<double> values = signal_uniform(5, 1001, -1.0, 1.0);
    const std::vector<double> before = sorted_copy(values);
    median_of(values);
    nearest_rank_percentile(values, 0.99);
    EXPECT_EQ(sorted_copy(values), before);
}

TEST(Statistics, MagnitudePercentileEqualsThePercentileOfACopyOfMagnitudes) {
    for (std::size_t m = 1; m <= 80; ++m) {
        // A coarse grid of both signs, zeros of both signs among them, so magnitudes tie often.
        std::vector<double> values = signal_uniform(100 + m, m, -3.0, 3.0);
        for (double& value : values)
            value = std::round(value * 2.0) / 2.0 + 0.0;
        if (m > 2) values[1] = -0.0;
        for (const double p : {0.0, 0.5, 0.95, 0.99, 1.0}) {
            std::vector<double> magnitudes;
            for (const double value : values)
                magnitudes.push_back(std::fabs(value));
            const double expected = nearest_rank_percentile(magnitudes, p);
            std::vector<double> work = values;
            const double got = nearest_rank_magnitude_percentile(work, p);
            EXPECT_EQ(got, expected) << m << " " << p;
            EXPECT_FALSE(std::signbit(got));
            // Reordered, but the same signed values: a median taken after it is unchanged.
            EXPECT_EQ(sorted_copy(work), sorted_copy(values));
        }
    }
}

} // namespace
