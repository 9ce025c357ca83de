// The single-frame and continuous spectral scans: frame placement, hop, edge skip and tail frame,
// pooled counts and percentiles, the worst bin over frames, gated and short overlaps, stereo and
// mono channels, the chart fields, allocation failure, and a swept tone with a dip.
#include "dsp/spectral_scan.h"

#include "dsp/spectral_fixture.h"
#include "dsp/spectral_record_fixture.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr std::size_t kN = 1024;
constexpr std::size_t kFrames = 5000;

std::vector<double> multitone(std::size_t frames) {
    const std::vector<SpectralTone> tones{
        {440.0, 0.2}, {1000.0, 0.2}, {3150.0, 0.1}, {7000.0, 0.05}};
    return spectral_tones(tones, frames);
}

// `samples` plus seeded uniform noise of +-3e-4 (about -97 dB a bin at N 1024), so every frame
// has ratios of its own.
std::vector<double> with_noise(const std::vector<double>& samples, std::uint64_t seed) {
    const std::vector<double> noise = signal_uniform(seed, samples.size(), -3e-4, 3e-4);
    std::vector<double> out(samples);
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] += noise[i];
    }
    return out;
}

// A DUT of `frames` frames in which DUT frame f holds reference frame f - offset (zeros outside).
std::vector<double> shifted(const std::vector<double>& ref, std::int64_t offset,
                            std::size_t frames) {
    std::vector<double> out(frames, 0.0);
    for (std::size_t f = 0; f < frames; ++f) {
        const std::int64_t source = static_cast<std::int64_t>(f) - offset;
        if (source >= 0 && source < static_cast<std::int64_t>(ref.size())) {
            out[f] = ref[static_cast<std::size_t>(source)];
        }
    }
    return out;
}

// Starts first, first + hop, ... (count of them), then the extra starts.
std::vector<std::size_t> starts(std::size_t first, std::size_t hop, std::size_t count,
                                std::vector<std::size_t> extra = {}) {
    std::vector<std::size_t> out;
    for (std::size_t i = 0; i < count; ++i) {
        out.push_back(first + i * hop);
    }
    out.insert(out.end(), extra.begin(), extra.end());
    return out;
}

SpectralSettings continuous(std::size_t n, double overlap) {
    SpectralSettings s = spectral_test_settings(n);
    s.continuous = true;
    s.overlap_fraction = overlap;
    return s;
}

SpectralSettings with_edges(long edge_skip) {
    SpectralSettings s = continuous(kN, 0.5);
    s.edge_handling = true;
    s.edge_skip_samples = edge_skip;
    return s;
}

// A noisy multitone pair of kFrames frames, aligned (offset 0).
struct Pair {
    WavFile ref;
    WavFile dut;
};

Pair noisy_pair(std::size_t frames, std::uint64_t seed) {
    const std::vector<double> ref = multitone(frames);
    return {spectral_wav({ref}), spectral_wav({with_noise(ref, seed)})};
}

void expect_scan(const Pair& p, std::int64_t offset, const SpectralSettings& s,
                 const std::vector<std::size_t>& frame_starts) {
    const SpectralScanResult r = spectral_scan(aligned_pair(p.ref, p.dut, offset), s);
    expect_record(r.channel[0], spectral_expected_record(p.ref, p.dut, offset, s, frame_starts),
                  frame_starts.size());
    EXPECT_EQ(r.passed, r.channel[0].passed);
}

