// One frame of the spectral comparison on tone sums whose spectra are known: identical files,
// exclusion at the floor, the tolerance edge, failing peaks, per-band tolerances, gating and
// search ranges per mode, peak marking, and the frame position in both files.
#include "dsp/spectral_frame.h"

#include "audio/numeric.h"
#include "dsp/spectral_fixture.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr std::size_t kN = 4096;
constexpr std::size_t kBins = kN / 2;
constexpr std::size_t kFrames = 8192;
constexpr std::size_t kLastBinBelow5k = 426; // 426 * 11.71875 = 4992.2 Hz

double bin_hz(std::size_t bin) {
    return spectral_bin_hz(bin, kN);
}

// Bin-centred tones of the given bins and amplitude.
std::vector<double> tones_at(const std::vector<std::size_t>& bins, double amplitude) {
    std::vector<SpectralTone> tones;
    for (std::size_t bin : bins) {
        tones.push_back({bin_hz(bin), amplitude});
    }
    return spectral_tones(tones, kFrames);
}

std::vector<double> mix(const std::vector<double>& a, const std::vector<double>& b) {
    std::vector<double> out(a);
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] += b[i];
    }
    return out;
}

// Floor, low-level threshold, peak threshold, then the signal, low-level and peak tolerances.
SpectralBand band(double upper_hz, double floor_db, double low_db, double peak_db, double sig_tol,
                  double low_tol, double peak_tol) {
    return {upper_hz, floor_db, low_db, peak_db, sig_tol, low_tol, peak_tol};
}

SpectralFrameHarness harness(SpectralMode mode, std::vector<SpectralBand> bands) {
    SpectralFrameHarness h;
    h.n = kN;
    h.mode = mode;
    h.bands = std::move(bands);
    return h;
}

// A floor far below -200 dB compares every bin, so ratio i belongs to bin i.
SpectralBand every_bin_band(double sig_tol) {
    return band(1e300, -1000.0, -90.0, -40.0, sig_tol, 1000.0, sig_tol);
}

std::size_t count_above(std::span<const double> values, double limit) {
    return static_cast<std::size_t>(
        std::count_if(values.begin(), values.end(), [limit](double v) { return v > limit; }));
}

TEST(SpectralFrame, IdenticalFilesGiveRatioZeroOnEveryBin) {
    const WavFile file = spectral_wav({mix(tones_at({43}, 0.5), tones_at({171, 683}, 0.25))});
    SpectralFrameHarness h = harness(SpectralMode::multitone, {every_bin_band(0.5)});
    const SpectralFrameResult r = spectral_harness_run(h, file, file, 1000);
    EXPECT_FALSE(r.gated);
    EXPECT_EQ(r.bins_compared, kBins);
    EXPECT_EQ(r.bins_excluded, 0u);
    EXPECT_EQ(r.bins_failed, 0u);
    ASSERT_EQ(h.ratio_count, kBins);
    EXPECT_EQ(count_above(spectral_harness_ratios(h), 0.0), 0u);
    EXPECT_EQ(r.worst_bin, 0); // every ratio ties at 0: the first compared bin is kept
    EXPECT_EQ(r.worst_ratio, 0.0);
    EXPECT_EQ(r.worst_diff_db, 0.0);
    EXPECT_FALSE(r.failing_peak);
    EXPECT_EQ(r.ref_peak_bin, 43u);
    EXPECT_EQ(spectral_harness_peaks(h), (std::vector<std::size_t>{43, 171, 683}));
}

TEST(SpectralFrame, BinsUnderTheFloorInBothFilesAreExcluded) {
    // Every bin up to 5 kHz is compared; above it the floor of +10 dB is above any level. The
    // louder tone lies below 5 kHz, so the peak's band (and its floor) lets the frame through.
    const WavFile ref = spectral_wav({mix(tones_at({43}, 0.5), tones_at({683}, 0.25))});
    const SpectralBand low = band(5000.0, -1000.0, -90.0, -40.0, 1.0, 1.0, 1.0);
    const SpectralBand high = band(1e300, 10.0, -90.0, -40.0, 1.0, 1.0, 1.0);
    SpectralFrameHarness h = harness(SpectralMode::multitone, {low, high});
    const SpectralFrameResult r = spectral_harness_run(h, ref, ref, 0);
    EXPECT_EQ(r.bins_compared, kLastBinBelow5k + 1);
    EXPECT_EQ(r.bins_excluded, kBins - kLastBinBelow5k - 1);
    EXPECT_EQ(h.ratio_count, kLastBinBelow5k + 1);
}

