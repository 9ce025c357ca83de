// Time of artifact detection on a 10-minute (or argv[1] minutes) 48 kHz stereo pair built in
// memory. The reference is program-like material; the DUT is 48 frames late, 0.02 dB louder,
// slightly bent on its peaks, carries noise near -90 dBFS, an occasional click and two 5 ms
// dropouts, so the differences vary from sample to sample and the check finds real events.
// First the neighbourhood statistics alone (W 64) on channel 0's differences: the sliding
// computation over the whole channel next to the plain one that sorts every neighbourhood twice,
// run on a slice from the middle and scaled per sample, with a value-for-value comparison on that
// slice; each timed as the best of three runs. Times are processor time of this process.
// Then the whole check with the default settings, per call (both channels) as the best of three
// runs, and its figures on the first seconds of the pair against the plain computation.
#include "bench_pair.h"
#include "dsp/artifact.h"
#include "dsp/sliding_median.h"
#include "support/artifact_reference.h"
#include "support/neighbourhood_reference.h"
#include "support/signal_gen.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <numbers>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::int64_t kDelay = 48;
constexpr std::size_t kWindow = 64;
constexpr std::size_t kReferenceSlice = 200000;
// Seconds at the start of the pair that the whole check is compared on with the plain one.
constexpr double kPlainSeconds = 8.0;

// 0.02 dB of gain, a gentle cubic bend, noise near -90 dBFS and, about once in 5 million
// samples, a click of 0.05.
double device(double x, SignalRng& rng) {
    const double bent = x * 1.0023 - 0.002 * x * x * x;
    const double click = signal_next_unit(rng) < 2e-7 ? 0.05 : 0.0;
    return bent + 3e-5 * signal_next_uniform(rng, -1.0, 1.0) + click;
}

// Two 5 ms dropouts in channel 0 of the DUT, at 1/3 and 2/3 of the reference.
void add_dropouts(WavFile& dut, std::size_t ref_frames) {
    for (std::size_t third : {ref_frames / 3, 2 * ref_frames / 3}) {
        const std::size_t first = third + static_cast<std::size_t>(kDelay);
        for (std::size_t f = first; f < first + kRate / 200 && f < dut.frames; ++f)
            dut.samples[f * dut.channels] = 0.0;
    }
}

std::vector<double> channel0_differences(const WavFile& ref, const WavFile& dut) {
    std::vector<double> e(ref.frames);
    for (std::size_t n = 0; n < ref.frames; ++n)
        e[n] = dut.samples[(n + kDelay) * 2] - ref.samples[n * 2];
    return e;
}

constexpr int kRepeats = 3;

// Processor time of this process: on a shared machine it stays close to the work done, where the
// wall clock also counts the time other programs hold the processor.
double cpu_seconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// The sliding figures of the whole series (best time of kRepeats runs), keeping those of the
// slice [first, first + count) for the comparison.
struct SlidingRun {
    double seconds = 0.0;
    std::vector<NeighbourhoodStats> slice;
    double checksum = 0.0;
};

SlidingRun time_sliding(const std::vector<double>& e, std::size_t first, std::size_t count) {
    SlidingRun run;
    std::vector<double> scratch(sliding_scratch_size(e.size(), kWindow / 2));
    for (int repeat = 0; repeat < kRepeats; ++repeat) {
        run.slice.clear();
        run.checksum = 0.0;
        const double start = cpu_seconds();
        SlidingNeighbourhood s = sliding_start(e, kWindow / 2, scratch);
        for (std::size_t i = 0; i < e.size(); ++i, sliding_advance(s)) {
            const NeighbourhoodStats stats = neighbourhood_stats(s);
            if (i >= first && i < first + count) run.slice.push_back(stats);
            run.checksum += stats.median + stats.mad;
        }
        const double seconds = cpu_seconds() - start;
        run.seconds = repeat == 0 ? seconds : std::min(run.seconds, seconds);
    }
    return run;
}

// Best seconds of kRepeats runs of the plain computation over the slice, and whether every figure
// equals the sliding one.
double time_reference(const std::vector<double>& e, std::size_t first,
                      const std::vector<NeighbourhoodStats>& sliding, bool& identical) {
    std::vector<ReferenceNeighbourhood> plain(sliding.size());
    std::vector<double> scratch;
    double best = 0.0;
    for (int repeat = 0; repeat < kRepeats; ++repeat) {
        const double start = cpu_seconds();
        for (std::size_t i = 0; i < plain.size(); ++i)
            plain[i] = reference_neighbourhood(e, first + i, kWindow, scratch);
        const double seconds = cpu_seconds() - start;
        best = repeat == 0 ? seconds : std::min(best, seconds);
    }
    identical = true;
    for (std::size_t i = 0; i < plain.size(); ++i)
        identical =
            identical && plain[i].median == sliding[i].median && plain[i].mad == sliding[i].mad;
    return best;
}

void print_channel(unsigned k, const ArtifactChannelResult& c) {
    std::printf("  channel %u: checked %llu, excluded %llu, flagged %llu, events %llu "
                "(counted %llu, minor %llu), worst at frame %llu, %llu samples, ratio %.3f, "
                "severity %.3f, file-wide %.3f, %s\n",
                k, static_cast<unsigned long long>(c.samples_checked),
                static_cast<unsigned long long>(c.samples_excluded),
                static_cast<unsigned long long>(c.samples_flagged),
                static_cast<unsigned long long>(c.event_count),
                static_cast<unsigned long long>(c.counted_event_count),
                static_cast<unsigned long long>(c.minor_event_count),
                static_cast<unsigned long long>(c.worst_event_start_frame),
                static_cast<unsigned long long>(c.worst_event_length),
                c.worst_event_deviation_ratio, c.worst_event_severity,
                c.worst_event_global_severity, c.passed ? "PASS" : "FAIL");
}

