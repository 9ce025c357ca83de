// The sweep modes of one spectral frame: the peak searched only around the expected tone, the
// gate of each mode, the single peak flag, and the relative floor of the amplitude sweep.
#include "dsp/spectral_frame.h"

#include "dsp/spectral_fixture.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr std::size_t kN = 4096;
constexpr std::size_t kBins = kN / 2;
constexpr std::size_t kFrames = 8192;
constexpr std::size_t kLastBinBelow5k = 426;

// A quiet swept tone on bin 85 (0.1, -20 dB) and a loud unrelated one on bin 427 (0.5, -6 dB).
WavFile two_tone_reference() {
    const std::vector<SpectralTone> tones{{spectral_bin_hz(85, kN), 0.1},
                                          {spectral_bin_hz(427, kN), 0.5}};
    return spectral_wav({spectral_tones(tones, kFrames)});
}

SpectralBand band(double upper_hz, double floor_db, double peak_db) {
    return {upper_hz, floor_db, -90.0, peak_db, 1.0, 1.0, 1.0};
}

SpectralFrameHarness sweep_harness(SpectralMode mode, std::vector<SpectralBand> bands) {
    SpectralFrameHarness h;
    h.n = kN;
    h.mode = mode;
    h.bands = std::move(bands);
    h.sweep.windowing = true;
    h.sweep.window_cents = 50.0;
    h.sweep.start_hz = spectral_bin_hz(85, kN);
    h.sweep.end_hz = spectral_bin_hz(85, kN);
    h.sweep.test_freq_hz = spectral_bin_hz(85, kN);
    return h;
}

TEST(SpectralFrameSweep, FrequencySweepSearchesAroundTheExpectedTone) {
    const WavFile ref = two_tone_reference();
    SpectralFrameHarness h = sweep_harness(SpectralMode::freq_sweep, {band(1e300, -100.0, -30.0)});
    const SpectralFrameResult r = spectral_harness_run(h, ref, ref, 0);
    EXPECT_FALSE(r.gated);
    EXPECT_EQ(r.ref_peak_bin, 85u);
    EXPECT_EQ(r.gate_db, -30.0);
    EXPECT_EQ(r.peak_band_floor_db, -100.0);
    EXPECT_EQ(spectral_harness_peaks(h), std::vector<std::size_t>{85});
    // Without configured sweep frequencies every bin is searched.
    h.sweep.windowing = false;
    EXPECT_EQ(spectral_harness_run(h, ref, ref, 0).ref_peak_bin, 427u);
}

TEST(SpectralFrameSweep, FrequencySweepPositionComesFromTheFrameCentre) {
    // A linear sweep from 0 to bin 340 over 8192 frames: the frame at 0 is centred at p = 0.25,
    // where the tone is on bin 85; the frame at 2048 (p = 0.5) looks around bin 170 instead.
    const WavFile ref = two_tone_reference();
    SpectralFrameHarness h = sweep_harness(SpectralMode::freq_sweep, {band(1e300, -100.0, -60.0)});
    h.sweep.start_hz = 0.0;
    h.sweep.end_hz = spectral_bin_hz(340, kN);
    EXPECT_EQ(spectral_harness_run(h, ref, ref, 0).ref_peak_bin, 85u);
    const SpectralFrameResult later = spectral_harness_run(h, ref, ref, 2048);
    EXPECT_GE(later.ref_peak_bin, 165u);
    EXPECT_LE(later.ref_peak_bin, 175u);
    EXPECT_TRUE(later.gated); // only leakage there, far below -60 dB
}

TEST(SpectralFrameSweep, FrequencySweepGateIsThePeakThreshold) {
    const WavFile ref = two_tone_reference();
    SpectralFrameHarness h = sweep_harness(SpectralMode::freq_sweep, {band(1e300, -100.0, -10.0)});
    const SpectralFrameResult r = spectral_harness_run(h, ref, ref, 0);
    EXPECT_TRUE(r.gated); // -20 dB does not clear -10 dB
    EXPECT_EQ(r.gate_db, -10.0);
    EXPECT_EQ(h.ratio_count, 0u);
    // A threshold equal to the peak level still gates; just below it does not.
    h.bands[0].peak_threshold_db = h.ref_db[85];
    EXPECT_TRUE(spectral_harness_run(h, ref, ref, 0).gated);
    h.bands[0].peak_threshold_db = h.ref_db[85] - 1e-9;
    EXPECT_FALSE(spectral_harness_run(h, ref, ref, 0).gated);
}

