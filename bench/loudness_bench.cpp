// Time of the loudness check on a 10-minute (or argv[1] minutes) 48 kHz stereo pair of
// program-like material built in memory: phrases at changing levels with quiet passages, the DUT
// 48 frames late, 0.3 dB quieter, gently compressed near full scale and carrying noise near
// -90 dBFS. Prints the time per call of loudness_compare (both files) and of loudness_measure
// (one file), each the best of three runs in processor and wall-clock time, the time of each stage
// on the reference, both files' figures, and whether they equal the plain computation's.
#include "bench_pair.h"
#include "dsp/k_weighting.h"
#include "dsp/loudness.h"
#include "dsp/loudness_blocks.h"
#include "dsp/true_peak.h"
#include "support/loudness_reference.h"
#include "support/signal_gen.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <numbers>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::int64_t kDelay = 48;
constexpr int kRepeats = 3;

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

// The time of each stage of one measure on the reference, each run over the whole stored signal
// (the measure runs the first three chunk by chunk): the squares of the K-weighted channels (with
// the range's 1.5 s of padding), the momentary scan, the one short-term scan over the padded
// squares, and the sample and true peaks of both channels.
void time_stages(const WavFile& ref) {
    const std::size_t frames = ref.frames;
    const std::size_t padded = frames + static_cast<std::size_t>(1.5 * kRate);
    std::vector<double> squares(2 * padded, 0.0);
    double start = now_seconds();
    KWeightingState state;
    k_weighting_squares(k_weighting_design(kRate), {ref.samples.data(), frames, 2, 2}, state,
                        squares.data());
    std::printf("%-22s %10.3f\n", "  K-weighting", now_seconds() - start);
    const struct {
        const char* name;
        LoudnessBlockShape shape;
        std::size_t length;
    } scans[] = {{"  momentary blocks", {0.4, 0.75}, frames},
                 {"  short-term blocks", {3.0, 0.97}, padded}};
    for (const auto& scan : scans) {
        start = now_seconds();
        const LoudnessBlockList list =
            loudness_blocks({squares.data(), 2, scan.length}, kRate, scan.shape, true);
        std::printf("%-22s %10.3f  (%zu blocks)\n", scan.name, now_seconds() - start, list.count);
    }
    start = now_seconds();
    const TruePeakFilter filter = true_peak_filter();
    double peak = 0.0;
    double sample_peak = 0.0;
    for (std::size_t k = 0; k < 2; ++k) {
        peak = std::max(peak, channel_true_peak(ref.samples.data() + k, frames, 2, filter));
        sample_peak = std::max(sample_peak, channel_sample_peak(ref.samples.data() + k, frames, 2));
    }
    std::printf("%-22s %10.3f  (peak %.6f, sample peak %.6f)\n", "  peaks", now_seconds() - start,
                peak, sample_peak);
}

void print_measure(const char* name, const LoudnessMeasure& m) {
    std::printf("%-4s I %.2f LUFS, LRA %.2f LU, TP %.2f dBTP, SP %.2f dBFS, M %.2f, S %.2f\n", name,
                m.integrated_lufs, m.range_lu, m.true_peak_dbtp, m.sample_peak_dbfs,
                m.max_momentary_lufs, m.max_short_term_lufs);
}

double cpu_seconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Best processor and wall-clock seconds of kRepeats calls of `run`.
template <class Run> void time_calls(const char* name, Run run) {
    double best_cpu = 0.0;
    double best_wall = 0.0;
    for (int repeat = 0; repeat < kRepeats; ++repeat) {
        const double cpu = cpu_seconds();
        const double wall = now_seconds();
        run();
        const double cpu_used = cpu_seconds() - cpu;
        const double wall_used = now_seconds() - wall;
        best_cpu = repeat == 0 ? cpu_used : std::min(best_cpu, cpu_used);
        best_wall = repeat == 0 ? wall_used : std::min(best_wall, wall_used);
    }
    std::printf("%-22s %10.3f %10.3f\n", name, best_cpu, best_wall);
}

bool same_figures(const LoudnessMeasure& a, const ReferenceLoudness& b) {
    return a.integrated_lufs == b.integrated_lufs && a.range_lu == b.range_lu &&
           a.true_peak_dbtp == b.true_peak_dbtp && a.sample_peak_dbfs == b.sample_peak_dbfs &&
           a.max_momentary_lufs == b.max_momentary_lufs &&
           a.max_short_term_lufs == b.max_short_term_lufs;
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    WavFile ref;
    WavFile dut;
    make_device_pair(frames, kDelay, kRate, program_frame, device, ref, dut);
    std::printf("loudness, %.1f min stereo 48 kHz pair, best of %d\n", minutes, kRepeats);
    std::printf("%-22s %10s %10s\n", "per call", "cpu s", "wall s");
    LoudnessResult r;
    time_calls("loudness_compare",
               [&] { r = loudness_compare(aligned_pair(ref, dut, kDelay), true, 0.5, 0.5, -1.0); });
    time_calls("loudness_measure", [&] { loudness_measure(ref, 2, 0, frames, kRate); });
    std::printf("stages of one file (wall s):\n");
    time_stages(ref);
    print_measure("ref", r.ref);
    print_measure("dut", r.dut);
    std::printf("delta I %.3f LU, TP %.3f dB; verdict %s\n", r.delta_integrated_lu,
                r.delta_true_peak_db, r.passed ? "PASS" : "FAIL");
    const bool same =
        same_figures(r.ref, reference_loudness(ref, 2, 0, frames, kRate)) &&
        same_figures(r.dut,
                     reference_loudness(dut, 2, static_cast<std::size_t>(kDelay), frames, kRate));
    std::printf("figures against the plain computation: %s\n", same ? "identical" : "DIFFERENT");
    return 0;
}
