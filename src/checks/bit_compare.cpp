#include "checks/bit_compare.h"

#include "audio/audio.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

namespace {

// 6 dB per doubling of the LSB error: the factor is exactly 6 (not 6.02) and the divisor is
// log10(2) to these digits. Both are kept as they are because every reported dB figure and the
// 108 dB default ceiling of bit accuracy are stated on this scale.
constexpr double kDbPerDoubling = 6.0;
constexpr double kLog10Of2 = 0.3010299956639812;

// How a difference of two sample values becomes a count of LSB steps.
struct LsbScale {
    bool float_mode = false;
    double steps = 0.0; // S: steps per unit of full scale
};

// What the scan carries besides the result record.
struct Scan {
    LsbScale lsb;
    double worst_error = 0.0; // largest error so far, in LSB steps
};

LsbScale choose_lsb_scale(const WavFile& ref, const WavFile& dut) {
    if (wav_format_is_float(ref.format) || wav_format_is_float(dut.format))
        return {true, kWavInt24FullScale};
    // The DUT's depth decides the step, not the reference's: S * value is the DUT's stored code.
    return {false, wav_int_full_scale(dut.format)};
}

double lsb_error(const LsbScale& lsb, double r, double u) {
    if (!lsb.float_mode)
        return std::fabs(round_half_away_from_zero(lsb.steps * r) -
                         round_half_away_from_zero(lsb.steps * u));
    // 64-bit float samples far beyond full scale can overflow |r - u| * S; the error saturates at
    // the largest double so that the dB figure stays a finite number.
    return std::min(std::fabs(r - u) * lsb.steps, std::numeric_limits<double>::max());
}

void record_difference(BitCompareResult& result, Scan& scan, std::uint64_t frame,
                       std::uint32_t channel, double r, double u) {
    if (result.samples_differing == 0) {
        result.first_diff_frame = frame;
        result.first_diff_channel = channel;
        result.first_diff_ref_value = r;
        result.first_diff_dut_value = u;
    }
    ++result.samples_differing;
    const double error = lsb_error(scan.lsb, r, u);
    // Strictly greater: of two equal errors the earlier one stays the worst, and a difference
    // that rounds to an error of 0 never becomes the worst, so those fields stay zero for it.
    if (error > scan.worst_error) {
        scan.worst_error = error;
        result.worst_diff_frame = frame;
        result.worst_diff_channel = channel;
        result.worst_diff_ref_value = r;
        result.worst_diff_dut_value = u;
    }
}

// With equal channel counts the overlap is one contiguous run of frames in each file, walked in
// the scan order frame, then channel.
void scan_overlap(const AlignedPair& pair, BitCompareResult& result, Scan& scan) {
    // Every reference channel is compared, as the sample count is defined on the reference's
    // channel count; the driver only ever passes mono or stereo files.
    const std::size_t channels = pair.ref->channels;
    const std::span<const double> r = pair.ref_frames;
    const std::span<const double> u = pair.dut_frames;
    for (std::size_t n = 0; n < pair.overlap.length; ++n) {
        for (std::uint32_t k = 0; k < channels; ++k) {
            const std::size_t i = n * channels + k;
            if (r[i] == u[i]) continue; // plain equality: +0 equals -0
            record_difference(result, scan, pair.overlap.ref_start + n, k, r[i], u[i]);
        }
    }
    result.samples_compared = pair.overlap.length * channels;
}

double error_db(double worst_error) {
    if (worst_error > 0.0) return kDbPerDoubling * std::log10(worst_error) / kLog10Of2;
    return kBitCompareNoErrorDb;
}

bool bit_compare_passed(const BitCompareResult& result, double tolerance_db) {
    if (result.samples_compared == 0) return false;
    if (tolerance_db == 0.0) return result.samples_differing == 0;
    return tolerance_db >= result.max_error_db;
}

} // namespace

BitCompareResult bit_compare(const AlignedPair& pair, double tolerance_db) {
    BitCompareResult result;
    Scan scan{choose_lsb_scale(*pair.ref, *pair.dut), 0.0};
    // Pairs of unequal channel count never reach here from the driver; one that does compares
    // nothing rather than reading DUT samples under the reference's frame layout.
    if (pair.overlap.length > 0 && pair.dut->channels == pair.ref->channels)
        scan_overlap(pair, result, scan);
    result.max_error_db = error_db(scan.worst_error);
    result.passed = bit_compare_passed(result, tolerance_db);
    return result;
}
