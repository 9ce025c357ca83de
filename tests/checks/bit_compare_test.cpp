// The documented cases of the bit comparison: identical files, one-code changes, the step size
// chosen by the formats, ties, tolerances and an empty overlap.
#include "bit_compare_files.h"

#include "checks/bit_compare.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using bit_compare_test::float_file;
using bit_compare_test::int16_codes;
using bit_compare_test::int_file;

constexpr double kStrict = 0.0;
constexpr double kAccuracyCeiling = 108.0;

void expect_no_difference_recorded(const BitCompareResult& r) {
    EXPECT_EQ(r.first_diff_frame, 0u);
    EXPECT_EQ(r.first_diff_channel, 0u);
    EXPECT_EQ(r.first_diff_ref_value, 0.0);
    EXPECT_EQ(r.first_diff_dut_value, 0.0);
    EXPECT_EQ(r.worst_diff_frame, 0u);
    EXPECT_EQ(r.worst_diff_channel, 0u);
    EXPECT_EQ(r.worst_diff_ref_value, 0.0);
    EXPECT_EQ(r.worst_diff_dut_value, 0.0);
}

TEST(BitCompare, IdenticalFilesPassAnyToleranceFromMinus999) {
    const WavFile ref = int_file(kWavFormatInt16, 2, int16_codes(100, 2));
    for (const double tolerance : {kStrict, kAccuracyCeiling, -999.0, 0.5}) {
        const BitCompareResult r = bit_compare(aligned_pair(ref, ref, 0), tolerance);
        EXPECT_TRUE(r.passed) << tolerance;
        EXPECT_EQ(r.samples_compared, 200u);
        EXPECT_EQ(r.samples_differing, 0u);
        EXPECT_EQ(r.max_error_db, -999.0);
        expect_no_difference_recorded(r);
    }
    EXPECT_FALSE(bit_compare(aligned_pair(ref, ref, 0), -999.5).passed);
}

TEST(BitCompare, OneCodeInSixteenBitPairIsZeroDb) {
    std::vector<std::int64_t> codes = int16_codes(50, 2);
    codes[2 * 17 + 1] = 1234;
    const WavFile ref = int_file(kWavFormatInt16, 2, codes);
    codes[2 * 17 + 1] = 1235;
    const WavFile dut = int_file(kWavFormatInt16, 2, codes);

    const BitCompareResult exact = bit_compare(aligned_pair(ref, dut, 0), kStrict);
    EXPECT_FALSE(exact.passed);
    EXPECT_EQ(exact.samples_compared, 100u);
    EXPECT_EQ(exact.samples_differing, 1u);
    EXPECT_EQ(exact.max_error_db, 0.0);
    EXPECT_EQ(exact.first_diff_frame, 17u);
    EXPECT_EQ(exact.first_diff_channel, 1u);
    EXPECT_EQ(exact.first_diff_ref_value, 1234.0 / 32767.0);
    EXPECT_EQ(exact.first_diff_dut_value, 1235.0 / 32767.0);
    EXPECT_EQ(exact.worst_diff_frame, 17u);
    EXPECT_EQ(exact.worst_diff_channel, 1u);
    EXPECT_EQ(exact.worst_diff_ref_value, 1234.0 / 32767.0);
    EXPECT_EQ(exact.worst_diff_dut_value, 1235.0 / 32767.0);

    const BitCompareResult accuracy = bit_compare(aligned_pair(ref, dut, 0), kAccuracyCeiling);
    EXPECT_TRUE(accuracy.passed);
    EXPECT_EQ(accuracy.max_error_db, 0.0);
}

TEST(BitCompare, TwentyFourBitDutIsMeasuredInItsOwnSteps) {
    // Reference code 1000 of 16 bits is 24-bit code 256008 after rounding; the DUT holds 256009.
    const WavFile ref = int_file(kWavFormatInt16, 1, {0, 1000, 0});
    const WavFile dut = int_file(kWavFormatInt24, 1, {0, 256009, 1});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), kAccuracyCeiling);
    EXPECT_EQ(r.samples_differing, 2u);
    EXPECT_EQ(r.max_error_db, 0.0); // one 24-bit step at most; 16-bit steps would round both away
    EXPECT_EQ(r.worst_diff_frame, 1u);
    EXPECT_EQ(r.worst_diff_dut_value, 256009.0 / 8388607.0);
    EXPECT_TRUE(r.passed);
}