TEST(SpectralFrameSweep, FrequencySweepFlagsThePeakOnlyAboveTheNoiseFloor) {
    const WavFile ref = two_tone_reference();
    SpectralFrameHarness h = sweep_harness(SpectralMode::freq_sweep, {band(1e300, -15.0, -30.0)});
    const SpectralFrameResult r = spectral_harness_run(h, ref, ref, 0);
    EXPECT_FALSE(r.gated);
    EXPECT_TRUE(spectral_harness_peaks(h).empty());
}

TEST(SpectralFrameSweep, AmplitudeSweepSearchesAroundItsTestFrequency) {
    const WavFile ref = two_tone_reference();
    SpectralFrameHarness h = sweep_harness(SpectralMode::amp_sweep, {band(1e300, -100.0, -30.0)});
    const SpectralFrameResult r = spectral_harness_run(h, ref, ref, 0);
    EXPECT_EQ(r.ref_peak_bin, 85u);
    EXPECT_EQ(r.gate_db, -100.0); // the noise floor without a relative floor
    EXPECT_EQ(spectral_harness_peaks(h), std::vector<std::size_t>{85});
    // Above the floor but not above the peak threshold: compared, no peak flag.
    h.bands[0].peak_threshold_db = -15.0;
    EXPECT_FALSE(spectral_harness_run(h, ref, ref, 0).gated);
    EXPECT_TRUE(spectral_harness_peaks(h).empty());
}

TEST(SpectralFrameSweep, RelativeFloorGatesAndFloorsThePeakBandOnly) {
    const WavFile ref = two_tone_reference();
    // Band 0 (to 5 kHz) holds the swept tone; band 1 compares every bin.
    SpectralFrameHarness h = sweep_harness(
        SpectralMode::amp_sweep, {band(5000.0, -120.0, -30.0), band(1e300, -1000.0, -30.0)});
    h.relative_floor_db = -30.0;
    const SpectralFrameResult r = spectral_harness_run(h, ref, ref, 0);
    ASSERT_FALSE(r.gated);
    EXPECT_EQ(r.peak_band, 0u);
    EXPECT_EQ(r.gate_db, h.ref_db[85] + -30.0);
    EXPECT_EQ(r.peak_band_floor_db, r.gate_db);
    std::size_t under_gate = 0;
    std::size_t under_band_floor = 0;
    for (std::size_t k = 0; k <= kLastBinBelow5k; ++k) {
        if (h.ref_db[k] <= r.gate_db) ++under_gate;
        if (h.ref_db[k] <= -120.0) ++under_band_floor;
    }
    EXPECT_NE(under_gate, under_band_floor); // the two floors would exclude different bins
    EXPECT_EQ(r.bins_excluded, under_gate);
    EXPECT_EQ(r.bins_compared, kBins - under_gate);
}

TEST(SpectralFrameSweep, RelativeFloorNeverGoesBelowTheBandFloor) {
    const WavFile ref = two_tone_reference();
    SpectralFrameHarness h = sweep_harness(SpectralMode::amp_sweep, {band(1e300, -10.0, -30.0)});
    h.relative_floor_db = -30.0;
    const SpectralFrameResult r = spectral_harness_run(h, ref, ref, 0);
    EXPECT_EQ(r.gate_db, -10.0);
    EXPECT_TRUE(r.gated);
    // A relative floor above 0 dB puts the gate above the peak itself.
    h.bands[0].noise_floor_db = -100.0;
    h.relative_floor_db = 1.0;
    EXPECT_TRUE(spectral_harness_run(h, ref, ref, 0).gated);
}

TEST(SpectralFrameSweep, OtherModesIgnoreTheRelativeFloor) {
    const WavFile ref = two_tone_reference();
    SpectralFrameHarness h = sweep_harness(SpectralMode::multitone, {band(1e300, -100.0, -30.0)});
    h.relative_floor_db = -3.0;
    const SpectralFrameResult r = spectral_harness_run(h, ref, ref, 0);
    EXPECT_FALSE(r.gated);
    EXPECT_EQ(r.ref_peak_bin, 427u); // multitone searches every bin
    EXPECT_EQ(r.gate_db, -100.0);
    EXPECT_EQ(r.peak_band_floor_db, -100.0);
}

} // namespace
