// Bit-exactness and bit accuracy: one pass over the aligned overlap of two files that counts the
// samples whose values differ, remembers the first and the worst difference, and states the worst
// as a dB figure of 6 dB per doubling of the error in least-significant-bit steps.
#pragma once

#include "audio/audio.h"

#include <cstdint>

// max_error_db when nothing differs or nothing was compared.
inline constexpr double kBitCompareNoErrorDb = -999.0;

struct BitCompareResult {
    bool passed = false;
    std::uint64_t samples_compared = 0;  // overlap frames * reference channel count
    std::uint64_t samples_differing = 0; // samples whose values are not equal
    std::uint64_t first_diff_frame = 0;  // reference frame (scan order: frame, then channel)
    std::uint32_t first_diff_channel = 0;
    double first_diff_ref_value = 0.0;
    double first_diff_dut_value = 0.0;
    double max_error_db = kBitCompareNoErrorDb;
    std::uint64_t worst_diff_frame = 0; // reference frame of the largest error (earliest on ties)
    std::uint32_t worst_diff_channel = 0;
    double worst_diff_ref_value = 0.0;
    double worst_diff_dut_value = 0.0;
};

// Compares each reference frame of the pair's overlap with its DUT partner, channel by channel.
// Errors are counted in steps of the DUT's integer depth, or of 24 bits when either file is float.
// tolerance_db 0 demands equal samples; any other value passes while the worst error in dB does not
// exceed it. An empty overlap fails. Allocates nothing. Both files must have the same channel count
// (the driver refuses other pairs); a pair that does not compares nothing and fails.
BitCompareResult bit_compare(const AlignedPair& pair, double tolerance_db);
