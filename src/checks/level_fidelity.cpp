#include "checks/level_fidelity.h"

#include "audio/audio.h"
#include "dsp/dsp.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <span>

namespace {

// Samples between two progress reports.
constexpr std::size_t kProgressStep = 1 << 16;

using ScratchBuffer = std::unique_ptr<double[]>;

// The settings in the form the scan uses them.
struct LevelLimits {
    double floor = 0.0; // linear magnitude
    double tol = 0.0;   // tolerance with its relative slack
    double min_run_ms = 0.0;
    double rate = 0.0; // reference sample rate
};

LevelLimits make_limits(const WavFile& ref, double floor_db, double tolerance_db,
                        double min_run_ms) {
    LevelLimits limits;
    // A floor_db so low that the power underflows to 0 would let two silent samples give 0 / 0;
    // holding the floor at the smallest normal double changes nothing above about -6150 dB.
    limits.floor = std::max(db_to_linear(floor_db), std::numeric_limits<double>::min());
    // The slack lets a ratio computed equal to the tolerance pass.
    limits.tol = tolerance_db + std::fabs(tolerance_db) * 1e-5;
    limits.min_run_ms = min_run_ms;
    limits.rate = static_cast<double>(ref.sample_rate);
    return limits;
}

// Channel k of the pair; empty unless both files have the same channel count.
AlignedChannel channel_of(const AlignedPair& pair, std::size_t k) {
    if (pair.ref->channels != pair.dut->channels) return {};
    return aligned_channel(pair, k);
}

// The per-sample pass: counts, the worst sample and every ratio, stored into `ratios` in scan
// order unless it is null (its allocation failed; the pass still measures everything else).
// Returns the longest run of out-of-tolerance included samples.
std::uint64_t scan_channel(const AlignedChannel& view, const LevelLimits& limits, double* ratios,
                           LevelFidelityChannel& out) {
    const std::size_t length = view.ref.size;
    double largest = -1.0;
    std::uint64_t run = 0;
    std::uint64_t longest = 0;
    for (std::size_t i = 0; i < length; ++i) {
        if (i % kProgressStep == 0)
            report_progress(static_cast<double>(i) / static_cast<double>(length));
        const double a = std::fabs(view_at(view.ref, i));
        const double b = std::fabs(view_at(view.dut, i));
        if (a < limits.floor && b < limits.floor) {
            ++out.samples_excluded;
            continue;
        }
        const double ratio_db =
            amplitude_ratio_db(std::max(b, limits.floor) / std::max(a, limits.floor));
        if (ratios) ratios[out.samples_included] = ratio_db;
        ++out.samples_included;
        const double magnitude = std::fabs(ratio_db);
        if (magnitude > largest) {
            largest = magnitude;
            out.worst_sample = view.ref_first + i;
            out.worst_diff_db = ratio_db;
            out.worst_ref_amp = a;
            out.worst_dut_amp = b;
        }
        run = magnitude > limits.tol ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

// p99 of the magnitudes, median and MAD of the ratios, all in the ratios' own storage (which ends
// up holding the absolute deviations): no second buffer the length of the file. Each statistic
// sees the same values as it would in a copy, so the results are those of separate copies.
void fill_statistics(std::span<double> ratios, LevelFidelityChannel& out) {
    out.p99_abs_db = nearest_rank_magnitude_percentile(ratios, 0.99);
    out.median_db = median_of(ratios);
    for (double& ratio : ratios)
        ratio = std::fabs(ratio - out.median_db);
    out.mad_db = median_of(ratios);
}

void apply_run_rule(std::uint64_t longest, const LevelLimits& limits, LevelFidelityChannel& out) {
    if (limits.rate == 0.0) return;
    out.longest_sustained_run_ms = static_cast<double>(longest) / limits.rate * 1000.0;
    out.sustained_fail =
        limits.min_run_ms > 0.0 && out.longest_sustained_run_ms >= limits.min_run_ms;
}

LevelFidelityChannel measure_channel(const AlignedChannel& view, const LevelLimits& limits) {
    LevelFidelityChannel out;
    const ScratchBuffer ratios(new (std::nothrow) double[view.ref.size]);
    apply_run_rule(scan_channel(view, limits, ratios.get(), out), limits, out);
    out.has_data = out.samples_included > 0;
    // A failed allocation fails the channel even when nothing was included: the statistics could
    // not have been taken had there been anything to take them of.
    if (!ratios) return out;
    if (!out.has_data) {
        out.passed = true;
        return out;
    }
    fill_statistics(std::span<double>(ratios.get(), out.samples_included), out);
    out.passed = limits.tol >= out.p99_abs_db && !out.sustained_fail;
    return out;
}

} // namespace

LevelFidelityResult level_fidelity(const AlignedPair& pair, double floor_db, double tolerance_db,
                                   double min_run_ms) {
    LevelFidelityResult result;
    result.channels = pair.ref->channels;
    result.passed = true;
    const LevelLimits limits = make_limits(*pair.ref, floor_db, tolerance_db, min_run_ms);
    const std::size_t examined = std::min<std::size_t>(result.channels, 2);
    for (std::size_t k = 0; k < examined; ++k) {
        const ProgressPart part(k, examined);
        result.channel[k] = measure_channel(channel_of(pair, k), limits);
        result.passed = result.passed && result.channel[k].passed;
    }
    return result;
}
