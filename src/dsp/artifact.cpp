#include "dsp/artifact.h"

#include "audio/decibels.h"
#include "audio/overlap.h"
#include "dsp/artifact_events.h"
#include "dsp/artifact_sample.h"
#include "dsp/sliding_median.h"
#include "dsp/statistics.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <span>

namespace {

// Spreads are raised to this before dividing by them, so that a neighbourhood (or a file) of
// equal differences still gives finite deviations.
constexpr double kMinSpread = 1e-12;
// The median absolute deviation times this estimates the standard deviation of normal noise.
constexpr double kMadToSigma = 1.4826;

using Scratch = std::unique_ptr<double[]>;

// One channel of the aligned pair: reference frame ref_first + i pairs with DUT frame
// dut_first + i for i < length.
struct ChannelPair {
    const WavFile* ref = nullptr;
    const WavFile* dut = nullptr;
    std::size_t channel = 0;
    std::size_t ref_first = 0;
    std::size_t dut_first = 0;
    std::size_t length = 0;
};

// The settings in the form the scan uses them.
struct ScanSettings {
    double floor = 0.0; // linear magnitude
    bool float_dut = false;
    std::size_t half = 0; // neighbourhood reach on either side
    ArtifactEventRules rules;
};

ChannelPair channel_pair(const WavFile& ref, const WavFile& dut, std::int64_t offset,
                         std::size_t channel) {
    ChannelPair pair{&ref, &dut, channel, 0, 0, 0};
    // A channel the DUT lacks has nothing to line up with and counts as an empty overlap.
    if (channel >= dut.channels) return pair;
    const Overlap overlap = overlap_from_offset(offset, ref.frames, dut.frames);
    pair.ref_first = overlap.ref_start;
    pair.dut_first =
        static_cast<std::size_t>(static_cast<std::int64_t>(overlap.ref_start) + offset);
    pair.length = overlap.length;
    return pair;
}

double ref_sample(const ChannelPair& p, std::size_t i) {
    return p.ref->samples[(p.ref_first + i) * p.ref->channels + p.channel];
}

double dut_sample(const ChannelPair& p, std::size_t i) {
    return p.dut->samples[(p.dut_first + i) * p.dut->channels + p.channel];
}

void fill_differences(const ChannelPair& p, std::span<double> e) {
    for (std::size_t i = 0; i < e.size(); ++i)
        e[i] = dut_sample(p, i) - ref_sample(p, i);
}

// The whole-file spread: the median of |e - median(e)|, raised to kMinSpread. Every difference of
// the overlap takes part, those of excluded samples too. The median routine reorders its input,
// so the differences are worked on in `e` and written back in order after.
double global_spread(const ChannelPair& p, std::span<double> e) {
    fill_differences(p, e);
    const double centre = median_of(e);
    for (double& v : e)
        v = std::fabs(v - centre);
    const double spread = std::max(median_of(e), kMinSpread);
    fill_differences(p, e);
    return spread;
}

// Flags every sample that is not excluded and whose local deviation exceeds k or that passes the
// silence/clip test, and hands the flagged ones to the event walk.
void scan_samples(const ChannelPair& p, const ScanSettings& s, std::span<const double> e,
                  double global, std::span<double> window, ArtifactEventWalk& walk,
                  ArtifactChannelResult& out) {
    SlidingNeighbourhood hood = sliding_start(e, s.half, window);
    for (std::size_t i = 0; i < p.length; ++i, sliding_advance(hood)) {
        const double r = ref_sample(p, i);
        const double d = dut_sample(p, i);
        // An excluded sample is never flagged but keeps its place in its neighbours' windows.
        if (artifact_sample_excluded(r, d, s.floor)) {
            ++out.samples_excluded;
            continue;
        }
        // An empty neighbourhood gives median 0 and spread 0, raised to kMinSpread.
        const NeighbourhoodStats local = neighbourhood_stats(hood);
        const double a = std::fabs(e[i] - local.median);
        const double z_local = a / (kMadToSigma * std::max(local.mad, kMinSpread));
        const bool silence_clip = artifact_silence_or_clip(r, d, s.float_dut);
        if (!(z_local > s.rules.k) && !silence_clip) continue;
        const double z_global = a / (kMadToSigma * global);
        artifact_walk_flagged(walk, {p.ref_first + i, z_local, z_global, silence_clip});
    }
}

ArtifactChannelResult measure_channel(const ChannelPair& p, const ScanSettings& s) {
    ArtifactChannelResult out;
    if (p.length == 0) return out;
    const Scratch differences(new (std::nothrow) double[p.length]);
    const std::size_t window_size = sliding_scratch_size(p.length, s.half);
    const Scratch window(new (std::nothrow) double[window_size]);
    if (!differences || !window) return out;
    const std::span<double> e(differences.get(), p.length);
    const double global = global_spread(p, e);
    ArtifactEventWalk walk;
    walk.rules = s.rules;
    scan_samples(p, s, e, global, std::span<double>(window.get(), window_size), walk, out);
    out.samples_checked = p.length;
    artifact_walk_finish(walk, out);
    return out;
}

} // namespace

ArtifactResult artifact_check(const WavFile& ref, const WavFile& dut, std::int64_t dut_offset,
                              double k, double noise_floor_db, std::size_t window_samples,
                              std::size_t min_run, double min_severity, double min_global_severity,
                              std::size_t min_silence_clip_run) {
    ArtifactResult result;
    result.channels = ref.channels;
    result.passed = true;
    ScanSettings s;
    s.floor = db_to_linear(noise_floor_db);
    s.float_dut = wav_format_is_float(dut.format);
    s.half = window_samples / 2;
    s.rules = {k, min_run, min_severity, min_global_severity, min_silence_clip_run};
    const std::size_t examined = std::min<std::size_t>(ref.channels, 2);
    for (std::size_t channel = 0; channel < examined; ++channel) {
        result.channel[channel] = measure_channel(channel_pair(ref, dut, dut_offset, channel), s);
        result.passed = result.passed && result.channel[channel].passed;
    }
    return result;
}
