#include "support/level_fidelity_reference.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

double sorted_median(const std::vector<double>& sorted) {
    const std::size_t m = sorted.size();
    if (m % 2 == 1) return sorted[m / 2];
    return (sorted[m / 2 - 1] + sorted[m / 2]) / 2.0;
}

ReferenceLevelChannel reference_channel(const ReferenceLevelInput& in, std::size_t k) {
    ReferenceLevelChannel out;
    const std::int64_t ref_frames = static_cast<std::int64_t>(in.ref.size() / in.channels);
    const std::int64_t dut_frames = static_cast<std::int64_t>(in.dut.size() / in.channels);
    const double floor = std::pow(10.0, in.floor_db / 20.0);
    const double tol = in.tolerance_db + std::fabs(in.tolerance_db) * 1e-5;
    std::vector<double> ratios;
    double largest = -1.0;
    std::uint64_t run = 0;
    std::uint64_t longest = 0;
    const std::int64_t start = std::max<std::int64_t>(-in.offset, 0);
    const std::int64_t end = std::min(dut_frames - in.offset, ref_frames);
    for (std::int64_t n = start; n < end; ++n) {
        const double a = std::fabs(in.ref[static_cast<std::size_t>(n) * in.channels + k]);
        const double b =
            std::fabs(in.dut[static_cast<std::size_t>(n + in.offset) * in.channels + k]);
        if (a < floor && b < floor) {
            out.samples_excluded += 1;
            continue;
        }
        const double ratio_db = 20.0 * std::log10(std::max(b, floor) / std::max(a, floor));
        ratios.push_back(ratio_db);
        out.samples_included += 1;
        if (std::fabs(ratio_db) > largest) {
            largest = std::fabs(ratio_db);
            out.worst_sample = static_cast<std::uint64_t>(n);
            out.worst_diff_db = ratio_db;
            out.worst_ref_amp = a;
            out.worst_dut_amp = b;
        }
        if (std::fabs(ratio_db) > tol) {
            run += 1;
            longest = std::max(longest, run);
        } else {
            run = 0;
        }
    }
    if (in.sample_rate != 0)
        out.longest_sustained_run_ms = static_cast<double>(longest) / in.sample_rate * 1000.0;
    out.sustained_fail =
        in.min_run_ms > 0 && in.sample_rate != 0 && out.longest_sustained_run_ms >= in.min_run_ms;
    out.has_data = out.samples_included > 0;
    if (!out.has_data) {
        out.passed = true;
        return out;
    }
    std::vector<double> sorted = ratios;
    std::sort(sorted.begin(), sorted.end());
    out.median_db = sorted_median(sorted);
    std::vector<double> absolute(ratios.size());
    for (std::size_t i = 0; i < ratios.size(); ++i)
        absolute[i] = std::fabs(ratios[i]);
    std::sort(absolute.begin(), absolute.end());
    const std::size_t count = absolute.size();
    const auto index = static_cast<std::size_t>(std::round((count - 1) * 0.99));
    out.p99_abs_db = absolute[std::min(index, count - 1)];
    std::vector<double> deviations(ratios.size());
    for (std::size_t i = 0; i < ratios.size(); ++i)
        deviations[i] = std::fabs(ratios[i] - out.median_db);
    std::sort(deviations.begin(), deviations.end());
    out.mad_db = sorted_median(deviations);
    out.passed = tol >= out.p99_abs_db && !out.sustained_fail;
    return out;
}

} // namespace

ReferenceLevelResult reference_level_fidelity(const ReferenceLevelInput& input) {
    ReferenceLevelResult result;
    result.channels = input.channels;
    result.passed = true;
    for (std::size_t k = 0; k < std::min<std::size_t>(input.channels, 2); ++k) {
        result.channel[k] = reference_channel(input, k);
        result.passed = result.passed && result.channel[k].passed;
    }
    return result;
}