TEST(SpectralFrame, BinIsComparedWhenOnlyTheDutClearsTheFloor) {
    const std::vector<double> base = tones_at({43}, 0.5);
    const WavFile ref = spectral_wav({base});
    const WavFile dut = spectral_wav({mix(base, tones_at({1024}, 0.5))});
    const SpectralBand low = band(5000.0, -1000.0, -90.0, -40.0, 1.0, 1.0, 1.0);
    const SpectralBand high = band(1e300, -60.0, -90.0, -40.0, 1.0, 1.0, 1.0);
    SpectralFrameHarness h = harness(SpectralMode::multitone, {low, high});
    const SpectralFrameResult r = spectral_harness_run(h, ref, dut, 0);
    std::size_t loud_above_5k = 0;
    for (std::size_t k = kLastBinBelow5k + 1; k < kBins; ++k) {
        EXPECT_LE(h.ref_db[k], -60.0) << "bin " << k;
        if (h.dut_db[k] > -60.0) ++loud_above_5k;
    }
    EXPECT_GE(loud_above_5k, 3u); // bin 1024 and its neighbours
    EXPECT_EQ(r.bins_compared, kLastBinBelow5k + 1 + loud_above_5k);
    EXPECT_EQ(r.bins_excluded, kBins - r.bins_compared);
    EXPECT_GT(r.bins_failed, 0u);
    EXPECT_EQ(r.worst_bin, 1024);
    EXPECT_FALSE(r.worst_is_peak); // peaks are flagged from the reference only
    EXPECT_DOUBLE_EQ(r.worst_diff_db, h.dut_db[1024] + 60.0);
}

TEST(SpectralFrame, DifferenceOfTheToleranceGivesRatioOne) {
    // The DUT is the reference 0.5 dB louder; every tier tolerates exactly 0.5 dB. Bins near the
    // -100 dB floor may be raised to it and come out below 1.
    const std::vector<double> base = tones_at({43, 171, 683}, 0.25);
    const WavFile ref = spectral_wav({base});
    const WavFile dut = spectral_wav({spectral_scaled(base, db_to_linear(0.5))});
    SpectralFrameHarness h =
        harness(SpectralMode::multitone, {band(1e300, -100.0, -90.0, -40.0, 0.5, 0.5, 0.5)});
    const SpectralFrameResult r = spectral_harness_run(h, ref, dut, 0);
    EXPECT_EQ(r.bins_failed, 0u);
    EXPECT_GT(r.bins_compared, 9u);
    EXPECT_NEAR(r.worst_ratio, 1.0, 1e-9);
    EXPECT_NEAR(r.worst_diff_db, 0.5, 5e-10);
    EXPECT_EQ(r.worst_tolerance_db, 0.5);
    std::size_t near_one = 0;
    for (double ratio : spectral_harness_ratios(h)) {
        EXPECT_LE(ratio, 1.0 + 1e-9);
        if (std::fabs(ratio - 1.0) < 1e-9) ++near_one;
    }
    EXPECT_GE(near_one, 9u); // each tone bin and its two neighbours
}

TEST(SpectralFrame, PeakOffByMoreThanThePeakToleranceFailsAlone) {
    // The middle tone is 0.5 dB hotter in the DUT; peaks tolerate 0.25 dB, other bins 10 dB.
    const WavFile ref = spectral_wav({tones_at({43, 171, 683}, 0.25)});
    const std::vector<double> hot = tones_at({171}, 0.25 * db_to_linear(0.5));
    const WavFile dut = spectral_wav({mix(tones_at({43, 683}, 0.25), hot)});
    SpectralFrameHarness h =
        harness(SpectralMode::multitone, {band(1e300, -1000.0, -90.0, -40.0, 10.0, 100.0, 0.25)});
    const SpectralFrameResult r = spectral_harness_run(h, ref, dut, 0);
    EXPECT_EQ(r.bins_failed, 1u);
    EXPECT_TRUE(r.failing_peak);
    EXPECT_EQ(r.worst_bin, 171);
    EXPECT_TRUE(r.worst_is_peak);
    EXPECT_EQ(r.worst_ratio, std::fabs(h.dut_db[171] - h.ref_db[171]) / 0.25);
    EXPECT_NEAR(r.worst_ratio, 2.0, 1e-6); // the other tones' leakage shifts the bin a little
    EXPECT_EQ(r.worst_tolerance_db, 0.25);
    // Nearest-rank p99 of the frame's ratios stays far below 1.
    std::vector<double> sorted(spectral_harness_ratios(h).begin(),
                               spectral_harness_ratios(h).end());
    std::sort(sorted.begin(), sorted.end());
    EXPECT_LT(sorted[static_cast<std::size_t>(std::round(0.99 * (sorted.size() - 1)))], 0.01);
}

