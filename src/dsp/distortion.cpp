#include "dsp/distortion.h"

#include "audio/audio.h"
#include "dsp/distortion_frame.h"
#include "dsp/frame_plan.h"
#include "dsp/spectrum_frame.h"
#include "dsp/statistics.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <span>

namespace {

using Scratch = std::unique_ptr<double[]>;

// The settings in the form the scan uses them.
struct ScanSettings {
    std::size_t n = 0;
    std::size_t notch_bins = 0;
    bool continuous = false;
    std::size_t hop = 1;
    double gate = 0.0; // linear magnitude the fundamental must exceed
    double tolerance = 0.0;
};

// Frames start at first, first + hop, ... (count of them), in reference frames.
struct FramePlan {
    std::size_t first = 0;
    std::size_t hop = 1;
    std::size_t count = 0;
};

// The worst ungated frame so far; the first ungated frame always beats the initial -1.0.
struct WorstFrame {
    double ratio = -1.0;
    double db = 0.0;
    std::size_t start = 0;
    std::size_t k0 = 0;
};

ScanSettings make_settings(std::size_t n, std::size_t notch_bins, bool continuous,
                           double noise_floor_db, double tolerance_ratio, double overlap_fraction) {
    ScanSettings s;
    s.n = n;
    s.notch_bins = notch_bins;
    s.continuous = continuous;
    s.hop = frame_hop(n, overlap_fraction);
    s.gate = db_to_linear(noise_floor_db);
    s.tolerance = tolerance_ratio;
    return s;
}

// Needs overlap.length >= s.n.
FramePlan plan_frames(const Overlap& overlap, const ScanSettings& s) {
    if (s.continuous) {
        return {overlap.ref_start, s.hop, (overlap.length - s.n) / s.hop + 1};
    }
    return {centred_frame_start(overlap, s.n), s.hop, 1};
}

// Transforms every planned frame, counting gated ones, keeping each ungated ratio in `ratios`
// and tracking the worst. Returns the number of ratios kept.
std::size_t scan_frames(const AlignedPair& pair, unsigned channel, const ScanSettings& s,
                        const FramePlan& plan, double* scratch, DistortionChannelResult& out,
                        WorstFrame& worst) {
    const std::size_t bins = s.n / 2;
    const std::span<const double> ref_mag(scratch, bins);
    const std::span<const double> dut_mag(scratch + bins, bins);
    double* const ratios = scratch + 2 * bins;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < plan.count; ++i) {
        const std::size_t start = plan.first + i * plan.hop;
        const auto dut_start =
            static_cast<std::size_t>(static_cast<std::int64_t>(start) + pair.offset);
        spectrum_mag_frame(*pair.ref, channel, start, s.n, scratch);
        spectrum_mag_frame(*pair.dut, channel, dut_start, s.n, scratch + bins);
        const std::size_t k0 = distortion_fundamental_bin(ref_mag);
        if (!(ref_mag[k0] > s.gate)) {
            ++out.frames_gated;
            continue;
        }
        const ThdnFigure figure = distortion_thdn(ref_mag, dut_mag, k0, s.notch_bins);
        ratios[kept++] = figure.ratio;
        if (figure.ratio > worst.ratio) worst = {figure.ratio, figure.db, start, k0};
    }
    return kept;
}

// Fills the worst-frame figures, the percentiles and the verdict from `kept` ratios (kept > 0).
void finish_channel(std::span<double> ratios, const WorstFrame& worst, const ScanSettings& s,
                    double sample_rate, DistortionChannelResult& out) {
    out.worst_frame_start = worst.start;
    out.fundamental_freq_hz =
        static_cast<double>(worst.k0) * sample_rate / static_cast<double>(s.n);
    out.thdn_ratio = worst.ratio;
    out.thdn_db = worst.db;
    out.p50_thdn_ratio = nearest_rank_percentile(ratios, 0.5);
    out.p95_thdn_ratio = nearest_rank_percentile(ratios, 0.95);
    out.passed = worst.ratio <= s.tolerance;
}

DistortionChannelResult measure_channel(const AlignedPair& pair, unsigned channel,
                                        const ScanSettings& s) {
    DistortionChannelResult out;
    out.passed = true;
    // A channel the DUT lacks has nothing to line up with and counts as an empty overlap; a
    // transform of fewer than two points has no bins and counts as too short.
    const Overlap overlap = channel < pair.dut->channels ? pair.overlap : Overlap{};
    if (overlap.length < s.n || s.n < 2) {
        out.insufficient_samples = true;
        return out;
    }
    const FramePlan plan = plan_frames(overlap, s);
    // Both magnitude frames and one ratio per planned frame; without them the channel keeps
    // its pass flag and every count and figure stays 0.
    const Scratch scratch(new (std::nothrow) double[2 * (s.n / 2) + plan.count]);
    if (!scratch) return out;
    WorstFrame worst;
    const std::size_t kept = scan_frames(pair, channel, s, plan, scratch.get(), out, worst);
    out.frames_scanned = plan.count;
    if (kept == 0) {
        out.frame_gated = true;
        return out;
    }
    const std::span<double> ratios(scratch.get() + 2 * (s.n / 2), kept);
    finish_channel(ratios, worst, s, static_cast<double>(pair.ref->sample_rate), out);
    return out;
}

} // namespace

DistortionResult distortion_check(const AlignedPair& pair, std::size_t n, std::size_t notch_bins,
                                  bool continuous, double noise_floor_db, double tolerance_ratio,
                                  double overlap_fraction) {
    DistortionResult result;
    result.channels = pair.ref->channels;
    result.passed = true;
    const ScanSettings s =
        make_settings(n, notch_bins, continuous, noise_floor_db, tolerance_ratio, overlap_fraction);
    const unsigned examined = std::min(result.channels, 2u);
    for (unsigned channel = 0; channel < examined; ++channel) {
        result.channel[channel] = measure_channel(pair, channel, s);
        result.passed = result.passed && result.channel[channel].passed;
    }
    return result;
}
