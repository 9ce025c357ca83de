// The matched filter: agreement with a direct correlation on small random inputs, the first-wins
// tie rule, the signed peak, the excluded neighbourhood (including K < 5) and degenerate sizes.
#include "align/correlation_plan.h"
#include "align/matched_filter.h"
#include "align/window_correlation.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

// The same search evaluated lag by lag without a transform.
MatchedFilterResult direct_matched_filter(const std::vector<double>& s,
                                          const std::vector<double>& t) {
    const std::size_t lags = s.size() - t.size() + 1;
    std::vector<double> c(lags, 0.0);
    std::size_t peak = 0;
    for (std::size_t k = 0; k < lags; ++k) {
        for (std::size_t j = 0; j < t.size(); ++j) {
            c[k] += s[k + j] * t[j];
        }
        if (std::fabs(c[k]) > std::fabs(c[peak])) peak = k;
    }
    const std::size_t w = std::min(t.size(), lags < 5 ? std::size_t{1} : lags / 4);
    double sum = 0.0;
    std::size_t count = 0;
    for (std::size_t k = 0; k < lags; ++k) {
        if (k + w >= peak && k <= peak + w) continue;
        sum += std::fabs(c[k]);
        ++count;
    }
    const double psr = (count == 0 || sum == 0.0) ? 0.0 : std::fabs(c[peak]) / (sum / count);
    return {peak, psr, c[peak]};
}

TEST(MatchedFilter, AgreesWithDirectCorrelationOnSmallRandomData) {
    SignalRng rng = signal_rng(4242);
    for (int trial = 0; trial < 300; ++trial) {
        const auto m = static_cast<std::size_t>(signal_next_int(rng, 1, 40));
        const auto n = m + static_cast<std::size_t>(signal_next_int(rng, 0, 200));
        std::vector<double> s(n);
        std::vector<double> t(m);
        for (double& v : s)
            v = signal_next_uniform(rng, -1.0, 1.0);
        for (double& v : t)
            v = signal_next_uniform(rng, -1.0, 1.0);
        const MatchedFilterResult fast = matched_filter(s, t);
        const MatchedFilterResult slow = direct_matched_filter(s, t);
        ASSERT_EQ(fast.index, slow.index) << "trial " << trial;
        EXPECT_NEAR(fast.psr, slow.psr, 1e-9 * slow.psr) << "trial " << trial;
        EXPECT_NEAR(fast.peak, slow.peak, 1e-9 * std::fabs(slow.peak)) << "trial " << trial;
    }
}

// A template nearly as long as the signal makes the search window narrow enough for the plan to
// cut the signal into blocks; every lag still agrees with the direct sum.
TEST(MatchedFilter, AgreesWithDirectCorrelationAcrossBlocks) {
    const std::vector<double> t = signal_uniform(21, 66000, -1.0, 1.0);
    std::vector<double> s = signal_uniform(22, 70000, -0.5, 0.5);
    for (std::size_t j = 0; j < t.size(); ++j)
        s[1234 + j] += t[j];
    const LagWindow window{0, static_cast<std::int64_t>(s.size() - t.size())};
    ASSERT_LT(plan_blocks(s.size(), t.size(), window).block, s.size());
    const MatchedFilterResult fast = matched_filter(s, t);
    const MatchedFilterResult slow = direct_matched_filter(s, t);
    ASSERT_EQ(fast.index, 1234u);
    ASSERT_EQ(fast.index, slow.index);
    EXPECT_NEAR(fast.psr, slow.psr, 1e-9 * slow.psr);
    EXPECT_NEAR(fast.peak, slow.peak, 1e-9 * std::fabs(slow.peak));
}

// The filter's correlations are the alignment's window sums over the lags 0 ... n - m, bit for bit.
TEST(MatchedFilter, PeakIsTheWindowCorrelationSum) {
    const std::vector<double> t = signal_uniform(23, 300, -1.0, 1.0);
    const std::vector<double> s = signal_uniform(24, 5000, -1.0, 1.0);
    const LagWindow window{0, static_cast<std::int64_t>(s.size() - t.size())};
    const WindowSums sums =
        correlate_window(view_of(s), view_of(t), window, plan_blocks(s.size(), t.size(), window));
    ASSERT_NE(sums.c, nullptr);
    const MatchedFilterResult r = matched_filter(s, t);
    EXPECT_EQ(r.peak, sums.c[r.index]);
}

TEST(MatchedFilter, FindsAnEmbeddedTemplateAtItsLag) {
    const std::vector<double> t = signal_uniform(9, 64, -1.0, 1.0);
    std::vector<double> s = signal_uniform(10, 1000, -0.05, 0.05);
    for (std::size_t j = 0; j < t.size(); ++j) {
        s[337 + j] += t[j];
    }
    const MatchedFilterResult r = matched_filter(s, t);
    EXPECT_EQ(r.index, 337u);
    EXPECT_GT(r.peak, 0.0);
    EXPECT_GT(r.psr, 10.0);
}

