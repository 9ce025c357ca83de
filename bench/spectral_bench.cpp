// Time of the spectral check's continuous frequency-sweep scan (N 8192, overlap 0.5, edge handling
// on, the default edge skip of 4096) on a 10-minute (or argv[1] minutes) 48 kHz stereo pair built
// in memory: one logarithmic sweep from 20 Hz to 20 kHz over the whole reference, and a DUT 48
// frames late with a slight gain loss, a gentle cubic curve and noise near -100 dBFS. Prints the
// frames per channel, the time, and the largest working array the scan asked for (the ratio pool
// of one channel, frames x N/2 doubles) in MiB.
#include "bench_pair.h"
#include "dsp/spectral_scan.h"
#include "support/signal_gen.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <numbers>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::int64_t kDelay = 48;
constexpr std::size_t kN = 8192;
constexpr double kStartHz = 20.0;
constexpr double kEndHz = 20000.0;

// Length of the sweep in seconds, set once from the command line before the pair is built.
double g_sweep_seconds = 600.0;
// Largest non-throwing array request seen, in bytes.
std::size_t g_largest_array = 0;

// The log sweep in both channels, the second 6 dB quieter.
void program_frame(std::size_t n, SignalRng&, double out[2]) {
    const double t = static_cast<double>(n) / kRate;
    const double k = std::log(kEndHz / kStartHz);
    const double phase = 2.0 * std::numbers::pi * kStartHz * g_sweep_seconds / k *
                         (std::exp(t * k / g_sweep_seconds) - 1.0);
    out[0] = 0.5 * std::sin(phase);
    out[1] = 0.25 * std::sin(phase);
}

// The device: 0.1 dB quieter, x - 0.002 x^3, and noise near -100 dBFS.
double device(double x, SignalRng& rng) {
    return 0.9885 * x - 0.002 * x * x * x + 1e-5 * signal_next_uniform(rng, -1.0, 1.0);
}

SpectralSettings sweep_settings() {
    SpectralSettings s;
    s.n = kN;
    s.mode = SpectralMode::freq_sweep;
    s.sweep.windowing = true;
    s.sweep.shape = SweepShape::log;
    s.sweep.start_hz = kStartHz;
    s.sweep.end_hz = kEndHz;
    s.defaults = {1e300, -100.0, -70.0, -60.0, 5.0, 10.0, 1.0};
    s.continuous = true;
    s.overlap_fraction = 0.5;
    s.edge_handling = true;
    s.edge_skip_samples = 4096;
    return s;
}

void print_channel(unsigned k, const SpectralChannelResult& c) {
    std::printf("  channel %u: frames %llu (gated %llu), bins compared %llu, failed %llu, "
                "p50 %.4f, p95 %.4f, p99 %.4f, worst %.4f at %.2f Hz, %s\n",
                k, static_cast<unsigned long long>(c.frames_scanned),
                static_cast<unsigned long long>(c.frames_gated),
                static_cast<unsigned long long>(c.bins_compared),
                static_cast<unsigned long long>(c.bins_failed), c.p50_ratio, c.p95_ratio,
                c.p99_ratio, c.worst_ratio, c.worst_freq_hz, c.passed ? "PASS" : "FAIL");
}

} // namespace

// Records the size of every non-throwing array request and hands it to the ordinary array
// allocation, whose delete[] frees it.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    if (size > g_largest_array) g_largest_array = size;
    try {
        return ::operator new[](size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    g_sweep_seconds = minutes * 60.0;
    const auto frames = static_cast<std::size_t>(g_sweep_seconds * kRate);
    WavFile ref;
    WavFile dut;
    make_device_pair(frames, kDelay, kRate, program_frame, device, ref, dut);
    g_largest_array = 0;
    const double start = now_seconds();
    const SpectralScanResult r = spectral_scan(aligned_pair(ref, dut, kDelay), sweep_settings());
    const double seconds = now_seconds() - start;
    std::printf("spectral continuous freq-sweep scan, N %zu, overlap 0.5, edge skip 4096, "
                "%.1f min stereo 48 kHz\n",
                kN, minutes);
    std::printf("%-10s %18s %10s %14s %14s\n", "what", "frames/channel", "seconds", "frames/s",
                "pool peak MiB");
    const double scanned =
        static_cast<double>(r.channel[0].frames_scanned + r.channel[1].frames_scanned);
    std::printf("%-10s %18llu %10.3f %14.0f %14.1f\n", "scan",
                static_cast<unsigned long long>(r.channel[0].frames_scanned), seconds,
                scanned / seconds, static_cast<double>(g_largest_array) / (1024.0 * 1024.0));
    print_channel(0, r.channel[0]);
    print_channel(1, r.channel[1]);
    std::printf("verdict %s\n", r.passed ? "PASS" : "FAIL");
    return 0;
}