TEST(BitCompare, FloatReferenceAgainstSixteenBitDutUsesFloatMode) {
    const WavFile ref = float_file(kWavFormatFloat32, 1, {0.5});
    const WavFile dut = int_file(kWavFormatInt16, 1, {16384});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), kAccuracyCeiling);
    const double error = std::fabs(0.5 - 16384.0 / 32767.0) * 8388607.0; // about 128.0039 steps
    EXPECT_EQ(r.max_error_db, 6.0 * std::log10(error) / 0.3010299956639812);
    EXPECT_NEAR(r.max_error_db, 42.000264, 1e-6);
    EXPECT_EQ(r.samples_differing, 1u);
    EXPECT_TRUE(r.passed);
}

TEST(BitCompare, EqualWorstErrorsReportTheEarlierOne) {
    const WavFile ref = int_file(kWavFormatInt16, 2, {0, 0, 10, 10, 20, 20, 30, 30});
    const WavFile dut = int_file(kWavFormatInt16, 2, {0, 0, 10, 13, 23, 20, 31, 30});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), kAccuracyCeiling);
    EXPECT_EQ(r.samples_differing, 3u);
    EXPECT_EQ(r.worst_diff_frame, 1u);
    EXPECT_EQ(r.worst_diff_channel, 1u);
    EXPECT_EQ(r.worst_diff_ref_value, 10.0 / 32767.0);
    EXPECT_EQ(r.worst_diff_dut_value, 13.0 / 32767.0);
    EXPECT_EQ(r.max_error_db, 6.0 * std::log10(3.0) / 0.3010299956639812);
}

TEST(BitCompare, HalfDbToleranceAcceptsOneLsbAndRejectsTwo) {
    const WavFile ref = int_file(kWavFormatInt16, 1, {100, 200});
    const WavFile one = int_file(kWavFormatInt16, 1, {101, 200});
    const WavFile two = int_file(kWavFormatInt16, 1, {100, 198});
    const BitCompareResult r1 = bit_compare(aligned_pair(ref, one, 0), 0.5);
    const BitCompareResult r2 = bit_compare(aligned_pair(ref, two, 0), 0.5);
    EXPECT_EQ(r1.max_error_db, 0.0);
    EXPECT_TRUE(r1.passed);
    EXPECT_EQ(r2.max_error_db, 6.0);
    EXPECT_FALSE(r2.passed);
}

TEST(BitCompare, OffsetLeavingNoOverlapFails) {
    const WavFile ref = int_file(kWavFormatInt16, 2, int16_codes(10, 2));
    for (const std::int64_t offset : {10, -10, 1000}) {
        for (const double tolerance : {kStrict, kAccuracyCeiling, -999.0}) {
            const BitCompareResult r = bit_compare(aligned_pair(ref, ref, offset), tolerance);
            EXPECT_FALSE(r.passed);
            EXPECT_EQ(r.samples_compared, 0u);
            EXPECT_EQ(r.samples_differing, 0u);
            EXPECT_EQ(r.max_error_db, -999.0);
            expect_no_difference_recorded(r);
        }
    }
}

TEST(BitCompare, ThreeLsbUsesTheExactConstants) {
    const WavFile ref = int_file(kWavFormatInt16, 1, {-5});
    const WavFile dut = int_file(kWavFormatInt16, 1, {-2});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), kAccuracyCeiling);
    EXPECT_EQ(r.max_error_db, 6.0 * std::log10(3.0) / 0.3010299956639812);
    EXPECT_NE(r.max_error_db, 6.02 * std::log10(3.0) / 0.3010299956639812);
    EXPECT_NE(r.max_error_db, 20.0 * std::log10(3.0));
}

TEST(BitCompare, FourLsbIsTwelveDb) {
    const WavFile ref = int_file(kWavFormatInt24, 1, {-8388608});
    const WavFile dut = int_file(kWavFormatInt24, 1, {-8388604});
    EXPECT_EQ(bit_compare(aligned_pair(ref, dut, 0), 12.0).max_error_db, 12.0);
    EXPECT_TRUE(bit_compare(aligned_pair(ref, dut, 0), 12.0).passed);
    EXPECT_FALSE(bit_compare(aligned_pair(ref, dut, 0), 11.999).passed);
}

} // namespace