TEST(SpectralFrame, MissingToneFailsItsPeakBin) {
    const WavFile ref = spectral_wav({tones_at({43, 171, 683}, 0.5)});
    const WavFile dut = spectral_wav({tones_at({43, 683}, 0.5)});
    SpectralFrameHarness h =
        harness(SpectralMode::multitone, {band(1e300, -90.0, -1000.0, -40.0, 1.0, 1.0, 1.0)});
    const SpectralFrameResult r = spectral_harness_run(h, ref, dut, 0);
    EXPECT_TRUE(r.failing_peak);
    EXPECT_EQ(r.worst_bin, 171);
    EXPECT_TRUE(r.worst_is_peak);
    EXPECT_EQ(h.peak[171], 1u);
    EXPECT_EQ(r.worst_diff_db, std::max(-90.0, h.dut_db[171]) - h.ref_db[171]);
    EXPECT_LT(r.worst_diff_db, -80.0);
    EXPECT_GE(r.bins_failed, 3u); // the peak and both neighbours of the main lobe
}

TEST(SpectralFrame, TiltAboveFiveKilohertzFailsThereOnly) {
    const std::vector<std::size_t> low_bins{43, 171, 341};
    const std::vector<std::size_t> high_bins{597, 1024, 1365};
    const std::vector<double> low = tones_at(low_bins, 0.2);
    const std::vector<double> high = tones_at(high_bins, 0.2);
    const WavFile ref = spectral_wav({mix(low, high)});
    const WavFile dut = spectral_wav({mix(low, spectral_scaled(high, db_to_linear(1.0)))});
    SpectralFrameHarness h = harness(SpectralMode::multitone, {every_bin_band(0.5)});
    const SpectralFrameResult r = spectral_harness_run(h, ref, dut, 0);
    ASSERT_EQ(h.ratio_count, kBins);
    const std::span<const double> ratios = spectral_harness_ratios(h);
    for (std::size_t k = 0; k <= kLastBinBelow5k; ++k) {
        EXPECT_LE(ratios[k], kSpectralFailRatio) << "bin " << k;
    }
    for (std::size_t k : high_bins) {
        EXPECT_NEAR(ratios[k], 2.0, 1e-6) << "bin " << k;
        EXPECT_EQ(h.peak[k], 1u);
    }
    EXPECT_GE(r.bins_failed, 9u); // each tilted tone and its two neighbours
    EXPECT_TRUE(r.failing_peak);
    EXPECT_GT(r.worst_bin, static_cast<long>(kLastBinBelow5k));
}

TEST(SpectralFrame, EachBandAppliesItsOwnTolerance) {
    // The DUT is 1 dB louder everywhere: 2x the tolerance below 5 kHz, 0.5x above.
    const std::vector<double> base = tones_at({43, 683}, 0.25);
    const WavFile ref = spectral_wav({base});
    const WavFile dut = spectral_wav({spectral_scaled(base, db_to_linear(1.0))});
    const SpectralBand tight = band(5000.0, -1000.0, -90.0, -40.0, 0.5, 1000.0, 0.5);
    const SpectralBand loose = band(1e300, -1000.0, -90.0, -40.0, 2.0, 1000.0, 2.0);
    SpectralFrameHarness h = harness(SpectralMode::multitone, {tight, loose});
    const SpectralFrameResult r = spectral_harness_run(h, ref, dut, 0);
    ASSERT_EQ(h.ratio_count, kBins);
    const std::span<const double> ratios = spectral_harness_ratios(h);
    EXPECT_NEAR(ratios[43], 2.0, 1e-9);
    EXPECT_NEAR(ratios[683], 0.5, 1e-9);
    for (std::size_t k = kLastBinBelow5k + 1; k < kBins; ++k) {
        EXPECT_LE(ratios[k], 0.5 + 1e-9) << "bin " << k;
    }
    EXPECT_GE(r.bins_failed, 3u);
    EXPECT_EQ(r.worst_bin, 42); // the main lobe ties at 1 dB: its first bin wins
}

