// Time of the Time Domain scan on a 10-minute (or argv[1] minutes) 48 kHz stereo pair of
// program-like material built in memory. The DUT is the reference through a slightly lossy path:
// 0.3 dB quieter, with a little hiss and a 4-frame delay, so every tier scores pairs and the hiss
// makes the low-level and peak tiers fail near the zero crossings. Next to the scan runs a plain
// loop that only reads both channels over the same overlap, as the floor set by memory traffic.
// Global operator new is counted to show that the scan allocates nothing.
#include "allocation_counter.h"
#include "bench_pair.h"
#include "checks/time_domain.h"
#include "support/signal_gen.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <numbers>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::uint32_t kChannels = 2;
constexpr std::int64_t kDelay = 4;
constexpr int kRepeats = 3;

// Frame t of the material: a slowly changing chord under a phrase envelope, with quiet passages
// that dip into the low-level and signal tiers, and fading noise hits on a half-second beat.
void program_frame(double t, SignalRng& rng, double out[kChannels]) {
    const double two_pi = 2.0 * std::numbers::pi;
    const double phrase = 0.5 + 0.5 * std::sin(two_pi * 0.05 * t);
    const double level = phrase * phrase * phrase * phrase; // long stretches far below full scale
    const double root = 110.0 * std::exp2(std::floor(std::fmod(t, 12.0) / 3.0) / 12.0);
    double chord = 0.0;
    for (int h = 1; h <= 4; ++h)
        chord += std::sin(two_pi * root * h * t) / (h * 2.0);
    const double hit = std::exp(-20.0 * std::fmod(t, 0.5)) * signal_next_uniform(rng, -1.0, 1.0);
    out[0] = 0.6 * level * chord + 0.15 * level * hit;
    out[1] = 0.5 * level * std::sin(two_pi * root * 1.5 * t + 0.4) + 0.12 * level * hit;
}

WavFile stereo_file(std::size_t frames) {
    WavFile file;
    file.sample_rate = kRate;
    file.channels = kChannels;
    file.format = kWavFormatFloat64;
    file.frames = frames;
    file.samples.resize(frames * kChannels);
    return file;
}

// The reference, and the DUT: gain -0.3 dB plus hiss near -85 dBFS RMS, delayed by kDelay frames.
void build_pair(std::size_t frames, WavFile& ref, WavFile& dut) {
    ref = stereo_file(frames);
    dut = stereo_file(frames + kDelay);
    SignalRng rng = signal_rng(2024);
    const double gain = std::pow(10.0, -0.3 / 20.0);
    for (std::size_t n = 0; n < frames; ++n) {
        double* r = &ref.samples[n * kChannels];
        program_frame(static_cast<double>(n) / kRate, rng, r);
        double* u = &dut.samples[(n + kDelay) * kChannels];
        for (std::uint32_t k = 0; k < kChannels; ++k)
            u[k] = r[k] * gain + signal_next_uniform(rng, -1e-4, 1e-4);
    }
}

// The plain read of both files over the overlap: the sum of |u - r| over every pair.
double plain_read(const WavFile& ref, const WavFile& dut) {
    double sum = 0.0;
    for (std::size_t i = 0; i < ref.frames * kChannels; ++i)
        sum += std::fabs(dut.samples[i + kDelay * kChannels] - ref.samples[i]);
    return sum;
}

TimeDomainResult scan(const WavFile& ref, const WavFile& dut) {
    return time_domain_scan(aligned_pair(ref, dut, kDelay), -80.0, -60.0, 10.0, -70.0, 50.0, 50.0);
}

void print_channel(std::size_t k, const TimeDomainChannel& c) {
    std::printf("channel %zu: included %llu, excluded %llu, fails %llu (low %llu, signal %llu, "
                "peak %llu), worst frame %llu at %.2f %% (tolerance %.0f %%)\n",
                k, static_cast<unsigned long long>(c.samples_included),
                static_cast<unsigned long long>(c.samples_excluded),
                static_cast<unsigned long long>(c.total_fails),
                static_cast<unsigned long long>(c.fails_low_level_signal_tier),
                static_cast<unsigned long long>(c.fails_signal_tier),
                static_cast<unsigned long long>(c.fails_peak_tier),
                static_cast<unsigned long long>(c.worst_sample), c.worst_diff_pct,
                c.worst_tolerance_pct);
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    WavFile ref;
    WavFile dut;
    build_pair(frames, ref, dut);
    const double pairs = static_cast<double>(frames * kChannels);
    std::printf("%.1f min stereo %u Hz, DUT late by %lld frames: %zu frames, %.0f pairs\n\n",
                minutes, kRate, static_cast<long long>(kDelay), frames, pairs);
    std::printf("%-28s %10s %12s %12s\n", "pass", "best s", "ns per pair", "allocations");
    TimeDomainResult result;
    double best_scan = 1e300;
    double best_read = 1e300;
    double checksum = 0.0;
    std::size_t scan_allocations = 0;
    for (int repeat = 0; repeat < kRepeats; ++repeat) {
        const std::size_t before = g_allocations;
        double start = now_seconds();
        result = scan(ref, dut);
        best_scan = std::fmin(best_scan, now_seconds() - start);
        scan_allocations += g_allocations - before;
        start = now_seconds();
        checksum += plain_read(ref, dut);
        best_read = std::fmin(best_read, now_seconds() - start);
    }
    std::printf("%-28s %10.3f %12.2f %12zu\n", "time_domain_scan", best_scan,
                best_scan * 1e9 / pairs, scan_allocations);
    std::printf("%-28s %10.3f %12.2f %12s\n", "plain read of both files", best_read,
                best_read * 1e9 / pairs, "-");
    std::printf("\nverdict %s (checksum %.3f)\n", result.passed ? "PASS" : "FAIL", checksum);
    for (std::size_t k = 0; k < kChannels; ++k)
        print_channel(k, result.channel[k]);
    const bool counted_all =
        result.channel[0].samples_included + result.channel[0].samples_excluded == frames;
    return scan_allocations == 0 && counted_all ? 0 : 1;
}
