// The artifact check against the plain computation (support/artifact_reference.h), field for
// field with exact equality: music-like and random pairs with silent stretches, clicks, dropouts,
// clipping of integer and float DUTs and quantised differences; windows too small for the batch
// bounds and large ones; thresholds that let the bounds settle nearly every sample, most samples
// or none, and busy stretches where the bounds give way to the exact figures and come back; offsets
// both ways; mono and stereo, and a DUT lacking a channel.
#include "dsp/artifact.h"
#include "support/artifact_reference.h"
#include "support/memory_wav.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <vector>

namespace {

struct Case {
    std::int64_t offset = 0;
    ReferenceArtifactSettings settings;
};

void expect_same_channel(const ArtifactChannelResult& fast, const ReferenceArtifactChannel& plain,
                         const char* what) {
    EXPECT_EQ(fast.passed, plain.passed) << what;
    EXPECT_EQ(fast.samples_checked, plain.samples_checked) << what;
    EXPECT_EQ(fast.samples_excluded, plain.samples_excluded) << what;
    EXPECT_EQ(fast.samples_flagged, plain.samples_flagged) << what;
    EXPECT_EQ(fast.event_count, plain.event_count) << what;
    EXPECT_EQ(fast.counted_event_count, plain.counted_event_count) << what;
    EXPECT_EQ(fast.minor_event_count, plain.minor_event_count) << what;
    EXPECT_EQ(fast.first_event_start_frame, plain.first_event_start_frame) << what;
    EXPECT_EQ(fast.first_event_length, plain.first_event_length) << what;
    EXPECT_EQ(fast.worst_event_start_frame, plain.worst_event_start_frame) << what;
    EXPECT_EQ(fast.worst_event_length, plain.worst_event_length) << what;
    EXPECT_EQ(fast.worst_event_counted, plain.worst_event_counted) << what;
    EXPECT_EQ(fast.worst_event_global_severity, plain.worst_event_global_severity) << what;
    EXPECT_EQ(fast.worst_event_severity, plain.worst_event_severity) << what;
    EXPECT_EQ(fast.worst_event_deviation_ratio, plain.worst_event_deviation_ratio) << what;
}

void expect_same(const WavFile& ref, const WavFile& dut, const Case& c) {
    const ReferenceArtifactSettings& s = c.settings;
    const ArtifactResult fast =
        artifact_check(aligned_pair(ref, dut, c.offset), s.k, s.noise_floor_db, s.window_samples,
                       s.min_run, s.min_severity, s.min_global_severity, s.min_silence_clip_run);
    const ReferenceArtifactResult plain = reference_artifact_check(ref, dut, c.offset, s);
    EXPECT_EQ(fast.channels, plain.channels);
    EXPECT_EQ(fast.passed, plain.passed);
    expect_same_channel(fast.channel[0], plain.channel[0], "channel 0");
    expect_same_channel(fast.channel[1], plain.channel[1], "channel 1");
}

// Program-like material: a chord under a phrase envelope with a silent rest (exact zeros) every
// `rest_every` samples, and a little noise.
std::vector<double> music(std::uint64_t seed, std::size_t frames, std::size_t rest_every = 9000) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> x(frames);
    const double two_pi = 2.0 * std::numbers::pi;
    for (std::size_t n = 0; n < frames; ++n) {
        const double t = static_cast<double>(n) / 48000.0;
        const bool rest = n % rest_every < rest_every / 10;
        const double phrase = rest ? 0.0 : 0.4 + 0.3 * std::sin(two_pi * 0.7 * t);
        const double chord = std::sin(two_pi * 220.0 * t) + 0.5 * std::sin(two_pi * 330.0 * t);
        x[n] = rest ? 0.0 : phrase * chord + 0.01 * signal_next_uniform(rng, -1.0, 1.0);
    }
    return x;
}

// A device: a little gain and bend, noise near -90 dBFS, a click every `click_every` samples, a
// dropout of 30 samples every 5000 and clipping at `clip` (a level of 2 clips nothing).
std::vector<double> device(const std::vector<double>& x, std::uint64_t seed, double clip,
                           std::size_t click_every = 3001) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> y(x.size());
    for (std::size_t n = 0; n < x.size(); ++n) {
        double v = x[n] * 1.002 - 0.003 * x[n] * x[n] * x[n];
        v += 3e-5 * signal_next_uniform(rng, -1.0, 1.0);
        if (n % click_every == 17) v += 0.05;
        if (n % 5000 >= 2500 && n % 5000 < 2530) v = 0.0;
        y[n] = std::fabs(v) >= clip ? std::copysign(clip, v) : v;
    }
    return y;
}

WavFile stereo(const std::vector<double>& a, const std::vector<double>& b,
               std::uint32_t format = kWavFormatFloat64) {
    WavFile file = memory_wav({a, b}, 48000);
    file.format = format;
    return file;
}

Case with_window(std::size_t window, double k = 6.0) {
    Case c;
    c.settings.window_samples = window;
    c.settings.k = k;
    return c;
}

TEST(ArtifactIdentity, MusicWithClicksDropoutsAndRestsAcrossWindows) {
    const std::vector<double> a = music(1, 20000);
    const std::vector<double> b = music(2, 20000, 7000);
    const WavFile ref = stereo(a, b);
    const WavFile dut = stereo(device(a, 3, 2.0), device(b, 4, 2.0));
    for (const std::size_t window : {1u, 2u, 3u, 20u, 22u, 23u, 40u, 64u, 65u, 128u, 1000u}) {
        SCOPED_TRACE(window);
        expect_same(ref, dut, with_window(window));
    }
}

