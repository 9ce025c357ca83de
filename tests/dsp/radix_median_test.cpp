// The counting-pass medians against the selection routine (statistics.h) on the same values:
// tiny lists, long random lists that need counting passes, values crowded into one narrow range
// so that the range narrows digit by digit, middle ranks that fall into different digits, equal
// values, signed zeros and infinities; and the medians of the distances from a centre.
#include "dsp/radix_median.h"
#include "dsp/statistics.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

double selected_median(std::vector<double> values) {
    return median_of(values);
}

double selected_median_of_deviations(const std::vector<double>& values, double centre) {
    std::vector<double> d(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        d[i] = std::fabs(values[i] - centre);
    return median_of(d);
}

void expect_same_medians(const std::vector<double>& values) {
    const double centre = radix_median(values);
    EXPECT_EQ(centre, selected_median(values)) << values.size() << " values";
    for (const double c : {centre, 0.0, -0.25, 3.0}) {
        EXPECT_EQ(radix_median_of_deviations(values, c), selected_median_of_deviations(values, c))
            << values.size() << " values, centre " << c;
    }
}

TEST(RadixMedian, EmptyAndTinyLists) {
    EXPECT_EQ(radix_median({}), 0.0);
    EXPECT_EQ(radix_median_of_deviations({}, 1.0), 0.0);
    expect_same_medians({2.5});
    expect_same_medians({2.5, -1.0});
    expect_same_medians({3.0, -1.0, 2.0});
    expect_same_medians({1.0, 1.0, 1.0, 1.0});
}

TEST(RadixMedian, RandomListsOfEveryParity) {
    for (const std::size_t n : {5u, 64u, 65u, 1000u, 1001u, 100000u, 100001u, 300000u}) {
        expect_same_medians(signal_uniform(50 + n, n, -1.0, 1.0));
        expect_same_medians(signal_uniform(60 + n, n, -3e-5, 1e-5));
    }
}

TEST(RadixMedian, ValuesCrowdedIntoANarrowRange) {
    // 200000 consecutive doubles above 1: every key shares its top digits, so the range narrows
    // through several counting passes before it is small enough to collect.
    std::vector<double> values(200000);
    double v = 1.0;
    for (double& x : values) {
        x = v;
        v = std::nextafter(v, 2.0);
    }
    expect_same_medians(values);
    SignalRng rng = signal_rng(70);
    for (double& x : values)
        x = 1.0 + static_cast<double>(signal_next_int(rng, 0, 1 << 20)) * 0x1p-52;
    expect_same_medians(values);
}

TEST(RadixMedian, MiddleRanksInDifferentDigits) {
    // An even count split evenly between two far apart values, and between two clusters.
    std::vector<double> values(150000, 1.0);
    values.resize(300000, std::ldexp(1.0, 40));
    expect_same_medians(values);
    std::vector<double> clusters = signal_uniform(71, 150000, -2.0, -1.0);
    const std::vector<double> high = signal_uniform(72, 150000, 1e6, 2e6);
    clusters.insert(clusters.end(), high.begin(), high.end());
    expect_same_medians(clusters);
    // Clusters of like magnitude on either side of 2, so that both middle values count in the
    // mean.
    std::vector<double> near = signal_uniform(73, 150000, 1.0, 1.5);
    const std::vector<double> above = signal_uniform(74, 150000, 2.0, 2.5);
    near.insert(near.end(), above.begin(), above.end());
    expect_same_medians(near);
}

TEST(RadixMedian, EqualValuesSignedZerosAndInfinities) {
    SignalRng rng = signal_rng(75);
    std::vector<double> values(120000);
    for (double& x : values) {
        const std::int64_t pick = signal_next_int(rng, 0, 5);
        x = pick == 0 ? -0.0 : pick == 1 ? 0.0 : pick == 2 ? 1e-300 : static_cast<double>(pick);
    }
    expect_same_medians(values);
    values.resize(100001);
    values[7] = std::numeric_limits<double>::infinity();
    values[9] = -std::numeric_limits<double>::infinity();
    expect_same_medians(values);
    expect_same_medians(std::vector<double>(70000, -0.0));
}

} // namespace