TEST(MatchedFilter, EqualMagnitudesKeepTheFirstLagAndTheSignedPeak) {
    // With one template sample the correlation is the signal itself; a 4-point transform is exact.
    const MatchedFilterResult r =
        matched_filter(std::vector<double>{0.0, -5.0, 5.0, 1.0}, std::vector<double>{1.0});
    EXPECT_EQ(r.index, 1u);
    EXPECT_EQ(r.peak, -5.0);
    // K = 4: lags 0..2 are excluded, lag 3 is left: 5 / 1.
    EXPECT_NEAR(r.psr, 5.0, 1e-12);
}

TEST(MatchedFilter, AllZeroCorrelationGivesLagZeroAndPsrZero) {
    const MatchedFilterResult r =
        matched_filter(std::vector<double>(16, 0.0), std::vector<double>{0.5, -0.25});
    EXPECT_EQ(r.index, 0u);
    EXPECT_EQ(r.psr, 0.0);
    EXPECT_EQ(r.peak, 0.0);
}

TEST(MatchedFilter, FewLagsExcludeOneNeighbourEachSide) {
    // m = 2, n = 4: K = 3, K / 4 would be 0, but fewer than 5 lags exclude one each side.
    // c = {8, 2, 4}: the peak at 0 and lag 1 are excluded, lag 2 is left: PSR 8 / 4.
    const MatchedFilterResult r =
        matched_filter(std::vector<double>{8.0, 2.0, 4.0, 0.0}, std::vector<double>{1.0, 0.0});
    EXPECT_EQ(r.index, 0u);
    EXPECT_NEAR(r.peak, 8.0, 1e-12);
    EXPECT_NEAR(r.psr, 2.0, 1e-12);
}

TEST(MatchedFilter, PeakWithNoLagLeftGivesPsrZero) {
    // K = 2: both lags fall inside the excluded neighbourhood.
    const MatchedFilterResult r =
        matched_filter(std::vector<double>{1.0, 3.0}, std::vector<double>{1.0});
    EXPECT_EQ(r.index, 1u);
    EXPECT_EQ(r.psr, 0.0);
}

TEST(MatchedFilter, ExclusionHalfWidthIsCappedByTheTemplateLength) {
    // m = 1, K = 12: K / 4 = 3 but the half-width is min(1, 3) = 1. Lags 4..6 are excluded and
    // the nine others average (8 * 1 + 4) / 9.
    std::vector<double> s(12, 1.0);
    s[5] = 10.0;
    s[3] = 4.0;
    const MatchedFilterResult r = matched_filter(s, std::vector<double>{1.0});
    EXPECT_EQ(r.index, 5u);
    EXPECT_NEAR(r.psr, 10.0 / (12.0 / 9.0), 1e-12);
}

TEST(MatchedFilter, ExclusionHalfWidthIsAQuarterOfTheLags) {
    // m = 4, n = 23: K = 20 and w = min(4, 5) = 4: lags 4..12 are excluded, 11 are left.
    std::vector<double> s(23, 1.0);
    s[8] = 20.0;
    s[4] = 9.0;  // excluded
    s[13] = 9.0; // counted
    const MatchedFilterResult r = matched_filter(s, std::vector<double>{1.0, 0.0, 0.0, 0.0});
    EXPECT_EQ(r.index, 8u);
    EXPECT_NEAR(r.psr, 20.0 / (19.0 / 11.0), 1e-12);
}

TEST(MatchedFilter, ExclusionStopsAtLagZero) {
    // Peak at lag 1 with w = 3 (m = 8, K = 12): lags 0..4 are excluded, 7 are left.
    std::vector<double> s(19, 0.0);
    std::vector<double> t(8, 0.0);
    t[0] = 1.0;
    std::fill(s.begin(), s.begin() + 12, 2.0);
    s[1] = 14.0;
    const MatchedFilterResult r = matched_filter(s, t);
    EXPECT_EQ(r.index, 1u);
    EXPECT_NEAR(r.psr, 7.0, 1e-12);
}

TEST(MatchedFilter, TemplateLongerThanSignalOrEmptyGivesZeroes) {
    const MatchedFilterResult longer =
        matched_filter(std::vector<double>{1.0, 2.0}, std::vector<double>{1.0, 2.0, 3.0});
    EXPECT_EQ(longer.index, 0u);
    EXPECT_EQ(longer.psr, 0.0);
    EXPECT_EQ(longer.peak, 0.0);
    const MatchedFilterResult empty = matched_filter(std::vector<double>{1.0, 2.0}, {});
    EXPECT_EQ(empty.psr, 0.0);
    EXPECT_EQ(empty.peak, 0.0);
}

TEST(MatchedFilter, EqualLengthsGiveOneLag) {
    const MatchedFilterResult r =
        matched_filter(std::vector<double>{1.0, 2.0, 3.0}, std::vector<double>{3.0, 2.0, 1.0});
    EXPECT_EQ(r.index, 0u);
    EXPECT_NEAR(r.peak, 10.0, 1e-12);
    EXPECT_EQ(r.psr, 0.0);
}

} // namespace
