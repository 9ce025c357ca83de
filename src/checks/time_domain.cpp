#include "checks/time_domain.h"

#include "audio/audio.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

// The three levels as linear magnitudes and the tolerance of each tier.
struct ScanLevels {
    double floor = 0.0;
    double peak = 0.0;
    double low = 0.0;
    double peak_tolerance_pct = 0.0;
    double low_level_tolerance_pct = 0.0;
    double signal_tolerance_pct = 0.0;
};

// The tier a scored pair falls in: its tolerance and the counter its failures go to.
struct Tier {
    double tolerance_pct = 0.0;
    std::uint64_t* fails = nullptr;
};

// One channel's record while it is being scanned, with the largest failing percentage so far.
struct ChannelScan {
    TimeDomainChannel& out;
    double worst_pct = -1.0;
};

// Low-level only when both magnitudes are at or below the low level; peak when either is above
// the peak level; the signal tier otherwise.
Tier pair_tier(double a, double b, const ScanLevels& levels, TimeDomainChannel& out) {
    if (levels.low >= a && levels.low >= b)
        return {levels.low_level_tolerance_pct, &out.fails_low_level_signal_tier};
    if (a > levels.peak || b > levels.peak)
        return {levels.peak_tolerance_pct, &out.fails_peak_tier};
    return {levels.signal_tolerance_pct, &out.fails_signal_tier};
}

// The percentage difference of a pair that is not excluded (so at least one side is above the
// floor). r, u are the signed samples and a, b their magnitudes.
double pair_pct(double r, double u, double a, double b, double noise_floor) {
    double held_r = r;
    double held_u = u;
    // Held values, kept as designed: a side below the floor is raised to the floor carrying the
    // other side's sign, so a DUT drop-out under a loud reference scores nearly 100 %.
    if (noise_floor > a)
        held_r = std::copysign(noise_floor, u);
    else if (noise_floor > b)
        held_u = std::copysign(noise_floor, r);
    // Signed divisor, kept as designed: a negative held reference gives a zero or negative
    // percentage, so only pairs with a positive held reference can ever fail.
    return std::fabs(held_u - held_r) * 100.0 / held_r;
}

void score_pair(ChannelScan& scan, std::size_t n, double r, double u, const ScanLevels& levels) {
    TimeDomainChannel& out = scan.out;
    const double a = std::fabs(r);
    const double b = std::fabs(u);
    if (levels.floor >= a && levels.floor >= b) {
        ++out.samples_excluded;
        return;
    }
    const Tier tier = pair_tier(a, b, levels, out);
    ++out.samples_included;
    const double pct = pair_pct(r, u, a, b, levels.floor);
    if (!(pct > tier.tolerance_pct)) return;
    ++*tier.fails;
    ++out.total_fails;
    // The worst starts at -1.0, so with a tolerance below -1 % a failure can leave it unrecorded.
    if (pct > scan.worst_pct) {
        scan.worst_pct = pct;
        out.worst_sample = n;
        out.worst_diff_pct = pct;
        out.worst_ref_amp = r;
        out.worst_dut_amp = u;
        out.worst_tolerance_pct = tier.tolerance_pct;
    }
}

void scan_channel(const AlignedPair& pair, std::size_t k, const ScanLevels& levels,
                  TimeDomainChannel& out) {
    // A DUT without channel k has nothing to pair with it (the driver only passes equal counts).
    const AlignedChannel channel = aligned_channel(pair, k);
    ChannelScan scan{out};
    for (std::size_t i = 0; i < channel.ref.size; ++i)
        score_pair(scan, channel.ref_first + i, view_at(channel.ref, i), view_at(channel.dut, i),
                   levels);
    out.has_failures = out.total_fails > 0;
    out.passed = !out.has_failures;
}

} // namespace

TimeDomainResult time_domain_scan(const AlignedPair& pair, double noise_floor_db,
                                  double peak_threshold_db, double peak_tolerance_pct,
                                  double low_level_threshold_db, double low_level_tolerance_pct,
                                  double signal_tolerance_pct) {
    // Starts zeroed: an unexamined second channel of a mono file keeps passed == false.
    TimeDomainResult result;
    result.channels = pair.ref->channels;
    result.passed = true;
    if (result.channels == 0) return result;
    const ScanLevels levels{db_to_linear(noise_floor_db),
                            db_to_linear(peak_threshold_db),
                            db_to_linear(low_level_threshold_db),
                            peak_tolerance_pct,
                            low_level_tolerance_pct,
                            signal_tolerance_pct};
    const std::size_t examined = std::min<std::size_t>(result.channels, 2);
    for (std::size_t k = 0; k < examined; ++k) {
        scan_channel(pair, k, levels, result.channel[k]);
        result.passed = result.passed && result.channel[k].passed;
    }
    return result;
}
