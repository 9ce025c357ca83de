// Time of the level fidelity check on a long stereo pair, next to the plain measurement that
// sorts three full arrays per channel. Builds a 10-minute (or argv[1] minutes) 48 kHz stereo pair
// of program-like material in memory: the DUT is 48 frames late, 0.05 dB louder, gently
// compressed on its peaks and carries a little noise, so most ratios differ from 0 dB by small,
// varied amounts and the quiet gaps exercise the floor. Prints both times, the speed-up and
// whether the two result records are identical field for field.
#include "bench_pair.h"
#include "checks/level_fidelity.h"
#include "support/level_fidelity_reference.h"
#include "support/signal_gen.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::int64_t kDelay = 48;
constexpr double kFloorDb = -80.0;
constexpr double kToleranceDb = 1.02;
constexpr double kMinRunMs = 20.0;

// Program-like material: a chord under a phrase envelope with a rest every 7 seconds, noise
// bursts on the beat and some hiss.
void program_frame(std::size_t n, SignalRng& rng, double out[2]) {
    const double t = static_cast<double>(n) / kRate;
    const double two_pi = 2.0 * std::numbers::pi;
    const double rest = std::fmod(t, 7.0) < 0.4 ? 0.0 : 1.0;
    const double phrase = rest * (0.5 + 0.45 * std::sin(two_pi * 0.09 * t));
    const double chord = std::sin(two_pi * 220.0 * t) + 0.5 * std::sin(two_pi * 277.2 * t) +
                         0.3 * std::sin(two_pi * 329.6 * t + 1.0);
    const double beat = rest * std::exp(-20.0 * std::fmod(t, 0.5));
    out[0] = 0.45 * phrase * chord + 0.2 * beat * signal_next_uniform(rng, -1.0, 1.0);
    out[1] = 0.4 * phrase * std::sin(two_pi * 440.0 * t + 0.3) +
             0.15 * beat * signal_next_uniform(rng, -1.0, 1.0) +
             rest * 0.002 * signal_next_uniform(rng, -1.0, 1.0);
}

// The device: 0.05 dB of gain, a soft knee above 0.6 and noise near -90 dBFS.
double device(double x, SignalRng& rng) {
    const double gained = x * std::pow(10.0, 0.05 / 20.0);
    const double magnitude = std::fabs(gained);
    const double shaped = magnitude <= 0.6 ? magnitude : 0.6 + (magnitude - 0.6) * 0.8;
    return std::copysign(shaped, gained) + 3e-5 * signal_next_uniform(rng, -1.0, 1.0);
}

bool same_channel(const LevelFidelityChannel& a, const ReferenceLevelChannel& b) {
    return a.passed == b.passed && a.samples_included == b.samples_included &&
           a.samples_excluded == b.samples_excluded && a.median_db == b.median_db &&
           a.mad_db == b.mad_db && a.p99_abs_db == b.p99_abs_db && a.has_data == b.has_data &&
           a.worst_sample == b.worst_sample && a.worst_diff_db == b.worst_diff_db &&
           a.worst_ref_amp == b.worst_ref_amp && a.worst_dut_amp == b.worst_dut_amp &&
           a.longest_sustained_run_ms == b.longest_sustained_run_ms &&
           a.sustained_fail == b.sustained_fail;
}

bool same_result(const LevelFidelityResult& a, const ReferenceLevelResult& b) {
    return a.channels == b.channels && a.passed == b.passed &&
           same_channel(a.channel[0], b.channel[0]) && same_channel(a.channel[1], b.channel[1]);
}

ReferenceLevelResult run_reference(const WavFile& ref, const WavFile& dut) {
    ReferenceLevelInput input;
    input.ref = ref.samples;
    input.dut = dut.samples;
    input.channels = ref.channels;
    input.sample_rate = ref.sample_rate;
    input.offset = kDelay;
    input.floor_db = kFloorDb;
    input.tolerance_db = kToleranceDb;
    input.min_run_ms = kMinRunMs;
    return reference_level_fidelity(input);
}

void print_channel(std::size_t k, const LevelFidelityChannel& c) {
    std::printf("channel %zu: included %llu, excluded %llu, median %.6f dB, MAD %.6f dB, "
                "p99 %.6f dB, worst %.6f dB at frame %llu, longest run %.6f ms, %s\n",
                k, static_cast<unsigned long long>(c.samples_included),
                static_cast<unsigned long long>(c.samples_excluded), c.median_db, c.mad_db,
                c.p99_abs_db, c.worst_diff_db, static_cast<unsigned long long>(c.worst_sample),
                c.longest_sustained_run_ms, c.passed ? "PASS" : "FAIL");
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    WavFile ref;
    WavFile dut;
    make_device_pair(frames, kDelay, kRate, program_frame, device, ref, dut);
    std::printf("level fidelity: %.1f min stereo %u Hz pair, %zu frames, DUT %lld frames late\n",
                minutes, kRate, frames, static_cast<long long>(kDelay));

    double start = now_seconds();
    const LevelFidelityResult fast =
        level_fidelity(aligned_pair(ref, dut, kDelay), kFloorDb, kToleranceDb, kMinRunMs);
    const double fast_seconds = now_seconds() - start;
    start = now_seconds();
    const ReferenceLevelResult plain = run_reference(ref, dut);
    const double plain_seconds = now_seconds() - start;

    std::printf("%-34s %10s\n", "variant", "time (s)");
    std::printf("%-34s %10.3f\n", "selection (level_fidelity)", fast_seconds);
    std::printf("%-34s %10.3f\n", "three full sorts (reference)", plain_seconds);
    std::printf("%-34s %10.2fx\n", "speed-up", plain_seconds / fast_seconds);
    std::printf("%-34s %10s\n", "identical", same_result(fast, plain) ? "yes" : "no");
    for (std::size_t k = 0; k < 2; ++k)
        print_channel(k, fast.channel[k]);
    return same_result(fast, plain) ? 0 : 1;
}