TEST(SpectralScan, IdenticalMultitoneFilesPassWithZeroRatios) {
    const WavFile file = spectral_wav({multitone(kFrames)});
    const SpectralSettings s = continuous(kN, 0.5);
    const SpectralScanResult r = spectral_scan(aligned_pair(file, file, 0), s);
    const SpectralChannelResult& c = r.channel[0];
    // Hop 512: (5000 - 1024) / 512 + 1 = 8 frames.
    EXPECT_EQ(c.frames_scanned, 8u);
    EXPECT_EQ(c.bins_compared + c.bins_excluded, 8u * 512u);
    EXPECT_GT(c.bins_compared, 0u);
    EXPECT_EQ(c.bins_failed, 0u);
    EXPECT_EQ(c.p99_ratio, 0.0);
    EXPECT_EQ(c.worst_ratio, 0.0);
    EXPECT_TRUE(c.passed);
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(r.channels, 1u);
    expect_record(c, spectral_expected_record(file, file, 0, s, starts(0, 512, 8)), 8);
}

TEST(SpectralScan, HalfOverlapOf8192StepsBy4096) {
    // (24576 - 8192) / 4096 + 1 = 5 frames at 0, 4096, ..., 16384.
    const Pair p = noisy_pair(24576, 3);
    expect_scan(p, 0, continuous(8192, 0.5), starts(0, 4096, 5));
}

TEST(SpectralScan, ContinuousPoolsEveryFrame) {
    const Pair p = noisy_pair(kFrames, 5);
    const SpectralScanResult r = spectral_scan(aligned_pair(p.ref, p.dut, 0), continuous(kN, 0.5));
    // The pool spreads out, so the three percentiles are different elements.
    EXPECT_LT(r.channel[0].p50_ratio, r.channel[0].p95_ratio);
    EXPECT_LT(r.channel[0].p95_ratio, r.channel[0].p99_ratio);
    expect_scan(p, 0, continuous(kN, 0.5), starts(0, 512, 8));
    // Without overlap the hop is a whole frame: (5000 - 1024) / 1024 + 1 = 4 frames.
    expect_scan(p, 0, continuous(kN, 0.0), starts(0, 1024, 4));
}

TEST(SpectralScan, SingleFrameIsCentredInTheOverlap) {
    // L = 5000: 2500 - 512.
    const Pair p = noisy_pair(kFrames, 7);
    const SpectralSettings s = spectral_test_settings(kN);
    expect_scan(p, 0, s, {1988});
    EXPECT_EQ(spectral_scan(aligned_pair(p.ref, p.dut, 0), s).channel[0].chart_frame_start, 1988u);
}

TEST(SpectralScan, SingleFrameFollowsALateDut) {
    // Offset 300: reference 0 .. 4699 is covered, L = 4700, start 2350 - 512.
    const std::vector<double> ref = multitone(kFrames);
    const Pair p{spectral_wav({ref}), spectral_wav({with_noise(shifted(ref, 300, kFrames), 9)})};
    expect_scan(p, 300, spectral_test_settings(kN), {1838});
}

TEST(SpectralScan, SingleFrameFollowsAnEarlyDut) {
    // Offset -300: reference 300 .. 4999 is covered, L = 4700, start 300 + 2350 - 512.
    const std::vector<double> ref = multitone(kFrames);
    const Pair p{spectral_wav({ref}), spectral_wav({with_noise(shifted(ref, -300, 4700), 11)})};
    expect_scan(p, -300, spectral_test_settings(kN), {2138});
}

TEST(SpectralScan, EdgeSkipAndTailFrame) {
    // e = 600: (5000 - 1024 - 1200) / 512 + 1 = 6 frames from 600; the last ends at 4184, before
    // 5000 - 600, so a tail frame starts at 4400 - 1024.
    const Pair p = noisy_pair(kFrames, 13);
    const SpectralSettings s = with_edges(600);
    expect_scan(p, 0, s, starts(600, 512, 6, {3376}));
    EXPECT_EQ(spectral_scan(aligned_pair(p.ref, p.dut, 0), s).channel[0].edge_skipped_samples,
              600u);
}

TEST(SpectralScan, EdgeSkipNeedsEdgeHandling) {
    const Pair p = noisy_pair(kFrames, 13);
    SpectralSettings s = with_edges(600);
    s.edge_handling = false;
    expect_scan(p, 0, s, starts(0, 512, 8));
    EXPECT_EQ(spectral_scan(aligned_pair(p.ref, p.dut, 0), s).channel[0].edge_skipped_samples, 0u);
}

