// The template of one frame, position by position: floor, edge guards, ratio, transient runs with
// their core and side levels, and the caps at full scale.
#include "checks/impulse_template_frame.h"
#include "impulse_template_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

ImpulseTemplateLevels default_levels(std::size_t guard = kImpulseGuard) {
    return {kImpulseFloor, kImpulsePeak, 1.25, guard};
}

std::vector<double> build(const std::vector<double>& r,
                          const ImpulseTemplateLevels& levels = default_levels()) {
    std::vector<double> t(r.size(), -1.0);
    build_impulse_template(r, levels, t);
    return t;
}

// The template of a silent frame of `len` positions with the default levels.
std::vector<double> silent_template(std::size_t len) {
    std::vector<double> t(len, kImpulseFloor);
    const std::size_t edge = std::min(kImpulseGuard, len);
    std::fill(t.begin(), t.begin() + static_cast<std::ptrdiff_t>(edge), kImpulsePeak);
    std::fill(t.end() - static_cast<std::ptrdiff_t>(edge), t.end(), kImpulsePeak);
    return t;
}

// Sets v to `value` over [lo, hi).
void set_range(std::vector<double>& v, std::size_t lo, std::size_t hi, double value) {
    std::fill(v.begin() + static_cast<std::ptrdiff_t>(lo),
              v.begin() + static_cast<std::ptrdiff_t>(hi), value);
}

TEST(ImpulseTemplateFrame, SilentFrameIsFloorWithPeakLevelEdges) {
    std::vector<double> expected(20, kImpulseFloor);
    set_range(expected, 0, 5, kImpulsePeak);
    set_range(expected, 15, 20, kImpulsePeak);
    EXPECT_EQ(build(std::vector<double>(20, 0.0)), expected);
}

TEST(ImpulseTemplateFrame, FrameShorterThanTwoGuardsIsPeakLevelThroughout) {
    EXPECT_EQ(build(std::vector<double>(7, 0.0)), std::vector<double>(7, kImpulsePeak));
    EXPECT_EQ(build(std::vector<double>(3, 0.0)), std::vector<double>(3, kImpulsePeak));
    EXPECT_EQ(build(std::vector<double>(1, 0.0)), std::vector<double>(1, kImpulsePeak));
    // Quiet material (no runs) only raises it where 1.25 r is higher still.
    const std::vector<double> t = build({0.1, 0.3, 0.2, 0.0, 0.25, 0.31, 0.05, 0.0, 0.3});
    for (const double level : t)
        EXPECT_GE(level, kImpulsePeak);
    EXPECT_EQ(t[1], 0.3 * 1.25);
    EXPECT_EQ(t[8], 0.3 * 1.25);
    EXPECT_EQ(t[3], kImpulsePeak);
}

TEST(ImpulseTemplateFrame, ZeroGuardLeavesTheEdgesAtTheFloor) {
    EXPECT_EQ(build(std::vector<double>(6, 0.0), default_levels(0)),
              std::vector<double>(6, kImpulseFloor));
}

TEST(ImpulseTemplateFrame, EdgesAreSetToThePeakLevelEvenBelowTheFloor) {
    const ImpulseTemplateLevels levels{0.5, 0.25, 1.25, 2};
    EXPECT_EQ(build(std::vector<double>(6, 0.0), levels),
              (std::vector<double>{0.25, 0.25, 0.5, 0.5, 0.25, 0.25}));
}

TEST(ImpulseTemplateFrame, QuietMaterialFollowsRatioTimesReference) {
    std::vector<double> r(20, 0.0);
    r[7] = 0.2;
    r[8] = 0.01; // 1.25 * 0.01 stays under the floor
    r[2] = 0.3;  // under the peak level, and 1.25 * 0.3 rises above it
    std::vector<double> expected = silent_template(20);
    expected[7] = 0.2 * 1.25;
    expected[2] = 0.3 * 1.25;
    EXPECT_EQ(build(r), expected);
}

TEST(ImpulseTemplateFrame, TransientPeakingAtHalfAllowsCoreLevelTwoSamplesAround) {
    std::vector<double> r(40, 0.0);
    r[20] = 0.4;
    r[21] = 0.5;
    r[22] = 0.4;
    std::vector<double> expected = silent_template(40);
    set_range(expected, 18, 25, 0.625); // [a - 2, b + 2]
    EXPECT_EQ(build(r), expected);
}

TEST(ImpulseTemplateFrame, SideLevelComesFromTheLouderNeighbourOnBothSides) {
    std::vector<double> r(50, 0.0);
    r[15] = 0.125; // before window [a - 2 - g, a - 2] = [13, 18]
    r[20] = 0.5;   // the run [20, 21]
    r[21] = 0.5;
    r[27] = 0.25; // after window [b + 2, b + 2 + g] = [23, 28]
    std::vector<double> expected = silent_template(50);
    set_range(expected, 13, 18, 0.3125); // g positions before the core
    set_range(expected, 18, 24, 0.625);  // core [a - 2, b + 2] = [18, 23]
    set_range(expected, 24, 29, 0.3125); // g positions after the core
    EXPECT_EQ(build(r), expected);
}

