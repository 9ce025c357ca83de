// Shared pieces of the benchmark programs: a wall clock, and a stereo reference/DUT pair built in
// memory from a program generator and a device model, the DUT `delay` frames late.
#pragma once

#include "audio/wav_file.h"
#include "support/signal_gen.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

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