TEST(SpectralScan, EdgeSkipIsCappedAtHalfTheSpareLength) {
    // min(10000, (5000 - 1024) / 2) = 1988: one frame, ending exactly at 5000 - 1988, no tail.
    const Pair p = noisy_pair(kFrames, 17);
    const SpectralSettings s = with_edges(10000);
    expect_scan(p, 0, s, {1988});
    EXPECT_EQ(spectral_scan(aligned_pair(p.ref, p.dut, 0), s).channel[0].edge_skipped_samples,
              1988u);
}

TEST(SpectralScan, NegativeEdgeSkipCountsAsZero) {
    // e = 0: 8 frames, the last ends at 4608 < 5000, so a tail frame starts at 3976.
    const Pair p = noisy_pair(kFrames, 19);
    const SpectralSettings s = with_edges(-50);
    expect_scan(p, 0, s, starts(0, 512, 8, {3976}));
    EXPECT_EQ(spectral_scan(aligned_pair(p.ref, p.dut, 0), s).channel[0].edge_skipped_samples, 0u);
}

TEST(SpectralScan, TailFrameCoversTheEndOfTheOverlap) {
    // The DUT differs only in its last 300 frames, which only the tail frame reaches.
    const std::vector<double> ref = multitone(kFrames);
    std::vector<double> dut = with_noise(ref, 23);
    std::copy(ref.begin(), ref.begin() + 4700, dut.begin());
    const Pair p{spectral_wav({ref}), spectral_wav({dut})};
    const SpectralChannelResult with_tail =
        spectral_scan(aligned_pair(p.ref, p.dut, 0), with_edges(0)).channel[0];
    EXPECT_EQ(with_tail.frames_scanned, 9u);
    EXPECT_GT(with_tail.worst_ratio, 0.0);
    EXPECT_EQ(with_tail.worst_frame_start, 3976u);
    // Without edge handling no frame reaches them; every ratio is 0 and the first frame's
    // first compared bin stays the worst.
    const SpectralChannelResult plain =
        spectral_scan(aligned_pair(p.ref, p.dut, 0), continuous(kN, 0.5)).channel[0];
    EXPECT_EQ(plain.frames_scanned, 8u);
    EXPECT_EQ(plain.worst_ratio, 0.0);
    EXPECT_EQ(plain.worst_frame_start, 0u);
    EXPECT_EQ(plain.p99_ratio, 0.0);
}

TEST(SpectralScan, SilentReferenceGatesEveryFrame) {
    const WavFile ref = spectral_wav({spectral_silence(kFrames)});
    const WavFile dut = spectral_wav({with_noise(spectral_silence(kFrames), 29)});
    const SpectralChannelResult c =
        spectral_scan(aligned_pair(ref, dut, 0), continuous(kN, 0.5)).channel[0];
    EXPECT_EQ(c.frames_scanned, 8u);
    EXPECT_EQ(c.frames_gated, 8u);
    EXPECT_TRUE(c.frame_gated);
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.bins_compared, 0u);
    EXPECT_EQ(c.bins_excluded, 0u);
    EXPECT_EQ(c.p99_ratio, 0.0);
    EXPECT_EQ(c.worst_freq_hz, 0.0);
    EXPECT_EQ(c.chart_frame_start, 0u);
    EXPECT_TRUE(c.chart_peak_bins.empty());
    EXPECT_EQ(c.chart_tiers.noise_floor_db, -100.0);
}