TEST(SpectralFrame, SilentReferenceFrameIsGated) {
    const WavFile ref = spectral_wav({spectral_silence(kFrames)});
    const WavFile dut = spectral_wav({tones_at({43}, 0.5)});
    SpectralFrameHarness h =
        harness(SpectralMode::multitone, {band(1e300, -150.0, -90.0, -40.0, 1.0, 1.0, 1.0)});
    spectral_harness_run(h, dut, dut, 0); // a compared frame first: its ratios stay pooled
    const std::size_t pooled = h.ratio_count;
    ASSERT_GT(pooled, 0u);
    const SpectralFrameResult r = spectral_harness_run(h, ref, dut, 0);
    EXPECT_TRUE(r.gated);
    EXPECT_EQ(h.ratio_count, pooled);
    EXPECT_EQ(r.bins_compared, 0u);
    EXPECT_EQ(r.bins_excluded, 0u);
    EXPECT_EQ(r.bins_failed, 0u);
    EXPECT_EQ(r.worst_bin, -1);
    EXPECT_EQ(r.worst_ratio, -1.0);
    EXPECT_EQ(r.ref_peak_bin, 0u);
    EXPECT_EQ(r.gate_db, -150.0);
    EXPECT_TRUE(spectral_harness_peaks(h).empty());
    // A floor of exactly -200 dB is not cleared either: the peak must lie strictly above it.
    h.bands[0].noise_floor_db = -200.0;
    EXPECT_TRUE(spectral_harness_run(h, ref, dut, 0).gated);
}

TEST(SpectralFrame, FrameIsReadAtTheOffsetInTheDut) {
    // Noise makes every stretch of the signal differ from the stretch 100 frames away.
    const std::vector<double> base =
        mix(tones_at({43, 171}, 0.5), signal_uniform(7, kFrames, -0.1, 0.1));
    std::vector<double> late(100, 0.0);
    late.insert(late.end(), base.begin(), base.end());
    late.resize(kFrames);
    const WavFile ref = spectral_wav({base});
    const WavFile dut = spectral_wav({late});
    SpectralFrameHarness h = harness(SpectralMode::multitone, {every_bin_band(0.5)});
    const SpectralFrameResult aligned = spectral_harness_run(h, ref, dut, 500, 100);
    EXPECT_EQ(aligned.worst_ratio, 0.0);
    const SpectralFrameResult early = spectral_harness_run(h, dut, ref, 600, -100);
    EXPECT_EQ(early.worst_ratio, 0.0);
    const SpectralFrameResult unaligned = spectral_harness_run(h, ref, dut, 500, 0);
    EXPECT_GT(unaligned.worst_ratio, 1.0);
}

TEST(SpectralFrame, ComparesTheRequestedChannel) {
    const WavFile ref = spectral_wav({spectral_silence(kFrames), tones_at({43}, 0.5)});
    SpectralFrameHarness h =
        harness(SpectralMode::multitone, {band(1e300, -150.0, -90.0, -40.0, 1.0, 1.0, 1.0)});
    EXPECT_TRUE(spectral_harness_run(h, ref, ref, 0, 0, 0).gated);
    const SpectralFrameResult right = spectral_harness_run(h, ref, ref, 0, 0, 1);
    EXPECT_FALSE(right.gated);
    EXPECT_EQ(right.ref_peak_bin, 43u);
}

TEST(SpectralFrame, RunPeaksOfTwoSeparatedTonesAndAtTheLastBin) {
    const WavFile two = spectral_wav({tones_at({100, 900}, 0.5)});
    SpectralFrameHarness h = harness(SpectralMode::multitone, {every_bin_band(1.0)});
    spectral_harness_run(h, two, two, 0);
    EXPECT_EQ(spectral_harness_peaks(h), (std::vector<std::size_t>{100, 900}));
    // A tone on the last bin leaves its run open at the end of the spectrum.
    const WavFile top = spectral_wav({tones_at({100, kBins - 1}, 0.5)});
    spectral_harness_run(h, top, top, 0);
    EXPECT_GT(h.ref_db[kBins - 2], -40.0);
    EXPECT_EQ(spectral_harness_peaks(h), (std::vector<std::size_t>{100, kBins - 1}));
}

} // namespace
