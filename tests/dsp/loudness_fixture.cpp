#include "dsp/loudness_fixture.h"

#include "audio/numeric.h"
#include "support/memory_wav.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

std::size_t loudness_frames(double seconds) {
    return static_cast<std::size_t>(round_half_away_from_zero(seconds * kLoudnessRate));
}

std::vector<double> tone_programme(std::span<const ToneSegment> segments) {
    const double step = 2.0 * std::numbers::pi * 1000.0 / kLoudnessRate;
    std::vector<double> out;
    for (const ToneSegment& segment : segments) {
        const std::size_t count = loudness_frames(segment.seconds);
        const double amplitude = segment.level_dbfs ? db_to_linear(*segment.level_dbfs) : 0.0;
        for (std::size_t i = 0; i < count; ++i) {
            out.push_back(amplitude * std::sin(step * static_cast<double>(out.size())));
        }
    }
    return out;
}

std::vector<double> faded_sine(double period_samples, double amplitude, double phase_degrees,
                               double seconds, double fade_seconds) {
    const std::size_t count = loudness_frames(seconds);
    const std::size_t fade = loudness_frames(fade_seconds);
    const double phase = phase_degrees * std::numbers::pi / 180.0;
    std::vector<double> out(count);
    for (std::size_t n = 0; n < count; ++n) {
        const std::size_t edge = std::min(n, count - 1 - n);
        const double gain =
            edge < fade ? 0.5 * (1.0 - std::cos(std::numbers::pi * static_cast<double>(edge) /
                                                static_cast<double>(fade)))
                        : 1.0;
        out[n] = gain * amplitude *
                 std::sin(2.0 * std::numbers::pi * static_cast<double>(n) / period_samples + phase);
    }
    return out;
}

WavFile identical_stereo(const std::vector<double>& mono) {
    return memory_wav({mono, mono}, static_cast<std::uint32_t>(kLoudnessRate));
}

LoudnessMeasure measure_whole(const WavFile& file) {
    return loudness_measure(file, 2, 0, file.frames, kLoudnessRate);
}

LoudnessBlockList block_list(const std::vector<double>& loudness,
                             const std::vector<double>& mean_squares, std::size_t channels) {
    LoudnessBlockList list;
    list.count = loudness.size();
    list.channels = channels;
    list.loudness = std::make_unique<double[]>(loudness.size());
    std::copy(loudness.begin(), loudness.end(), list.loudness.get());
    list.mean_squares = std::make_unique<double[]>(mean_squares.size());
    std::copy(mean_squares.begin(), mean_squares.end(), list.mean_squares.get());
    return list;
}