TEST(SpectralScan, ShortOverlapIsInsufficient) {
    const WavFile short_ref = spectral_wav({multitone(1000)});
    const SpectralScanResult r =
        spectral_scan(aligned_pair(short_ref, short_ref, 0), continuous(kN, 0.5));
    EXPECT_TRUE(r.channel[0].insufficient_samples);
    EXPECT_EQ(r.channel[0].frames_scanned, 0u);
    EXPECT_EQ(r.channel[0].bins_compared, 0u);
    EXPECT_TRUE(r.channel[0].passed);
    EXPECT_TRUE(r.passed);
    // Offset 3500 on 4096-frame files leaves 596 frames.
    const WavFile file = spectral_wav({multitone(4096)});
    const SpectralChannelResult c =
        spectral_scan(aligned_pair(file, file, 3500), spectral_test_settings(kN)).channel[0];
    EXPECT_TRUE(c.insufficient_samples);
    EXPECT_EQ(c.frames_scanned, 0u);
    EXPECT_TRUE(c.passed);
    EXPECT_FALSE(spectral_scan(aligned_pair(file, file, 3072), spectral_test_settings(kN))
                     .channel[0]
                     .insufficient_samples);
}

TEST(SpectralScan, StereoChannelFailsOnItsOwn) {
    const std::vector<double> tones = multitone(kFrames);
    const WavFile ref = spectral_wav({tones, tones});
    const WavFile dut = spectral_wav({tones, spectral_scaled(tones, std::pow(10.0, 3.0 / 20.0))});
    const SpectralScanResult r = spectral_scan(aligned_pair(ref, dut, 0), continuous(kN, 0.5));
    EXPECT_EQ(r.channels, 2u);
    EXPECT_TRUE(r.channel[0].passed);
    EXPECT_EQ(r.channel[0].p99_ratio, 0.0);
    EXPECT_FALSE(r.channel[1].passed);
    EXPECT_TRUE(r.channel[1].worst_is_peak);
    EXPECT_NEAR(r.channel[1].worst_diff_db, 3.0, 1e-9);
    EXPECT_FALSE(r.passed);
    const SpectralSettings s = continuous(kN, 0.5);
    expect_record(r.channel[1], spectral_expected_record(ref, dut, 0, s, starts(0, 512, 8), 1), 8);
}

TEST(SpectralScan, MonoLeavesTheSecondChannelUntouched) {
    const Pair p = noisy_pair(kFrames, 31);
    const SpectralScanResult r = spectral_scan(aligned_pair(p.ref, p.dut, 0), continuous(kN, 0.5));
    EXPECT_EQ(r.channels, 1u);
    EXPECT_EQ(r.channel[0].frames_scanned, 8u);
    const SpectralChannelResult& c = r.channel[1];
    EXPECT_TRUE(c.passed);
    EXPECT_FALSE(c.insufficient_samples);
    EXPECT_EQ(c.frames_scanned, 0u);
    EXPECT_EQ(c.bins_compared, 0u);
}

TEST(SpectralScan, ReferenceWithoutChannelsPasses) {
    const WavFile none = spectral_wav({});
    const SpectralScanResult r = spectral_scan(aligned_pair(none, none, 0), continuous(kN, 0.5));
    EXPECT_EQ(r.channels, 0u);
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(r.channel[0].frames_scanned, 0u);
    EXPECT_FALSE(r.channel[0].insufficient_samples);
}

// Three tones periodic in 512 frames, tiled so every frame of a whole-frame hop holds the same
// samples bit for bit.
std::vector<double> periodic_tones(std::size_t frames) {
    std::vector<double> period(512, 0.0);
    for (std::size_t i = 0; i < period.size(); ++i) {
        const double phase = 2.0 * std::numbers::pi * static_cast<double>(i) / 512.0;
        period[i] = 0.3 * std::sin(5.0 * phase) + 0.2 * std::sin(11.0 * phase) +
                    0.1 * std::sin(23.0 * phase);
    }
    std::vector<double> out(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        out[i] = period[i % 512];
    }
    return out;
}

