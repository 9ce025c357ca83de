// Time of the loudness check on a 10-minute (or argv[1] minutes) 48 kHz stereo pair of
// program-like material built in memory: phrases at changing levels with quiet passages, the DUT
// 48 frames late, 0.3 dB quieter, gently compressed near full scale and carrying noise near
// -90 dBFS. Prints the time of loudness_compare, the share of each stage on the reference, and
// both files' figures.
#include "bench_pair.h"
#include "dsp/k_weighting.h"
#include "dsp/loudness.h"
#include "dsp/loudness_blocks.h"
#include "dsp/true_peak.h"
#include "support/signal_gen.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <span>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::int64_t kDelay = 48;

// Program-like material: a chord and a melody under a phrase envelope whose level steps between
// sections every 20 s (a quiet passage every fourth section), with noise bursts on the beat.
void program_frame(std::size_t n, SignalRng& rng, double out[2]) {
    const double t = static_cast<double>(n) / kRate;
    const double two_pi = 2.0 * std::numbers::pi;
    constexpr std::array<double, 4> kSectionGain = {0.5, 0.8, 0.35, 0.06};
    const double section = kSectionGain[static_cast<std::size_t>(t / 20.0) % 4];
    const double phrase = section * (0.6 + 0.4 * std::sin(two_pi * 0.13 * t));
    const double chord = std::sin(two_pi * 196.0 * t) + 0.6 * std::sin(two_pi * 246.9 * t) +
                         0.4 * std::sin(two_pi * 293.7 * t + 0.5);
    const double beat = std::exp(-25.0 * std::fmod(t, 0.6));
    const double melody = 523.3 * std::exp2(std::floor(std::fmod(t * 2.0, 7.0)) / 12.0);
    out[0] = 0.4 * phrase * chord + 0.2 * section * beat * signal_next_uniform(rng, -1.0, 1.0);
    out[1] = 0.5 * phrase * std::sin(two_pi * melody * t + 0.2) + 0.2 * phrase * chord;
}

// The device: 0.3 dB quieter, a soft knee near full scale, noise near -90 dBFS.
double device(double x, SignalRng& rng) {
    const double y = 0.966 * x;
    const double knee = std::abs(y) > 0.7 ? 0.7 + 0.5 * (std::abs(y) - 0.7) : std::abs(y);
    return std::copysign(knee, y) + 3e-5 * signal_next_uniform(rng, -1.0, 1.0);
}

// The reference's channels copied out, and the time of each stage of one measure on them.
void time_stages(const WavFile& ref) {
    const std::size_t frames = ref.frames;
    std::array<std::vector<double>, 2> raw;
    std::array<std::vector<double>, 2> weighted;
    for (std::size_t k = 0; k < 2; ++k) {
        raw[k].resize(frames);
        weighted[k].assign(frames + static_cast<std::size_t>(1.5 * kRate), 0.0);
        for (std::size_t i = 0; i < frames; ++i)
            raw[k][i] = ref.samples[2 * i + k];
    }
    double start = now_seconds();
    const KWeighting k_weighting = k_weighting_design(kRate);
    for (std::size_t k = 0; k < 2; ++k)
        k_weighting_filter(k_weighting, raw[k], weighted[k]);
    std::printf("%-22s %10.3f\n", "  K-weighting", now_seconds() - start);
    const std::array<std::span<const double>, 2> signals = {weighted[0], weighted[1]};
    const struct {
        const char* name;
        LoudnessBlockShape shape;
        std::size_t length;
    } scans[] = {{"  momentary blocks", {0.4, 0.75}, frames},
                 {"  short-term blocks", {3.0, 0.97}, frames},
                 {"  range blocks", {3.0, 0.97}, weighted[0].size()}};
    for (const auto& scan : scans) {
        start = now_seconds();
        const LoudnessBlockList list =
            loudness_blocks(signals, scan.length, kRate, scan.shape, true);
        std::printf("%-22s %10.3f  (%zu blocks)\n", scan.name, now_seconds() - start, list.count);
    }
    start = now_seconds();
    const TruePeakFilter filter = true_peak_filter();
    double peak = 0.0;
    for (std::size_t k = 0; k < 2; ++k)
        peak = std::max(peak, channel_true_peak(raw[k], filter));
    std::printf("%-22s %10.3f  (peak %.6f)\n", "  true peak", now_seconds() - start, peak);
}

void print_measure(const char* name, const LoudnessMeasure& m) {
    std::printf("%-4s I %.2f LUFS, LRA %.2f LU, TP %.2f dBTP, SP %.2f dBFS, M %.2f, S %.2f\n", name,
                m.integrated_lufs, m.range_lu, m.true_peak_dbtp, m.sample_peak_dbfs,
                m.max_momentary_lufs, m.max_short_term_lufs);
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    WavFile ref;
    WavFile dut;
    make_device_pair(frames, kDelay, kRate, program_frame, device, ref, dut);
    std::printf("loudness, %.1f min stereo 48 kHz pair\n", minutes);
    std::printf("%-22s %10s\n", "what", "seconds");
    const double start = now_seconds();
    const LoudnessResult r = loudness_compare(ref, dut, kDelay, true, 0.5, 0.5, -1.0);
    const double seconds = now_seconds() - start;
    std::printf("%-22s %10.3f  (%.0fx real time)\n", "loudness_compare", seconds,
                2.0 * minutes * 60.0 / seconds);
    std::printf("stages of one file:\n");
    time_stages(ref);
    print_measure("ref", r.ref);
    print_measure("dut", r.dut);
    std::printf("delta I %.3f LU, TP %.3f dB; verdict %s\n", r.delta_integrated_lu,
                r.delta_true_peak_db, r.passed ? "PASS" : "FAIL");
    return 0;
}
