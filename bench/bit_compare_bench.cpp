// Time of the bit comparison on a 10-minute (or argv[1] minutes) 48 kHz stereo pair built in
// memory: a 16-bit reference of program-like material against four DUTs that start 240 frames
// late: an identical copy, a re-dithered 16-bit copy with a few clicks, a 24-bit rendering and a
// 64-bit float rendering of the same material. Each row is the best of three calls and also
// counts the heap allocations made during the calls (the comparison is meant to make none).
#include "allocation_counter.h"
#include "audio/numeric.h"
#include "checks/bit_compare.h"
#include "support/signal_gen.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <numbers>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::uint32_t kChannels = 2;
constexpr std::size_t kDelay = 240;
constexpr int kRepetitions = 3;

// Frame m of the material: a chord whose root moves every two seconds under a slow phrase
// envelope, a noise burst on every half second and a little hiss, peaking below 0.85 of full scale.
void program_frame(std::size_t m, SignalRng& rng, double out[kChannels]) {
    const double t = static_cast<double>(m) / kRate;
    const double two_pi = 2.0 * std::numbers::pi;
    const double phrase = 0.6 + 0.4 * std::sin(two_pi * 0.05 * t);
    const double root = 98.0 * std::exp2(std::floor(std::fmod(t, 8.0) / 2.0) / 12.0);
    const double chord = std::sin(two_pi * root * t) + 0.5 * std::sin(two_pi * root * 1.26 * t);
    const double burst = std::exp(-25.0 * std::fmod(t, 0.5)) * signal_next_uniform(rng, -1.0, 1.0);
    out[0] = 0.45 * phrase * chord + 0.15 * burst + 0.003 * signal_next_uniform(rng, -1.0, 1.0);
    out[1] = 0.4 * phrase * std::sin(two_pi * root * 1.5 * t + 0.4) + 0.15 * burst +
             0.003 * signal_next_uniform(rng, -1.0, 1.0);
}

WavFile empty_file(std::uint32_t format, std::size_t frames) {
    WavFile file;
    file.sample_rate = kRate;
    file.channels = kChannels;
    file.format = format;
    file.frames = frames;
    file.samples.assign(frames * kChannels, 0.0);
    return file;
}

// The material itself as 64-bit float samples, frame n holding source frame n.
WavFile program_file(std::size_t frames) {
    WavFile file = empty_file(kWavFormatFloat64, frames);
    SignalRng rng = signal_rng(2024);
    for (std::size_t n = 0; n < frames; ++n)
        program_frame(n, rng, &file.samples[n * kChannels]);
    return file;
}

double quantize(double value, double full_scale) {
    return round_half_away_from_zero(value * full_scale) / full_scale;
}

// `format` rendering of `source`, late by `delay` frames of silence and cut to the same length.
// `dither_lsb` adds that much uniform noise (in steps) before quantizing; float keeps the values.
WavFile render(const WavFile& source, std::uint32_t format, std::size_t delay, double dither_lsb) {
    WavFile file = empty_file(format, source.frames);
    const bool is_float = wav_format_is_float(format);
    const double full_scale = is_float ? 1.0 : wav_int_full_scale(format);
    SignalRng rng = signal_rng(77);
    const std::size_t count = (source.frames - delay) * kChannels;
    for (std::size_t i = 0; i < count; ++i) {
        const double dither = dither_lsb * signal_next_uniform(rng, -0.5, 0.5) / full_scale;
        const double value = source.samples[i] + dither;
        file.samples[delay * kChannels + i] = is_float ? value : quantize(value, full_scale);
    }
    return file;
}

// One 40-step click every minute of the right channel.
void add_clicks(WavFile& file) {
    for (std::size_t n = kDelay + kRate; n < file.frames; n += 60 * kRate)
        file.samples[n * kChannels + 1] += 40.0 / wav_int_full_scale(file.format);
}

// Prints one row; true when the calls allocated nothing.
bool print_row(const char* name, const WavFile& ref, const WavFile& dut) {
    BitCompareResult result;
    double best = 1e30;
    const std::size_t allocations_before = g_allocations;
    for (int r = 0; r < kRepetitions; ++r) {
        const auto start = std::chrono::steady_clock::now();
        result = bit_compare(aligned_pair(ref, dut, static_cast<std::int64_t>(kDelay)), 108.0);
        const auto stop = std::chrono::steady_clock::now();
        best = std::min(best, std::chrono::duration<double>(stop - start).count());
    }
    const std::size_t allocations = g_allocations - allocations_before;
    std::printf("%-34s %8.1f %8.3f %12llu %12llu %12.6f %6s %6zu\n", name, best * 1e3,
                best * 1e9 / static_cast<double>(result.samples_compared),
                static_cast<unsigned long long>(result.samples_compared),
                static_cast<unsigned long long>(result.samples_differing), result.max_error_db,
                result.passed ? "PASS" : "FAIL", allocations);
    return allocations == 0;
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    if (frames <= kDelay) return 1;
    std::printf("%.1f min stereo %u Hz, 16-bit reference, DUT late by %zu frames, tolerance "
                "108 dB, best of %d calls\n\n",
                minutes, kRate, kDelay, kRepetitions);
    std::printf("%-34s %8s %8s %12s %12s %12s %6s %6s\n", "DUT", "ms", "ns/smp", "compared",
                "differing", "max dB", "verdict", "allocs");
    const WavFile program = program_file(frames);
    const WavFile ref = render(program, kWavFormatInt16, 0, 0.0);
    bool no_allocation =
        print_row("identical 16-bit", ref, render(program, kWavFormatInt16, kDelay, 0.0));
    WavFile dithered = render(program, kWavFormatInt16, kDelay, 1.0);
    add_clicks(dithered);
    no_allocation &= print_row("16-bit re-dithered, clicks", ref, dithered);
    dithered = WavFile();
    no_allocation &=
        print_row("24-bit rendering", ref, render(program, kWavFormatInt24, kDelay, 0.0));
    no_allocation &=
        print_row("64-bit float rendering", ref, render(program, kWavFormatFloat64, kDelay, 0.0));
    return no_allocation ? 0 : 1;
}