TEST(SpectralScan, WorstBinKeepsTheEarliestOfEqualFrames) {
    // Hop 1024 over 6144 frames: frames at 0 .. 5120. The DUT is 0.5 dB louder from 2048 on, so
    // frames 2048 .. 5120 tie on the same worst ratio and the first of them is kept.
    const std::vector<double> ref = periodic_tones(6144);
    std::vector<double> dut = ref;
    const double gain = std::pow(10.0, 0.5 / 20.0);
    for (std::size_t i = 2048; i < dut.size(); ++i) {
        dut[i] *= gain;
    }
    const Pair p{spectral_wav({ref}), spectral_wav({dut})};
    const SpectralChannelResult c =
        spectral_scan(aligned_pair(p.ref, p.dut, 0), continuous(kN, 0.0)).channel[0];
    EXPECT_EQ(c.frames_scanned, 6u);
    EXPECT_EQ(c.worst_frame_start, 2048u);
    EXPECT_EQ(c.chart_frame_start, 2048u);
    EXPECT_NEAR(c.worst_ratio, 0.5, 1e-9);
    EXPECT_TRUE(c.worst_is_peak);
    EXPECT_TRUE(c.passed);
    expect_scan(p, 0, continuous(kN, 0.0), starts(0, 1024, 6));
}

TEST(SpectralScan, ChartKeepsTheSixteenLoudestPeaksInBinOrder) {
    // Twenty bin-centred tones on bins 20, 40, ..., 400, louder with every bin; the DUT is 0.5 dB
    // louder in the frame at 1024 only, which becomes the chart frame.
    std::vector<SpectralTone> tones;
    for (std::size_t i = 1; i <= 20; ++i) {
        tones.push_back({spectral_bin_hz(20 * i, kN), 0.01 * static_cast<double>(i)});
    }
    const std::vector<double> ref = spectral_tones(tones, 3072);
    std::vector<double> dut = ref;
    for (std::size_t i = 1024; i < 2048; ++i) {
        dut[i] *= std::pow(10.0, 0.5 / 20.0);
    }
    const SpectralChannelResult c =
        spectral_scan(aligned_pair(spectral_wav({ref}), spectral_wav({dut}), 0),
                      continuous(kN, 0.0))
            .channel[0];
    EXPECT_EQ(c.chart_frame_start, 1024u);
    EXPECT_EQ(c.worst_frame_start, 1024u);
    EXPECT_EQ(c.worst_tolerance_db, 1.0);
    EXPECT_EQ(c.chart_tiers.noise_floor_db, -100.0);
    EXPECT_EQ(c.chart_tiers.low_level_threshold_db, -70.0);
    EXPECT_EQ(c.chart_tiers.peak_threshold_db, -60.0);
    std::vector<std::size_t> loudest;
    for (std::size_t i = 5; i <= 20; ++i) {
        loudest.push_back(20 * i);
    }
    EXPECT_EQ(c.chart_peak_bins, loudest);
}

TEST(SpectralScan, FailedAllocationLeavesAnEmptyPassingChannel) {
    const Pair p = noisy_pair(kFrames, 37);
    spectral_fail_nothrow_arrays(true);
    const SpectralScanResult r = spectral_scan(aligned_pair(p.ref, p.dut, 0), with_edges(600));
    spectral_fail_nothrow_arrays(false);
    const SpectralChannelResult& c = r.channel[0];
    EXPECT_TRUE(c.passed);
    EXPECT_FALSE(c.insufficient_samples);
    EXPECT_EQ(c.frames_scanned, 0u);
    EXPECT_EQ(c.edge_skipped_samples, 0u);
    EXPECT_EQ(c.bins_compared, 0u);
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(
        spectral_scan(aligned_pair(p.ref, p.dut, 0), with_edges(600)).channel[0].frames_scanned,
        7u);
}

// A logarithmic sweep from 20 Hz to 20 kHz over `frames` frames at 48 kHz, amplitude 0.5, and its
// instantaneous frequency at each frame.
struct Sweep {
    std::vector<double> samples;
    std::vector<double> freq_hz;
};

