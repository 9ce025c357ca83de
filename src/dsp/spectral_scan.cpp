#include "dsp/spectral_scan.h"

#include "dsp/frame_plan.h"
#include "dsp/spectral_channel.h"

#include <algorithm>
#include <optional>

namespace {

// Where the frames of one channel start: `regular` frames from `first`, `hop` apart, then the
// tail frame when there is one.
struct ScanPlan {
    std::size_t first = 0;
    std::size_t hop = 1;
    std::size_t regular = 1;
    std::optional<std::size_t> tail;
    std::size_t edge_skip = 0;
};

// e = min(max(edge_skip, 0), (L - n) / 2) with edge handling, else 0.
std::size_t edge_skip(const Overlap& overlap, const SpectralSettings& s) {
    if (!s.edge_handling || s.edge_skip_samples <= 0) return 0;
    const auto wanted = static_cast<std::size_t>(s.edge_skip_samples);
    return std::min(wanted, (overlap.length - s.n) / 2);
}

// Needs overlap.length >= s.n.
ScanPlan continuous_plan(const Overlap& overlap, const SpectralSettings& s) {
    ScanPlan plan;
    plan.hop = frame_hop(s.n, s.overlap_fraction);
    plan.edge_skip = edge_skip(overlap, s);
    plan.first = overlap.ref_start + plan.edge_skip;
    plan.regular = (overlap.length - s.n - 2 * plan.edge_skip) / plan.hop + 1;
    // The tail frame covers what the regular frames leave uncovered before the end's edge skip.
    const std::size_t covered_end = overlap.ref_start + overlap.length - plan.edge_skip;
    const std::size_t last_end = plan.first + (plan.regular - 1) * plan.hop + s.n;
    if (s.edge_handling && last_end < covered_end) plan.tail = covered_end - s.n;
    return plan;
}

// The single centred frame, or the continuous scan; edge handling belongs to the continuous form
// only, so a single frame ignores it.
ScanPlan scan_plan(const Overlap& overlap, const SpectralSettings& s) {
    if (s.continuous) return continuous_plan(overlap, s);
    ScanPlan plan;
    plan.first = centred_frame_start(overlap, s.n);
    return plan;
}

SpectralChannelResult scan_channel(const AlignedPair& pair, unsigned channel,
                                   const SpectralSettings& s) {
    SpectralChannelResult out;
    const std::optional<Overlap> overlap = spectral_usable_overlap(pair, s.n, channel + 1);
    if (!overlap) {
        out.insufficient_samples = true;
        return out;
    }
    const ScanPlan plan = scan_plan(*overlap, s);
    const std::size_t frames = plan.regular + (plan.tail ? 1 : 0);
    SpectralChannelWork work;
    // Without working arrays the record stays empty, the edge skip included.
    if (!spectral_channel_prepare(pair, channel, s, frames, work)) return out;
    out.edge_skipped_samples = plan.edge_skip;
    SpectralRecordFold fold = spectral_record_begin(work);
    for (std::size_t i = 0; i < plan.regular; ++i) {
        spectral_record_frame(work, plan.first + i * plan.hop, fold, out);
    }
    if (plan.tail) spectral_record_frame(work, *plan.tail, fold, out);
    spectral_record_finish(work, fold, out);
    return out;
}

} // namespace

SpectralScanResult spectral_scan(const AlignedPair& pair, const SpectralSettings& settings) {
    SpectralScanResult result;
    result.channels = pair.ref->channels;
    const unsigned examined = std::min(result.channels, 2u);
    for (unsigned channel = 0; channel < examined; ++channel) {
        result.channel[channel] = scan_channel(pair, channel, settings);
        result.passed = result.passed && result.channel[channel].passed;
    }
    return result;
}