TEST(ImpulseTemplateFrame, NeighbourWindowsStopAtGuardBeyondTheMargins) {
    std::vector<double> r(50, 0.0);
    r[12] = 0.3;  // one before a - 2 - g: not a neighbour
    r[18] = 0.25; // a - 2: the nearest neighbour position, inside the core
    r[20] = 0.5;
    r[28] = 0.3; // one after b + 2 + g: not a neighbour
    std::vector<double> expected = silent_template(50);
    set_range(expected, 13, 18, 0.3125);
    set_range(expected, 18, 23, 0.625);
    set_range(expected, 23, 28, 0.3125);
    expected[12] = 0.3 * 1.25;
    expected[28] = 0.3 * 1.25;
    EXPECT_EQ(build(r), expected);
}

TEST(ImpulseTemplateFrame, NeighbourWindowsReachGuardBeyondTheMargins) {
    for (const std::size_t neighbour : {std::size_t{13}, std::size_t{27}}) {
        std::vector<double> r(50, 0.0);
        r[20] = 0.5;         // the run [20, 20]
        r[neighbour] = 0.25; // a - 2 - g or b + 2 + g
        std::vector<double> expected = silent_template(50);
        set_range(expected, 13, 18, 0.3125);
        set_range(expected, 18, 23, 0.625);
        set_range(expected, 23, 28, 0.3125);
        EXPECT_EQ(build(r), expected) << neighbour;
    }
}

TEST(ImpulseTemplateFrame, CoreAndSideLevelsAreCappedAtFullScale) {
    std::vector<double> r(60, 0.0);
    r[20] = 0.9; // two one-sample runs, each the other's neighbour
    r[23] = 0.9;
    std::vector<double> expected = silent_template(60);
    set_range(expected, 13, 31, 1.0); // sides and cores, all min(0.9 * 1.25, 1.0)
    expected[20] = 0.9 * 1.25;        // the ratio itself is not capped
    expected[23] = 0.9 * 1.25;
    EXPECT_EQ(build(r), expected);
}

TEST(ImpulseTemplateFrame, RunAtTheFrameStartHasNoBeforeSide) {
    std::vector<double> r(30, 0.0);
    r[1] = 0.5;
    r[6] = 0.25; // after window [3, 8]
    std::vector<double> expected = silent_template(30);
    set_range(expected, 0, 4, 0.625);  // core [0, 3]
    set_range(expected, 5, 9, 0.3125); // side [4, 9); at 4 the edge's peak level is higher
    EXPECT_EQ(build(r), expected);
}

TEST(ImpulseTemplateFrame, NeighbourAtPositionZeroOfARunAtTwoWidensOnlyAfterIt) {
    std::vector<double> r(30, 0.0);
    r[0] = 0.25; // before window [0, 0]; the side region before the core [0, 0) is empty
    r[2] = 0.5;
    std::vector<double> expected = silent_template(30);
    set_range(expected, 0, 5, 0.625);
    set_range(expected, 5, 10, 0.3125);
    EXPECT_EQ(build(r), expected);
}

TEST(ImpulseTemplateFrame, RunCutByTheFrameEndEndsThere) {
    std::vector<double> r(30, 0.0);
    r[20] = 0.25; // before window [20, 25] of the run [27, 29]
    r[27] = 0.4;
    r[28] = 0.5;
    r[29] = 0.5;
    std::vector<double> expected = silent_template(30);
    set_range(expected, 20, 25, 0.3125);
    set_range(expected, 25, 30, 0.625);
    EXPECT_EQ(build(r), expected);
}

TEST(ImpulseTemplateFrame, AfterNeighbourAtTheLastPositionWidensBeforeTheRun) {
    std::vector<double> r(30, 0.0);
    r[27] = 0.5;  // the run [27, 27]; b + 2 is the last position
    r[29] = 0.25; // after window [29, 29]
    std::vector<double> expected = silent_template(30);
    set_range(expected, 20, 25, 0.3125);
    set_range(expected, 25, 30, 0.625);
    EXPECT_EQ(build(r), expected);
}

TEST(ImpulseTemplateFrame, WholeFrameAboveThePeakLevelIsOneRun) {
    const std::vector<double> r{0.5, 0.6, 0.7, 0.8, 0.9, 0.8, 0.7, 0.6, 0.5, 0.4, 0.4, 0.4};
    const std::vector<double> t = build(r);
    for (std::size_t i = 0; i < r.size(); ++i)
        EXPECT_EQ(t[i], std::max(1.0, 1.25 * r[i])) << i;
}

TEST(ImpulseTemplateFrame, RunNeedsMagnitudesStrictlyAboveThePeakLevel) {
    std::vector<double> r(40, 0.0);
    r[20] = kImpulsePeak; // equal to the peak level: no run, only the ratio
    std::vector<double> expected = silent_template(40);
    expected[20] = kImpulsePeak * 1.25;
    EXPECT_EQ(build(r), expected);
}

} // namespace