Sweep log_sweep(std::size_t frames) {
    const double duration = static_cast<double>(frames) / kSpectralRate;
    const double k = std::log(20000.0 / 20.0);
    Sweep s;
    for (std::size_t i = 0; i < frames; ++i) {
        const double t = static_cast<double>(i) / kSpectralRate;
        const double phase =
            2.0 * std::numbers::pi * 20.0 * duration / k * (std::exp(t * k / duration) - 1.0);
        s.samples.push_back(0.5 * std::sin(phase));
        s.freq_hz.push_back(20.0 * std::exp(t * k / duration));
    }
    return s;
}

// -2 dB from 1 to 2 kHz, eased in and out over half an octave on each side with a raised cosine
// so that the gain changes slowly against a frame's length.
double octave_dip_db(double freq_hz) {
    const double octaves = std::log2(freq_hz / 1000.0); // the dip spans [0, 1]
    const double outside = std::max(-octaves, octaves - 1.0);
    if (outside <= 0.0) return -2.0;
    if (outside >= 0.5) return 0.0;
    return -1.0 - std::cos(2.0 * std::numbers::pi * outside);
}

SpectralSettings sweep_settings() {
    SpectralSettings s = continuous(4096, 0.5);
    s.mode = SpectralMode::freq_sweep;
    s.sweep.windowing = true;
    s.sweep.shape = SweepShape::log;
    s.sweep.start_hz = 20.0;
    s.sweep.end_hz = 20000.0;
    s.edge_handling = true;
    s.edge_skip_samples = 4096;
    return s;
}

TEST(SpectralScan, SweepWithAnOctaveDipFails) {
    // Four seconds: e = 4096, (192000 - 4096 - 8192) / 2048 + 1 = 88 frames from 4096; the last
    // ends at 4096 + 87 * 2048 + 4096 = 186368, before 192000 - 4096, so a tail frame starts at
    // 187904 - 4096 = 183808.
    const Sweep sweep = log_sweep(192000);
    std::vector<double> dut = sweep.samples;
    for (std::size_t i = 0; i < dut.size(); ++i) {
        dut[i] *= std::pow(10.0, octave_dip_db(sweep.freq_hz[i]) / 20.0);
    }
    const WavFile ref = spectral_wav({sweep.samples});
    const SpectralSettings s = sweep_settings();
    const SpectralScanResult same = spectral_scan(aligned_pair(ref, ref, 0), s);
    EXPECT_EQ(same.channel[0].frames_scanned, 89u);
    EXPECT_EQ(same.channel[0].edge_skipped_samples, 4096u);
    EXPECT_EQ(same.channel[0].frames_gated, 0u);
    EXPECT_EQ(same.channel[0].p99_ratio, 0.0);
    EXPECT_TRUE(same.passed);
    const SpectralScanResult dipped = spectral_scan(aligned_pair(ref, spectral_wav({dut}), 0), s);
    const SpectralChannelResult& c = dipped.channel[0];
    EXPECT_FALSE(dipped.passed);
    EXPECT_FALSE(c.passed);
    // The failing bins are the tone's peaks inside the dip, 2 dB against a 1 dB peak tolerance;
    // everything else stays within tolerance, so p99 alone would pass.
    EXPECT_GT(c.bins_failed, 0u);
    EXPECT_LE(c.p99_ratio, 1.0);
    EXPECT_TRUE(c.worst_is_peak);
    EXPECT_NEAR(c.worst_diff_db, -2.0, 1e-3);
    EXPECT_NEAR(c.worst_ratio, 2.0, 1e-3);
    EXPECT_GE(c.worst_freq_hz, 1000.0);
    EXPECT_LE(c.worst_freq_hz, 2000.0);
    expect_record(
        c,
        spectral_expected_record(ref, spectral_wav({dut}), 0, s, starts(4096, 2048, 88, {183808})),
        89);
}

} // namespace
