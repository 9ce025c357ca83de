#include "spectral_signals.h"

#include "support/signal_gen.h"

std::vector<double> tone_sum(const std::vector<Tone>& tones, double rate, std::size_t frames) {
    std::vector<double> out = signal_uniform(77, frames, -0.0005, 0.0005);
    for (const Tone& tone : tones) {
        const std::vector<double> sine = signal_sine(tone.freq_hz, tone.amplitude, rate, frames);
        for (std::size_t i = 0; i < frames; ++i)
            out[i] += sine[i];
    }
    return out;
}
