// Shared pieces of the benchmark programs: a wall clock, and a stereo reference/DUT pair built in
// memory from a program generator and a device model, the DUT `delay` frames late.
#pragma once

#include "audio/wav_file.h"
#include "support/signal_gen.h"

#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>

inline double now_seconds() {
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

using ProgramFrame = void (*)(std::size_t n, SignalRng& rng, double out[2]);
using DeviceModel = double (*)(double x, SignalRng& rng);

// Stereo 64-bit float files at `rate`: the reference of `frames` frames from `program`, and the
// DUT, `delay` frames of silence followed by each reference sample passed through `device`.
inline void make_device_pair(std::size_t frames, std::size_t delay, std::uint32_t rate,
                             ProgramFrame program, DeviceModel device, WavFile& ref, WavFile& dut) {
    for (WavFile* file : {&ref, &dut}) {
        file->sample_rate = rate;
        file->channels = 2;
        file->format = kWavFormatFloat64;
    }
    ref.frames = frames;
    ref.samples.resize(2 * frames);
    dut.frames = frames + delay;
    dut.samples.assign(2 * dut.frames, 0.0);
    SignalRng source = signal_rng(1);
    SignalRng noise = signal_rng(2);
    for (std::size_t n = 0; n < frames; ++n) {
        program(n, source, &ref.samples[2 * n]);
        for (std::size_t k = 0; k < 2; ++k)
            dut.samples[2 * (n + delay) + k] = device(ref.samples[2 * n + k], noise);
    }
}

// Program-like material at 48 kHz: a chord under a phrase envelope with a rest every 7 seconds,
// noise bursts on the beat in channel 0 and a melody line in channel 1.
inline void bench_program_frame(std::size_t n, SignalRng& rng, double out[2]) {
    const double t = static_cast<double>(n) / 48000.0;
    const double two_pi = 2.0 * std::numbers::pi;
    const double rest = std::fmod(t, 7.0) < 0.4 ? 0.0 : 1.0;
    const double phrase = rest * (0.5 + 0.45 * std::sin(two_pi * 0.09 * t));
    const double chord = std::sin(two_pi * 220.0 * t) + 0.5 * std::sin(two_pi * 277.2 * t) +
                         0.3 * std::sin(two_pi * 329.6 * t + 1.0);
    const double beat = rest * std::exp(-20.0 * std::fmod(t, 0.5));
    const double melody = 440.0 * std::exp2(std::floor(std::fmod(t, 4.0)) / 12.0);
    out[0] = 0.45 * phrase * chord + 0.1 * beat * signal_next_uniform(rng, -1.0, 1.0);
    out[1] = 0.4 * phrase * std::sin(two_pi * melody * t + 0.3);
}
