// Time of the Impulse Template check on a 10-minute (or argv[1] minutes) 48 kHz stereo pair built
// in memory. The material is impulsive program: chords under a phrase envelope with drum-like
// noise hits on a half-second beat, sharp clicks every 1.7 s and quiet passages. The DUT is the
// reference 0.1 dB louder with a little hiss, 4 frames late, with a few -20 dBFS clicks added in
// quiet stretches, so the template is built around real transients and some samples fail. A
// second pair of loud white noise (the reference magnitude above the peak level at almost every
// other sample) shows the cost when transient runs are as dense as they get. Next to the check
// runs a plain loop that only reads both files over the same overlap, as the memory-traffic
// floor. Global operator new is counted to show that the check allocates only its per-channel
// frame buffers.
#include "allocation_counter.h"
#include "bench_pair.h"
#include "checks/impulse_template.h"
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
constexpr std::size_t kFrameSize = 8192;

// Frame t of the material: a chord under a phrase envelope that falls silent for a while in every
// 20 s, noise hits decaying over a half-second beat, and a one-sample click every 1.7 s.
void program_frame(double t, std::size_t n, SignalRng& rng, double out[kChannels]) {
    const double two_pi = 2.0 * std::numbers::pi;
    const double phrase = std::fmax(0.0, std::sin(two_pi * 0.05 * t));
    const double root = 110.0 * std::exp2(std::floor(std::fmod(t, 12.0) / 3.0) / 12.0);
    double chord = 0.0;
    for (int h = 1; h <= 4; ++h)
        chord += std::sin(two_pi * root * h * t) / (h * 2.0);
    const double hit = std::exp(-30.0 * std::fmod(t, 0.5)) * signal_next_uniform(rng, -1.0, 1.0);
    const double click = n % (kRate * 17 / 10) == 0 ? 0.8 : 0.0;
    out[0] = phrase * (0.35 * chord + 0.5 * hit) + click;
    out[1] = phrase * (0.3 * std::sin(two_pi * root * 1.5 * t + 0.4) + 0.45 * hit) - click;
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

// The DUT: the reference +0.1 dB with hiss near -85 dBFS, delayed by kDelay frames.
void build_dut(const WavFile& ref, SignalRng& rng, WavFile& dut) {
    dut = stereo_file(ref.frames + kDelay);
    const double gain = std::pow(10.0, 0.1 / 20.0);
    for (std::size_t i = 0; i < ref.frames * kChannels; ++i)
        dut.samples[i + kDelay * kChannels] =
            ref.samples[i] * gain + signal_next_uniform(rng, -1e-4, 1e-4);
}

// Program material, with a -20 dBFS click in the DUT every 20 s (channels taking turns), in the
// silent half of the phrase and away from the reference's own clicks.
void build_program_pair(std::size_t frames, WavFile& ref, WavFile& dut) {
    ref = stereo_file(frames);
    SignalRng rng = signal_rng(2025);
    for (std::size_t n = 0; n < frames; ++n)
        program_frame(static_cast<double>(n) / kRate, n, rng, &ref.samples[n * kChannels]);
    build_dut(ref, rng, dut);
    for (std::size_t n = 15 * kRate + kRate / 4; n < frames; n += 20 * kRate)
        dut.samples[(n + kDelay) * kChannels + (n / kRate / 20) % kChannels] = 0.1;
}

// Loud uniform noise: runs of magnitudes above the peak level start about every other sample.
void build_noise_pair(std::size_t frames, WavFile& ref, WavFile& dut) {
    ref = stereo_file(frames);
    SignalRng rng = signal_rng(77);
    for (double& value : ref.samples)
        value = signal_next_uniform(rng, -0.6, 0.6);
    build_dut(ref, rng, dut);
}

// The plain read of both files over the overlap: the sum of |u| - |r| over every pair.
double plain_read(const WavFile& ref, const WavFile& dut) {
    double sum = 0.0;
    for (std::size_t i = 0; i < ref.frames * kChannels; ++i)
        sum += std::fabs(dut.samples[i + kDelay * kChannels]) - std::fabs(ref.samples[i]);
    return sum;
}

ImpulseTemplateResult check(const WavFile& ref, const WavFile& dut) {
    return impulse_template_check(aligned_pair(ref, dut, kDelay), kFrameSize, -10.0, 1.25, -30.0);
}

struct Timing {
    ImpulseTemplateResult result;
    double best_check = 1e300;
    double best_read = 1e300;
    std::size_t allocations = 0; // per call
};

Timing time_pair(const WavFile& ref, const WavFile& dut, double& checksum) {
    Timing timing;
    for (int repeat = 0; repeat < kRepeats; ++repeat) {
        const std::size_t before = g_allocations;
        double start = now_seconds();
        timing.result = check(ref, dut);
        timing.best_check = std::fmin(timing.best_check, now_seconds() - start);
        timing.allocations = g_allocations - before;
        start = now_seconds();
        checksum += plain_read(ref, dut);
        timing.best_read = std::fmin(timing.best_read, now_seconds() - start);
    }
    return timing;
}

void print_rows(const char* material, const Timing& timing, double pairs) {
    std::printf("%-10s %-26s %8.3f %12.2f %12zu\n", material, "impulse_template_check",
                timing.best_check, timing.best_check * 1e9 / pairs, timing.allocations);
    std::printf("%-10s %-26s %8.3f %12.2f %12s\n", material, "plain read of both files",
                timing.best_read, timing.best_read * 1e9 / pairs, "-");
}

void print_result(const char* material, const ImpulseTemplateResult& result) {
    for (std::size_t k = 0; k < kChannels; ++k) {
        const ImpulseTemplateChannel& c = result.channel[k];
        std::printf("%s channel %zu: %s, fails %llu, worst frame %llu: DUT %.6f over ref %.6f by "
                    "%.6f\n",
                    material, k, c.passed ? "PASS" : "FAIL",
                    static_cast<unsigned long long>(c.total_fails),
                    static_cast<unsigned long long>(c.worst_sample), c.worst_dut_amp,
                    c.worst_ref_amp, c.worst_diff);
    }
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    const double pairs = static_cast<double>(frames * kChannels);
    std::printf("%.1f min stereo %u Hz, DUT late by %lld frames: %zu frames, %.0f pairs, frames "
                "of %zu samples, best of %d\n\n",
                minutes, kRate, static_cast<long long>(kDelay), frames, pairs, kFrameSize,
                kRepeats);
    std::printf("%-10s %-26s %8s %12s %12s\n", "material", "pass", "best s", "ns per pair",
                "allocations");
    double checksum = 0.0;
    WavFile ref;
    WavFile dut;
    build_program_pair(frames, ref, dut);
    const Timing program = time_pair(ref, dut, checksum);
    print_rows("program", program, pairs);
    build_noise_pair(frames, ref, dut);
    const Timing noise = time_pair(ref, dut, checksum);
    print_rows("noise", noise, pairs);
    std::printf("\n(checksum %.3f)\n", checksum);
    print_result("program", program.result);
    print_result("noise", noise.result);
    // Three frame buffers per channel and nothing else.
    const bool lean = program.allocations == 3 * kChannels && noise.allocations == 3 * kChannels;
    return lean && !program.result.passed && noise.result.passed ? 0 : 1;
}
