// Time of the distortion check's continuous scan (N 8192, overlap 0.5) on a 10-minute (or
// argv[1] minutes) 48 kHz stereo pair of program-like material built in memory: the DUT is 48
// frames late, carries a little second- and third-harmonic distortion from a gentle asymmetric
// curve and some noise, so every ungated frame has a small, varied THD+N and the rests in the
// material are gated. Prints the time, the frames per second and each channel's figures.
#include "bench_pair.h"
#include "dsp/distortion.h"
#include "support/signal_gen.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::int64_t kDelay = 48;
constexpr std::size_t kN = 8192;

// The device: x + 0.004 x^2 - 0.003 x^3 and noise near -90 dBFS.
double device(double x, SignalRng& rng) {
    return x + 0.004 * x * x - 0.003 * x * x * x + 3e-5 * signal_next_uniform(rng, -1.0, 1.0);
}

void print_channel(unsigned k, const DistortionChannelResult& c) {
    std::printf("  channel %u: frames %llu (gated %llu), worst %.6f (%.2f dB) at frame %llu, "
                "%.2f Hz, p50 %.6f, p95 %.6f, %s\n",
                k, static_cast<unsigned long long>(c.frames_scanned),
                static_cast<unsigned long long>(c.frames_gated), c.thdn_ratio, c.thdn_db,
                static_cast<unsigned long long>(c.worst_frame_start), c.fundamental_freq_hz,
                c.p50_thdn_ratio, c.p95_thdn_ratio, c.passed ? "PASS" : "FAIL");
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    WavFile ref;
    WavFile dut;
    make_device_pair(frames, kDelay, kRate, bench_program_frame, device, ref, dut);
    const double start = now_seconds();
    const DistortionResult r =
        distortion_check(aligned_pair(ref, dut, kDelay), kN, 20, true, -100.0, 0.01, 0.5);
    const double seconds = now_seconds() - start;
    const double scanned =
        static_cast<double>(r.channel[0].frames_scanned + r.channel[1].frames_scanned);
    std::printf("distortion continuous scan, N %zu, overlap 0.5, %.1f min stereo 48 kHz\n", kN,
                minutes);
    std::printf("%-12s %10s %14s\n", "what", "seconds", "frames/s");
    std::printf("%-12s %10.3f %14.0f\n", "check", seconds, scanned / seconds);
    print_channel(0, r.channel[0]);
    print_channel(1, r.channel[1]);
    std::printf("verdict %s\n", r.passed ? "PASS" : "FAIL");
    return 0;
}
