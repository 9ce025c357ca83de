// The level-fidelity measurement written as plainly as possible: one pass storing every dB ratio,
// then three full ascending sorts (ratios, absolute ratios, absolute deviations from the median)
// and the median and percentile read off the sorted arrays. The tests compare the fast check
// against it field by field, and the benchmark uses it as the baseline. It works on plain
// interleaved arrays so that it shares no code with the check it verifies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

struct ReferenceLevelChannel {
    bool passed = false;
    std::uint64_t samples_included = 0;
    std::uint64_t samples_excluded = 0;
    double median_db = 0.0;
    double mad_db = 0.0;
    double p99_abs_db = 0.0;
    bool has_data = false;
    std::uint64_t worst_sample = 0;
    double worst_diff_db = 0.0;
    double worst_ref_amp = 0.0;
    double worst_dut_amp = 0.0;
    double longest_sustained_run_ms = 0.0;
    bool sustained_fail = false;
};

struct ReferenceLevelResult {
    ReferenceLevelChannel channel[2];
    std::uint32_t channels = 0;
    bool passed = false;
};

// Two equally laid-out files: `channels` values per frame, frame f channel k at f * channels + k.
struct ReferenceLevelInput {
    std::span<const double> ref;
    std::span<const double> dut;
    std::uint32_t channels = 0;
    std::uint32_t sample_rate = 0;
    std::int64_t offset = 0; // reference frame n pairs with DUT frame n + offset
    double floor_db = 0.0;
    double tolerance_db = 0.0;
    double min_run_ms = 0.0;
};

ReferenceLevelResult reference_level_fidelity(const ReferenceLevelInput& input);
