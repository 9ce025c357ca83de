// The bit comparison at the edges: file offsets of both signs, extreme codes, one-frame and
// silent files, differences that round away, float DUTs and pairs that cannot be compared.
#include "bit_compare_files.h"

#include "checks/bit_compare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using bit_compare_test::float_file;
using bit_compare_test::int16_codes;
using bit_compare_test::int_file;

// The reference is `codes`; the DUT has `lead` extra frames of code 7 in front, so reference
// frame n is DUT frame n + lead, and then `tail` frames of the reference cut off at its end.
WavFile delayed_dut(const std::vector<std::int64_t>& codes, std::uint32_t channels,
                    std::size_t lead, std::size_t tail) {
    std::vector<std::int64_t> dut(lead * channels, 7);
    dut.insert(dut.end(), codes.begin(),
               codes.end() - static_cast<std::ptrdiff_t>(tail * channels));
    return int_file(kWavFormatInt16, channels, dut);
}

TEST(BitCompareEdges, PositiveOffsetPairsReferenceFrameWithLaterDutFrame) {
    std::vector<std::int64_t> codes = int16_codes(40, 2);
    const WavFile ref = int_file(kWavFormatInt16, 2, codes);
    codes[2 * 30] += codes[2 * 30] < 0 ? 2 : -2; // reference frame 30, channel 0, two codes off
    const WavFile dut = delayed_dut(codes, 2, 5, 0);
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 5), 0.0);
    EXPECT_FALSE(r.passed);
    EXPECT_EQ(r.samples_compared, 80u); // DUT frames 5..44 cover every reference frame
    EXPECT_EQ(r.samples_differing, 1u);
    EXPECT_EQ(r.first_diff_frame, 30u);
    EXPECT_EQ(r.first_diff_channel, 0u);
    EXPECT_EQ(r.worst_diff_frame, 30u);
    EXPECT_EQ(r.max_error_db, 6.0);
}

TEST(BitCompareEdges, NegativeOffsetSkipsTheReferenceFramesBeforeTheDut) {
    const std::vector<std::int64_t> codes = int16_codes(40, 1);
    const WavFile ref = int_file(kWavFormatInt16, 1, codes);
    // The DUT starts at reference frame 6 (offset -6) and stops 4 frames before the reference.
    std::vector<std::int64_t> dut_codes(codes.begin() + 6, codes.end() - 4);
    dut_codes[10] = codes[16] == 0 ? 1 : 0; // reference frame 16
    const WavFile dut = int_file(kWavFormatInt16, 1, dut_codes);
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, -6), 0.0);
    EXPECT_EQ(r.samples_compared, 30u);
    EXPECT_EQ(r.samples_differing, 1u);
    EXPECT_EQ(r.first_diff_frame, 16u);
    EXPECT_EQ(r.first_diff_ref_value, static_cast<double>(codes[16]) / 32767.0);
    EXPECT_FALSE(r.passed);
    EXPECT_TRUE(
        bit_compare(
            aligned_pair(ref, int_file(kWavFormatInt16, 1, {codes.begin() + 6, codes.end()}), -6),
            0.0)
            .passed);
}

TEST(BitCompareEdges, OffsetTrimsTheEndOfTheReference) {
    const std::vector<std::int64_t> codes = int16_codes(20, 2);
    const WavFile ref = int_file(kWavFormatInt16, 2, codes);
    const WavFile dut = delayed_dut(codes, 2, 3, 8); // covers reference frames 0..11 only
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 3), 0.0);
    EXPECT_EQ(r.samples_compared, 24u);
    EXPECT_EQ(r.samples_differing, 0u);
    EXPECT_TRUE(r.passed);
}

TEST(BitCompareEdges, MostNegativeCodeAgainstPositiveFullScale) {
    const WavFile ref = int_file(kWavFormatInt16, 1, {-32768});
    const WavFile dut = int_file(kWavFormatInt16, 1, {32767});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), 108.0);
    EXPECT_EQ(r.first_diff_ref_value, -32768.0 / 32767.0);
    EXPECT_EQ(r.first_diff_dut_value, 1.0);
    EXPECT_EQ(r.max_error_db, 6.0 * std::log10(65535.0) / 0.3010299956639812);
    EXPECT_NEAR(r.max_error_db, 95.999868, 1e-6);
    EXPECT_TRUE(r.passed);
    EXPECT_FALSE(bit_compare(aligned_pair(ref, dut, 0), 95.9).passed);
}

