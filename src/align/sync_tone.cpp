#include "align/sync_tone.h"

#include "audio/audio.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

struct ChirpBand {
    double low = 0.0;
    double high = 0.0;
};

constexpr ChirpBand kChirpBands[kSyncChirpCount] = {
    {1100.0, 7800.0}, {900.0, 7000.0}, {1300.0, 8200.0}, {1000.0, 7500.0}};

constexpr double kChirpSeconds = 0.15;
constexpr double kGapSeconds = 0.05;
constexpr double kFadeSeconds = 0.003;
constexpr double kAmplitude = 0.1; // -20 dB

std::size_t rounded_samples(double seconds, std::uint32_t sample_rate) {
    return static_cast<std::size_t>(round_half_away_from_zero(seconds * sample_rate));
}

// Falls linearly from high to low over the first h samples, rises back over the rest.
double chirp_frequency(std::size_t i, std::size_t h, std::size_t length, ChirpBand band) {
    if (i < h) {
        return band.high +
               (static_cast<double>(i) / static_cast<double>(h)) * (band.low - band.high);
    }
    return band.low +
           (static_cast<double>(i - h) / static_cast<double>(length - h)) * (band.high - band.low);
}

// Linear fade over `fade` samples at each end; flat 1 in between, and everywhere when fade is 0.
double chirp_envelope(std::size_t i, std::size_t fade, std::size_t length) {
    if (i < fade) return static_cast<double>(i) / static_cast<double>(fade);
    if (i >= length - fade) return static_cast<double>(length - 1 - i) / static_cast<double>(fade);
    return 1.0;
}

} // namespace

SyncToneLayout sync_tone_layout(std::uint32_t sample_rate) {
    return {rounded_samples(kChirpSeconds, sample_rate), rounded_samples(kGapSeconds, sample_rate)};
}

std::size_t sync_template_length(std::uint32_t sample_rate) {
    const SyncToneLayout layout = sync_tone_layout(sample_rate);
    return kSyncChirpCount * layout.chirp + (kSyncChirpCount - 1) * layout.gap;
}

void sync_chirp_generate(std::span<double> buffer, int chirp, std::uint32_t sample_rate) {
    const ChirpBand band = kChirpBands[chirp];
    const std::size_t length = sync_tone_layout(sample_rate).chirp;
    const std::size_t h = length / 2;
    const std::size_t fade = std::min(rounded_samples(kFadeSeconds, sample_rate), h);
    const std::size_t count = std::min(buffer.size(), length);
    double phase = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        // The phase advances before its first use, so sample 0 already carries one step.
        phase = phase + 2.0 * std::numbers::pi * chirp_frequency(i, h, length, band) / sample_rate;
        buffer[i] = std::sin(phase) * kAmplitude * chirp_envelope(i, fade, length);
    }
}

void sync_template_generate(std::span<double> buffer, std::uint32_t sample_rate) {
    std::fill(buffer.begin(), buffer.end(), 0.0);
    const SyncToneLayout layout = sync_tone_layout(sample_rate);
    std::size_t offset = 0;
    for (int chirp = 0; chirp < kSyncChirpCount && offset < buffer.size(); ++chirp) {
        sync_chirp_generate(buffer.subspan(offset), chirp, sample_rate);
        offset += layout.chirp + layout.gap;
    }
}
