#include "dsp/artifact.h"

#include "audio/audio.h"
#include "dsp/artifact_events.h"
#include "dsp/artifact_sample.h"
#include "dsp/nothrow_array.h"
#include "dsp/radix_median.h"
#include "dsp/sliding_bounds.h"
#include "dsp/sliding_median.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <span>

namespace {

// Samples between two progress reports.
constexpr std::size_t kProgressStep = 1 << 16;

// Spreads are raised to this before dividing by them, so that a neighbourhood (or a file) of
// equal differences still gives finite deviations.
constexpr double kMinSpread = 1e-12;
// The median absolute deviation times this estimates the standard deviation of normal noise.
constexpr double kMadToSigma = 1.4826;

using Scratch = std::unique_ptr<double[]>;

// The settings in the form the scan uses them.
struct ScanSettings {
    double floor = 0.0; // linear magnitude
    bool float_dut = false;
    std::size_t half = 0; // neighbourhood reach on either side
    ArtifactEventRules rules;
};

void fill_differences(const AlignedChannel& p, std::span<double> e) {
    for (std::size_t i = 0; i < e.size(); ++i)
        e[i] = view_at(p.dut, i) - view_at(p.ref, i);
}

// The whole-file spread: the median of |e - median(e)|, raised to kMinSpread. Every difference of
// the overlap takes part, those of excluded samples too.
double global_spread(std::span<const double> e) {
    const double centre = radix_median(e);
    return std::max(radix_median_of_deviations(e, centre), kMinSpread);
}

// What the scan of one channel works with: the pair, the settings, the differences, the
// whole-file spread, the exact neighbourhood cursor and the figures being gathered.
struct ChannelScan {
    const AlignedChannel* pair = nullptr;
    const ScanSettings* settings = nullptr;
    std::span<const double> differences;
    double global = 0.0;
    SlidingNeighbourhood exact;
    ArtifactEventWalk* walk = nullptr;
    ArtifactChannelResult* out = nullptr;
};

// For a batch of samples: every median lies in [median_low, median_high], and no distance from
// the median up to `within` can give a local deviation above k. With every denominator
// kMadToSigma * max(MAD, kMinSpread) at least low = kMadToSigma * max(mad_low, kMinSpread) and
// k > 0, `within` is the next double below k * low: a distance a <= within has a / denominator
// <= k, and rounding the quotient cannot lift it above k. `usable` is false for k <= 0 (or NaN),
// where no bound saves the exact figures.
struct BatchLimits {
    double median_low = 0.0;
    double median_high = 0.0;
    double within = 0.0;
    bool usable = false;
};

BatchLimits batch_limits(const NeighbourhoodBounds& b, double k) {
    const double low = kMadToSigma * std::max(b.mad_low, kMinSpread);
    const double within = std::nextafter(k * low, -std::numeric_limits<double>::infinity());
    return {b.median_low, b.median_high, within, b.usable && k > 0.0};
}

// True when the sample's local deviation cannot exceed k whatever its exact figures: its distance
// from the median is at most the larger distance from the median's bounds.
bool surely_within(const BatchLimits& limits, double e) {
    const double a_high =
        std::max(std::fabs(e - limits.median_low), std::fabs(e - limits.median_high));
    return a_high <= limits.within;
}

// Flags sample i when it is not excluded and its local deviation exceeds k or it passes the
// silence/clip test, and hands it to the event walk. With limits that settle it, a sample that
// cannot be flagged needs no exact neighbourhood figures. True when it took the exact figures.
bool scan_sample(ChannelScan& scan, std::size_t i, const BatchLimits* limits) {
    const AlignedChannel& p = *scan.pair;
    const ScanSettings& s = *scan.settings;
    const double r = view_at(p.ref, i);
    const double d = view_at(p.dut, i);
    // An excluded sample is never flagged but keeps its place in its neighbours' windows.
    if (artifact_sample_excluded(r, d, s.floor)) {
        ++scan.out->samples_excluded;
        return false;
    }
    const double e = scan.differences[i];
    const bool silence_clip = artifact_silence_or_clip(r, d, s.float_dut);
    if (!silence_clip && limits && surely_within(*limits, e)) return false;
    sliding_seek(scan.exact, i);
    // An empty neighbourhood gives median 0 and spread 0, raised to kMinSpread.
    const NeighbourhoodStats local = neighbourhood_stats(scan.exact);
    const double a = std::fabs(e - local.median);
    const double z_local = a / (kMadToSigma * std::max(local.mad, kMinSpread));
    if (!(z_local > s.rules.k) && !silence_clip) return true;
    const double z_global = a / (kMadToSigma * scan.global);
    artifact_walk_flagged(*scan.walk, {p.ref_first + i, z_local, z_global, silence_clip});
    return true;
}

// The batch bounds pay off while they settle most samples. Where many samples need their exact
// figures anyway (most of them flagged, say), the cursor alone is cheaper: after kReviewBatches
// batches in which more than one sample in kBusyShare took exact figures, the bounds rest for
// kRestSamples samples and then start afresh.
constexpr std::size_t kReviewBatches = 64;
constexpr std::size_t kBusyShare = 8;
constexpr std::size_t kRestSamples = std::size_t{1} << 14;

struct BoundsRun {
    SlidingBounds bounds;
    std::size_t resume = 0;  // where resting bounds start again
    std::size_t batches = 0; // batches since the last review
    std::size_t exact = 0;   // samples of those batches that took exact figures
};

// True when a batch of bounds starts at sample i, starting resting bounds again there first.
// Without a positive k (or with a NaN) no bound can settle a sample, so none are kept.
bool batch_starts(BoundsRun& run, const ChannelScan& scan, std::size_t i) {
    if (!(scan.settings->rules.k > 0.0)) return false;
    if (!run.bounds.active && i == run.resume)
        run.bounds = sliding_bounds_start(scan.differences, scan.settings->half, i);
    return run.bounds.active && i == run.bounds.first;
}

void review(BoundsRun& run, std::size_t exact, std::size_t next_sample) {
    run.exact += exact;
    if (++run.batches < kReviewBatches) return;
    if (run.exact * kBusyShare > run.batches * kBoundsBatch) {
        run.bounds.active = false;
        run.resume = next_sample + kRestSamples;
    }
    run.batches = 0;
    run.exact = 0;
}

// Scans every sample in order. Where whole batches of windows lie inside the overlap, their
// bounds settle most samples; the others take their exact figures from the cursor.
void scan_samples(ChannelScan& scan) {
    const std::size_t length = scan.pair->ref.size;
    BoundsRun run;
    run.resume = scan.settings->half;
    std::size_t i = 0;
    std::size_t next_report = 0;
    while (i < length) {
        if (i >= next_report) {
            report_progress(static_cast<double>(i) / static_cast<double>(length));
            next_report = i + kProgressStep;
        }
        if (!batch_starts(run, scan, i)) {
            scan_sample(scan, i++, nullptr);
            continue;
        }
        const BatchLimits limits =
            batch_limits(sliding_bounds_of(run.bounds), scan.settings->rules.k);
        // The slide to the next batch goes first: the samples of this one do not depend on it,
        // so their tests run while its long chains of dependent loads wait.
        sliding_bounds_next(run.bounds);
        std::size_t exact = 0;
        for (const std::size_t end = i + kBoundsBatch; i < end; ++i)
            exact += scan_sample(scan, i, limits.usable ? &limits : nullptr) ? 1 : 0;
        review(run, exact, i);
    }
}

// Working arrays the channels share in turn: the differences and the exact cursor's window.
struct ChannelScratch {
    Scratch differences;
    Scratch window;
    std::size_t length = 0;
    std::size_t window_size = 0;
};

// Null arrays when they cannot be allocated.
ChannelScratch channel_scratch(std::size_t length, std::size_t half) {
    ChannelScratch scratch;
    scratch.length = length;
    scratch.window_size = sliding_scratch_size(length, half);
    scratch.differences = try_allocate_doubles(length);
    scratch.window = try_allocate_doubles(scratch.window_size);
    return scratch;
}

ArtifactChannelResult measure_channel(const AlignedChannel& p, const ScanSettings& s,
                                      const ChannelScratch& scratch) {
    ArtifactChannelResult out;
    const std::size_t length = p.ref.size;
    if (length == 0) return out;
    if (!scratch.differences || !scratch.window || scratch.length < length) return out;
    const std::span<double> e(scratch.differences.get(), length);
    fill_differences(p, e);
    ArtifactEventWalk walk;
    walk.rules = s.rules;
    ChannelScan scan;
    scan.pair = &p;
    scan.settings = &s;
    scan.differences = e;
    scan.global = global_spread(e);
    scan.exact = sliding_start(e, s.half, {scratch.window.get(), scratch.window_size});
    scan.walk = &walk;
    scan.out = &out;
    scan_samples(scan);
    out.samples_checked = length;
    artifact_walk_finish(walk, out);
    return out;
}

} // namespace

ArtifactResult artifact_check(const AlignedPair& pair, double k, double noise_floor_db,
                              std::size_t window_samples, std::size_t min_run, double min_severity,
                              double min_global_severity, std::size_t min_silence_clip_run) {
    ArtifactResult result;
    result.channels = pair.ref->channels;
    result.passed = true;
    ScanSettings s;
    s.floor = db_to_linear(noise_floor_db);
    s.float_dut = wav_format_is_float(pair.dut->format);
    s.half = window_samples / 2;
    s.rules = {k, min_run, min_severity, min_global_severity, min_silence_clip_run};
    const std::size_t examined = std::min<std::size_t>(result.channels, 2);
    // Every channel the DUT has spans the same overlap, so one set of arrays serves them all.
    const std::size_t length = pair.overlap.length;
    const ChannelScratch scratch =
        channel_scratch(examined > 0 && pair.dut->channels > 0 ? length : 0, s.half);
    for (std::size_t channel = 0; channel < examined; ++channel) {
        const ProgressPart part(channel, examined);
        result.channel[channel] = measure_channel(aligned_channel(pair, channel), s, scratch);
        result.passed = result.passed && result.channel[channel].passed;
    }
    return result;
}