TEST(BitCompareEdges, OneFrameFiles) {
    const WavFile ref = int_file(kWavFormatInt24, 2, {5, -5});
    const WavFile dut = int_file(kWavFormatInt24, 2, {5, -9});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), 12.0);
    EXPECT_EQ(r.samples_compared, 2u);
    EXPECT_EQ(r.worst_diff_channel, 1u);
    EXPECT_EQ(r.max_error_db, 12.0);
    EXPECT_TRUE(r.passed);
    EXPECT_FALSE(bit_compare(aligned_pair(ref, dut, 1), 108.0).passed); // no overlap left
}

TEST(BitCompareEdges, SilentFilesAreEqualEvenWithNegativeZero) {
    const WavFile ref = float_file(kWavFormatFloat64, 2, std::vector<double>(64, 0.0));
    const WavFile dut = float_file(kWavFormatFloat64, 2, std::vector<double>(64, -0.0));
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), 0.0);
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(r.samples_compared, 64u);
    EXPECT_EQ(r.samples_differing, 0u);
    EXPECT_EQ(r.max_error_db, -999.0);
}

TEST(BitCompareEdges, DifferenceBelowHalfAStepCountsWithZeroError) {
    // 24-bit code 256 is 0.99999... 16-bit steps and rounds to the DUT's code 1.
    const WavFile ref = int_file(kWavFormatInt24, 1, {256, 0});
    const WavFile dut = int_file(kWavFormatInt16, 1, {1, 0});
    const BitCompareResult strict = bit_compare(aligned_pair(ref, dut, 0), 0.0);
    EXPECT_EQ(strict.samples_differing, 1u);
    EXPECT_EQ(strict.max_error_db, -999.0);
    EXPECT_FALSE(strict.passed);
    EXPECT_EQ(strict.first_diff_ref_value, 256.0 / 8388607.0);
    EXPECT_EQ(strict.worst_diff_frame, 0u); // no error above zero: the worst stays unset
    EXPECT_EQ(strict.worst_diff_ref_value, 0.0);
    EXPECT_TRUE(bit_compare(aligned_pair(ref, dut, 0), 108.0).passed);
}

TEST(BitCompareEdges, FloatDutAgainstIntegerReferenceUsesFloatMode) {
    const WavFile ref = int_file(kWavFormatInt24, 1, {100});
    const WavFile dut = float_file(kWavFormatFloat64, 1, {100.25 / 8388607.0});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), 108.0);
    const double error = std::fabs(100.0 / 8388607.0 - 100.25 / 8388607.0) * 8388607.0;
    EXPECT_NEAR(error, 0.25, 1e-9);
    EXPECT_EQ(r.max_error_db, 6.0 * std::log10(error) / 0.3010299956639812);
    EXPECT_NEAR(r.max_error_db, -12.0, 1e-6); // a quarter step, not rounded away
}

TEST(BitCompareEdges, ThirtyTwoBitDutUsesThirtyTwoBitSteps) {
    const WavFile ref = int_file(kWavFormatInt32, 1, {-2147483648LL});
    const WavFile dut = int_file(kWavFormatInt32, 1, {2147483647LL});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), 108.0);
    EXPECT_EQ(r.max_error_db, 6.0 * std::log10(4294967295.0) / 0.3010299956639812);
    EXPECT_FALSE(r.passed); // about 192 dB
}

TEST(BitCompareEdges, HugeFloatDifferenceStaysFinite) {
    const double big = std::numeric_limits<double>::max();
    const WavFile ref = float_file(kWavFormatFloat64, 1, {big});
    const WavFile dut = float_file(kWavFormatFloat64, 1, {-big});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), 108.0);
    EXPECT_TRUE(std::isfinite(r.max_error_db));
    EXPECT_EQ(r.max_error_db, 6.0 * std::log10(big) / 0.3010299956639812);
    EXPECT_FALSE(r.passed);
}

TEST(BitCompareEdges, DifferentChannelCountsCompareNothing) {
    const WavFile ref = int_file(kWavFormatInt16, 2, {1, 2, 3, 4});
    const WavFile dut = int_file(kWavFormatInt16, 1, {1, 2, 3, 4});
    const BitCompareResult r = bit_compare(aligned_pair(ref, dut, 0), 108.0);
    EXPECT_EQ(r.samples_compared, 0u);
    EXPECT_EQ(r.max_error_db, -999.0);
    EXPECT_FALSE(r.passed);
}

TEST(BitCompareEdges, EmptyFilesFail) {
    const WavFile empty = int_file(kWavFormatInt16, 1, {});
    const BitCompareResult r = bit_compare(aligned_pair(empty, empty, 0), 0.0);
    EXPECT_EQ(r.samples_compared, 0u);
    EXPECT_FALSE(r.passed);
}

} // namespace