void compare_statistics(const std::vector<double>& e) {
    // The slice lies in the middle of the channel, in the thick of the material.
    const std::size_t count = std::min(kReferenceSlice, e.size());
    const std::size_t first = (e.size() - count) / 2;
    const SlidingRun sliding = time_sliding(e, first, count);
    bool identical = false;
    const double plain = time_reference(e, first, sliding.slice, identical);
    const double sliding_us = sliding.seconds / static_cast<double>(e.size()) * 1e6;
    const double plain_us = plain / static_cast<double>(count) * 1e6;
    std::printf("neighbourhood median and MAD, W %zu, channel 0, best of %d (checksum %.6f)\n",
                kWindow, kRepeats, sliding.checksum);
    std::printf("%-28s %12s %12s %12s\n", "what", "samples", "cpu seconds", "us/sample");
    std::printf("%-28s %12zu %12.3f %12.4f\n", "sliding (whole channel)", e.size(), sliding.seconds,
                sliding_us);
    std::printf("%-28s %12zu %12.3f %12.4f\n", "two sorts (middle slice)", count, plain, plain_us);
    std::printf("speed-up %.1fx, figures on the slice %s\n", plain_us / sliding_us,
                identical ? "identical" : "DIFFERENT");
}

ArtifactResult run_check(const WavFile& ref, const WavFile& dut) {
    return artifact_check(aligned_pair(ref, dut, kDelay), 6.0, -80.0, kWindow, 1, 4.0, 100.0, 8);
}

// The whole check, best of kRepeats runs.
ArtifactResult time_check(const WavFile& ref, const WavFile& dut, double minutes) {
    ArtifactResult r;
    double best = 0.0;
    for (int repeat = 0; repeat < kRepeats; ++repeat) {
        const double start = cpu_seconds();
        r = run_check(ref, dut);
        const double seconds = cpu_seconds() - start;
        best = repeat == 0 ? seconds : std::min(best, seconds);
    }
    std::printf("artifact check, W %zu, k 6, %.1f min stereo 48 kHz, best of %d\n", kWindow,
                minutes, kRepeats);
    std::printf("%-12s %12s %12s\n", "what", "cpu seconds", "us/sample");
    std::printf("%-12s %12.3f %12.4f\n", "per call", best,
                best / static_cast<double>(2 * ref.frames) * 1e6);
    return r;
}

bool same_channel(const ArtifactChannelResult& a, const ReferenceArtifactChannel& b) {
    return a.passed == b.passed && a.samples_checked == b.samples_checked &&
           a.samples_excluded == b.samples_excluded && a.samples_flagged == b.samples_flagged &&
           a.event_count == b.event_count && a.counted_event_count == b.counted_event_count &&
           a.minor_event_count == b.minor_event_count &&
           a.first_event_start_frame == b.first_event_start_frame &&
           a.first_event_length == b.first_event_length &&
           a.worst_event_start_frame == b.worst_event_start_frame &&
           a.worst_event_length == b.worst_event_length &&
           a.worst_event_counted == b.worst_event_counted &&
           a.worst_event_global_severity == b.worst_event_global_severity &&
           a.worst_event_severity == b.worst_event_severity &&
           a.worst_event_deviation_ratio == b.worst_event_deviation_ratio;
}

// The first kPlainSeconds of both files.
WavFile opening(const WavFile& file, std::size_t frames) {
    WavFile part = file;
    part.frames = std::min(frames, file.frames);
    part.samples.resize(part.frames * file.channels);
    return part;
}

void compare_with_plain(const WavFile& ref, const WavFile& dut) {
    const auto frames = static_cast<std::size_t>(kPlainSeconds * kRate);
    const WavFile ref_part = opening(ref, frames);
    const WavFile dut_part = opening(dut, frames + static_cast<std::size_t>(kDelay));
    const ArtifactResult fast = run_check(ref_part, dut_part);
    const ReferenceArtifactResult plain = reference_artifact_check(
        ref_part, dut_part, kDelay, {6.0, -80.0, kWindow, 1, 4.0, 100.0, 8});
    const bool same = fast.passed == plain.passed &&
                      same_channel(fast.channel[0], plain.channel[0]) &&
                      same_channel(fast.channel[1], plain.channel[1]);
    std::printf("first %.0f s against the plain computation: figures %s\n", kPlainSeconds,
                same ? "identical" : "DIFFERENT");
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    WavFile ref;
    WavFile dut;
    make_device_pair(frames, kDelay, kRate, bench_program_frame, device, ref, dut);
    add_dropouts(dut, frames);
    compare_statistics(channel0_differences(ref, dut));
    const ArtifactResult r = time_check(ref, dut, minutes);
    print_channel(0, r.channel[0]);
    print_channel(1, r.channel[1]);
    std::printf("verdict %s\n", r.passed ? "PASS" : "FAIL");
    compare_with_plain(ref, dut);
    return 0;
}
