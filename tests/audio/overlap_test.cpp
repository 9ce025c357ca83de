// The stretch of reference frames that a file offset pairs with DUT frames.
#include "audio/overlap.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

void expect_overlap(std::int64_t offset, std::size_t ref_frames, std::size_t dut_frames,
                    std::size_t start, std::size_t length) {
    const Overlap overlap = overlap_from_offset(offset, ref_frames, dut_frames);
    EXPECT_EQ(overlap.ref_start, start) << "offset " << offset;
    EXPECT_EQ(overlap.length, length) << "offset " << offset;
}

TEST(Overlap, ZeroOffsetEqualLengthsCoversEverything) {
    expect_overlap(0, 1000, 1000, 0, 1000);
}

TEST(Overlap, LateDutLeavesTheReferenceTailUncovered) {
    // DUT frame n + 100 pairs with reference frame n: the last 100 reference frames have no DUT.
    expect_overlap(100, 1000, 1000, 0, 900);
}

TEST(Overlap, EarlyDutSkipsTheReferenceHead) {
    // Reference frames 0 .. 99 would pair with DUT frames before its start.
    expect_overlap(-100, 1000, 1000, 100, 900);
}

TEST(Overlap, ShorterDutLimitsTheEnd) {
    expect_overlap(0, 1000, 600, 0, 600);
    expect_overlap(50, 1000, 600, 0, 550);
    expect_overlap(-50, 1000, 600, 50, 600);
}

TEST(Overlap, LongerDutIsLimitedByTheReference) {
    expect_overlap(0, 600, 1000, 0, 600);
    expect_overlap(300, 600, 1000, 0, 600);
    expect_overlap(401, 600, 1000, 0, 599);
    expect_overlap(-50, 600, 1000, 50, 550);
}

TEST(Overlap, OffsetBeyondEitherFileLeavesNothing) {
    expect_overlap(1000, 1000, 1000, 0, 0);
    expect_overlap(5000, 1000, 1000, 0, 0);
    expect_overlap(-1000, 1000, 1000, 1000, 0);
    expect_overlap(-5000, 1000, 1000, 5000, 0);
    expect_overlap(999, 1000, 1000, 0, 1);
    expect_overlap(-999, 1000, 1000, 999, 1);
}

TEST(Overlap, EmptyFilesLeaveNothing) {
    expect_overlap(0, 0, 1000, 0, 0);
    expect_overlap(0, 1000, 0, 0, 0);
    expect_overlap(-3, 0, 0, 3, 0);
}

} // namespace