TEST(ArtifactIdentity, ThresholdsFromNoneSettledToAllSettled) {
    const std::vector<double> a = music(5, 15000);
    const WavFile ref = stereo(a, music(6, 15000));
    const WavFile dut = stereo(device(a, 7, 2.0), device(music(6, 15000), 8, 2.0));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double k : {6.0, 4.0, 3.0, 1.5, 0.5, 0.0, -1.0, 1e9, nan}) {
        SCOPED_TRACE(k);
        expect_same(ref, dut, with_window(64, k));
    }
}

TEST(ArtifactIdentity, IntegerDutClippedAndFloatDutAtFullScale) {
    const std::vector<double> a = music(9, 12000);
    std::vector<double> loud = a;
    for (double& v : loud)
        v *= 2.2;
    const WavFile integer_dut =
        stereo(device(loud, 10, 0.9995), device(a, 11, 0.9995), kWavFormatInt24);
    expect_same(stereo(loud, a), integer_dut, with_window(64));
    const WavFile float_dut = stereo(device(loud, 12, 1.0), device(a, 13, 1.0), kWavFormatFloat32);
    expect_same(stereo(loud, a), float_dut, with_window(64));
    Case strict = with_window(64);
    strict.settings.min_silence_clip_run = 1;
    strict.settings.min_run = 3;
    expect_same(stereo(loud, a), float_dut, strict);
}

TEST(ArtifactIdentity, RandomNoiseAndQuantisedDifferences) {
    const std::vector<double> a = signal_uniform(14, 16000, -0.5, 0.5);
    const std::vector<double> noise = signal_uniform(15, 16000, -1e-4, 1e-4);
    std::vector<double> b(a.size());
    std::vector<double> q(a.size());
    for (std::size_t n = 0; n < a.size(); ++n) {
        b[n] = a[n] + noise[n];
        // Differences of 0 or one step: many equal values, neighbourhood spreads of 0.
        q[n] = a[n] + (n % 7 == 0 ? 1.0 / 32768.0 : 0.0);
    }
    for (const std::size_t window : {22u, 64u, 129u}) {
        SCOPED_TRACE(window);
        expect_same(stereo(a, a), stereo(b, q), with_window(window));
        expect_same(stereo(a, a), stereo(b, q), with_window(window, 2.0));
    }
}

TEST(ArtifactIdentity, OffsetsBothWaysAndUnevenLengths) {
    const std::vector<double> a = music(16, 9001);
    std::vector<double> late(7, 0.0);
    const std::vector<double> d = device(a, 17, 2.0, 997);
    late.insert(late.end(), d.begin(), d.end());
    for (const std::int64_t offset : {7, 0, -5, 3}) {
        SCOPED_TRACE(offset);
        Case c = with_window(64);
        c.offset = offset;
        expect_same(stereo(a, a), stereo(late, late), c);
    }
}

TEST(ArtifactIdentity, ShortSeriesAroundTheFirstBatch) {
    // With W 64 the first batch needs 72 samples; the lengths around it leave no batch, one, or
    // one and some samples after it.
    for (const std::size_t n : {0u, 1u, 2u, 5u, 40u, 71u, 72u, 73u, 79u, 80u, 81u, 150u}) {
        SCOPED_TRACE(n);
        const std::vector<double> a = signal_uniform(18 + n, n, -0.5, 0.5);
        const std::vector<double> b = device(a, 19 + n, 2.0, 13);
        expect_same(stereo(a, a), stereo(b, a), with_window(64));
        expect_same(stereo(a, a), stereo(b, a), with_window(22));
    }
}

TEST(ArtifactIdentity, MonoReferenceAndDutLackingAChannel) {
    const std::vector<double> a = music(20, 6000);
    const std::vector<double> d = device(a, 21, 2.0, 401);
    expect_same(memory_wav({a}, 48000), stereo(d, d), with_window(64));
    expect_same(stereo(a, a), memory_wav({d}, 48000), with_window(64));
}

TEST(ArtifactIdentity, BusyStretchesBetweenQuietOnes) {
    // Long dropouts make every sample take its exact figures, so the batch bounds rest there and
    // start afresh further on; the stretch of k 0.5 does the same with flagged noise.
    const std::vector<double> a = music(26, 70000, 30000);
    std::vector<double> d = device(a, 27, 2.0, 50021);
    for (std::size_t n = 1000; n < 5000; ++n)
        d[n] = 0.0;
    for (std::size_t n = 30000; n < 34000; ++n)
        d[n] = 0.0;
    expect_same(stereo(a, a), stereo(d, device(a, 28, 2.0, 40009)), with_window(64));
    expect_same(stereo(a, a), stereo(d, d), with_window(64, 0.5));
}

TEST(ArtifactIdentity, LongerProgrammeWithOtherSettings) {
    const std::vector<double> a = music(22, 60000, 20000);
    const std::vector<double> b = music(23, 60000, 11000);
    const WavFile ref = stereo(a, b);
    const WavFile dut =
        stereo(device(a, 24, 0.95, 7919), device(b, 25, 2.0, 4999), kWavFormatInt16);
    Case c = with_window(64);
    c.settings.noise_floor_db = -60.0;
    c.settings.min_run = 2;
    c.settings.min_severity = 1.5;
    c.settings.min_global_severity = 5.0;
    c.settings.min_silence_clip_run = 3;
    expect_same(ref, dut, c);
}

} // namespace
