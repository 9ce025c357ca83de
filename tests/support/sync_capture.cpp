#include "support/sync_capture.h"

#include "support/signal_gen.h"
#include "support/wav_fixture.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr std::uint32_t kFloat32 = 0x120;

double full_scale(std::uint32_t format) {
    return std::ldexp(1.0, static_cast<int>(format) - 1) - 1.0;
}

// The value a reader gives for `x` stored in `format`.
double quantised(double x, std::uint32_t format) {
    if (format == kFloat32) return static_cast<double>(static_cast<float>(x));
    const double scale = full_scale(format);
    const double code = std::clamp(std::round(x * scale), -scale - 1.0, scale);
    return code / scale;
}

double programme_value(std::size_t n, std::uint32_t k, double rate, SignalRng& rng) {
    const double t = static_cast<double>(n) / rate;
    const double tones = 0.3 * std::sin(2.0 * std::numbers::pi * (220.0 + 110.0 * k) * t) +
                         0.15 * std::sin(2.0 * std::numbers::pi * 3150.0 * t);
    return tones + signal_next_uniform(rng, -0.2, 0.2);
}

struct Stretch {
    std::size_t start = 0;
    std::size_t length = 0;
};

void place_tone(SyncCapture& capture, const SyncCaptureLayout& layout, std::size_t start,
                std::span<const double> tone) {
    for (std::uint32_t k = 0; k < layout.channels; ++k) {
        if (layout.tone_channel && *layout.tone_channel != k) continue;
        for (std::size_t i = 0; i < tone.size(); ++i) {
            capture.samples[(start + i) * layout.channels + k] += tone[i];
        }
    }
}

void place_programme(SyncCapture& capture, const SyncCaptureLayout& layout, Stretch programme) {
    SignalRng rng = signal_rng(layout.seed * 7919 + 1);
    for (std::size_t n = 0; n < programme.length; ++n) {
        for (std::uint32_t k = 0; k < layout.channels; ++k) {
            capture.samples[(programme.start + n) * layout.channels + k] +=
                programme_value(n, k, layout.rate, rng);
        }
    }
    if (layout.format == kFloat32 || programme.length < 2) return;
    const double scale = full_scale(layout.format);
    capture.samples[programme.start * layout.channels] = (-scale - 1.0) / scale;
    capture.samples[(programme.start + 1) * layout.channels] = 1.0;
}

} // namespace

SyncCapture make_sync_capture(const SyncCaptureLayout& layout, std::span<const double> tone) {
    SyncCapture capture;
    const std::size_t second = layout.rate;
    capture.clean_start = layout.lead_frames + tone.size();
    capture.clean_end = capture.clean_start + 2 * second + layout.programme_frames;
    capture.frames = capture.clean_end + tone.size() + layout.tail_frames;
    capture.samples.assign(capture.frames * layout.channels, 0.0);
    SignalRng noise = signal_rng(layout.seed);
    for (double& v : capture.samples) {
        if (layout.noise_peak > 0.0)
            v = signal_next_uniform(noise, -layout.noise_peak, layout.noise_peak);
    }
    place_tone(capture, layout, layout.lead_frames, tone);
    place_programme(capture, layout, {capture.clean_start + second, layout.programme_frames});
    place_tone(capture, layout, capture.clean_end, tone);
    for (double& v : capture.samples) {
        v = quantised(v, layout.format);
    }
    return capture;
}

std::vector<std::uint8_t> sync_capture_wav_bytes(const SyncCaptureLayout& layout,
                                                 const SyncCapture& capture) {
    FixtureFmt fmt;
    fmt.channels = static_cast<std::uint16_t>(layout.channels);
    fmt.sample_rate = layout.rate;
    if (layout.format == kFloat32) {
        fmt.tag = 3;
        fmt.bits = 32;
        const std::vector<float> values(capture.samples.begin(), capture.samples.end());
        return fixture_simple_wav(fmt, fixture_float32_data(values));
    }
    fmt.bits = static_cast<std::uint16_t>(layout.format);
    const double scale = full_scale(layout.format);
    std::vector<std::int64_t> codes(capture.samples.size());
    std::transform(capture.samples.begin(), capture.samples.end(), codes.begin(),
                   [scale](double v) { return static_cast<std::int64_t>(std::round(v * scale)); });
    return fixture_simple_wav(fmt, fixture_int_data(fmt.bits, codes));
}

std::vector<double> sync_capture_rewritten(const SyncCaptureLayout& layout,
                                           const SyncCapture& capture, std::size_t first,
                                           std::size_t last) {
    std::vector<double> out(capture.samples.begin() + first * layout.channels,
                            capture.samples.begin() + last * layout.channels);
    if (layout.format == kFloat32) return out;
    for (double& v : out) {
        v = std::max(v, -1.0);
    }
    return out;
}
