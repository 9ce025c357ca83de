// The distortion check on real tones, single centred frame: identical and quieter DUTs, an added
// third harmonic, gating, the notch width, a fundamental at DC, the verdict boundary and extreme
// or degenerate files.
#include "dsp/distortion.h"
#include "dsp/distortion_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

constexpr std::size_t kN = 4096;
constexpr std::size_t kFrames = 12000;

// The defaults of the settings: notch 20 bins, gate -100 dB, tolerance 0.01, single frame.
DistortionResult check_single(const WavFile& ref, const WavFile& dut, std::size_t notch = 20,
                              double floor_db = -100.0, double tolerance = 0.01) {
    return distortion_check(aligned_pair(ref, dut, 0), kN, notch, false, floor_db, tolerance, 0.0);
}

// The single frame of a 12000-frame overlap starts at 6000 - 2048.
constexpr std::size_t kCentredStart = kFrames / 2 - kN / 2;

TEST(DistortionCheck, IdenticalFilesGiveZeroAndPass) {
    const WavFile ref = distortion_wav({distortion_tone(1000.0, 0.5, kFrames)});
    const DistortionResult r = check_single(ref, ref);
    ASSERT_EQ(r.channels, 1u);
    EXPECT_TRUE(r.passed);
    const DistortionChannelResult& c = r.channel[0];
    EXPECT_TRUE(c.passed);
    EXPECT_FALSE(c.frame_gated);
    EXPECT_FALSE(c.insufficient_samples);
    EXPECT_EQ(c.frames_scanned, 1u);
    EXPECT_EQ(c.frames_gated, 0u);
    EXPECT_EQ(c.worst_frame_start, kCentredStart);
    // 1000 Hz lies at bin 85.33 of 4096 points at 48 kHz; the largest bin is 85.
    EXPECT_DOUBLE_EQ(c.fundamental_freq_hz, 85.0 * 48000.0 / 4096.0);
    EXPECT_EQ(c.thdn_ratio, 0.0);
    EXPECT_EQ(c.thdn_db, -200.0);
    EXPECT_EQ(c.p50_thdn_ratio, 0.0);
    EXPECT_EQ(c.p95_thdn_ratio, 0.0);
}

TEST(DistortionCheck, QuieterDutHasNoResidual) {
    const std::vector<double> tone = distortion_tone(1000.0, 0.5, kFrames);
    const WavFile ref = distortion_wav({tone});
    const WavFile dut = distortion_wav({distortion_mix(tone, tone, -0.5)});
    const DistortionChannelResult c = check_single(ref, dut).channel[0];
    EXPECT_TRUE(c.passed);
    EXPECT_EQ(c.thdn_ratio, 0.0);
    EXPECT_EQ(c.thdn_db, -200.0);
}

// The harmonic's power lands outside the 20-bin notch and the fundamental's inside it, and the
// window weights both tones alike, so the ratio is the amplitude ratio 0.01 up to the
// fundamental's far leakage (more than 150 bins away, over 100 dB down) and the cross terms of
// the two tones' spectra: a relative tolerance of 1e-4 leaves margin over both.
TEST(DistortionCheck, OnePercentThirdHarmonicGivesAboutOnePercent) {
    const std::vector<double> tone = distortion_tone(1000.0, 0.5, kFrames);
    const WavFile ref = distortion_wav({tone});
    const WavFile dut =
        distortion_wav({distortion_mix(tone, distortion_tone(3000.0, 0.005, kFrames), 1.0)});
    const DistortionChannelResult c = check_single(ref, dut, 20, -100.0, 0.02).channel[0];
    EXPECT_NEAR(c.thdn_ratio, 0.01, 1e-6);
    EXPECT_NEAR(c.thdn_db, -40.0, 1e-3);
    EXPECT_TRUE(c.passed);
    const FrameMeasurement direct = distortion_measure_frame(ref, dut, 0, kCentredStart, 0, kN, 20);
    EXPECT_EQ(c.thdn_ratio, direct.figure.ratio);
    EXPECT_EQ(c.thdn_db, direct.figure.db);
}

TEST(DistortionCheck, ReferenceBelowTheGateIsGated) {
    // A -126 dB tone cannot clear a -100 dB gate.
    const std::vector<double> tone = distortion_tone(1000.0, 5e-7, kFrames);
    const WavFile ref = distortion_wav({tone});
    const WavFile dut =
        distortion_wav({distortion_mix(tone, distortion_tone(3000.0, 0.5, kFrames), 1.0)});
    const DistortionChannelResult c = check_single(ref, dut).channel[0];
    EXPECT_TRUE(c.passed);
    EXPECT_TRUE(c.frame_gated);
    EXPECT_FALSE(c.insufficient_samples);
    EXPECT_EQ(c.frames_scanned, 1u);
    EXPECT_EQ(c.frames_gated, 1u);
    EXPECT_EQ(c.worst_frame_start, 0u);
    EXPECT_EQ(c.fundamental_freq_hz, 0.0);
    EXPECT_EQ(c.thdn_ratio, 0.0);
    EXPECT_EQ(c.thdn_db, 0.0);
    EXPECT_EQ(c.p50_thdn_ratio, 0.0);
    EXPECT_EQ(c.p95_thdn_ratio, 0.0);
}

TEST(DistortionCheck, SilentReferenceIsGatedEvenWithAZeroGate) {
    // The gate 10^(-10000/20) underflows to 0; a silent bin is not strictly above it.
    const WavFile silent = distortion_wav({std::vector<double>(kFrames, 0.0)});
    const DistortionResult r = check_single(silent, silent, 20, -10000.0);
    EXPECT_TRUE(r.passed);
    EXPECT_TRUE(r.channel[0].frame_gated);
    EXPECT_EQ(r.channel[0].frames_gated, 1u);
    EXPECT_EQ(r.channel[0].thdn_db, 0.0);
}

TEST(DistortionCheck, NotchOfZeroBinsLeavesTheMainLobeAsResidual) {
    // A bin-centred tone (bin 64) and a DUT twice as loud: every bin's excess is 3 R^2. With no
    // notch the main lobe's neighbours (about half the peak) count: ratio about sqrt(3/8).
    const std::vector<double> tone = distortion_tone(64.0 * 48000.0 / kN, 0.25, kFrames);
    const WavFile ref = distortion_wav({tone});
    const WavFile dut = distortion_wav({distortion_mix(tone, tone, 1.0)});
    const DistortionChannelResult zero = check_single(ref, dut, 0, -100.0, 1.0).channel[0];
    const FrameMeasurement direct = distortion_measure_frame(ref, dut, 0, kCentredStart, 0, kN, 0);
    EXPECT_EQ(direct.k0, 64u);
    EXPECT_EQ(zero.thdn_ratio, direct.figure.ratio);
    EXPECT_NEAR(zero.thdn_ratio, std::sqrt(3.0 / 8.0), 1e-3);
    EXPECT_DOUBLE_EQ(zero.fundamental_freq_hz, 750.0);
    // One bin each side takes the main lobe in: only the far leakage is left.
    const DistortionChannelResult one = check_single(ref, dut, 1, -100.0, 1.0).channel[0];
    EXPECT_LT(one.thdn_ratio, 1e-3);
}

TEST(DistortionCheck, FundamentalAtDc) {
    // A DC offset of 0.5 reads about 1.0 in bin 0, above the 0.1 tone.
    const std::vector<double> ref_signal = distortion_mix(
        std::vector<double>(kFrames, 0.5), distortion_tone(1000.0, 0.1, kFrames), 1.0);
    const WavFile ref = distortion_wav({ref_signal});
    const WavFile dut =
        distortion_wav({distortion_mix(ref_signal, distortion_tone(5000.0, 0.01, kFrames), 1.0)});
    const DistortionChannelResult c = check_single(ref, dut).channel[0];
    const FrameMeasurement direct = distortion_measure_frame(ref, dut, 0, kCentredStart, 0, kN, 20);
    EXPECT_EQ(direct.k0, 0u);
    EXPECT_EQ(c.fundamental_freq_hz, 0.0);
    EXPECT_EQ(c.thdn_ratio, direct.figure.ratio);
    // A tone's bins sum to 1.5 A^2; the notch around DC holds bin 0 (about 1.0^2) and bin 1
    // (about 0.5^2) of the offset, 1.25 in all.
    EXPECT_NEAR(c.thdn_ratio, 0.01 * std::sqrt(1.5 / 1.25), 1e-4);
}

TEST(DistortionCheck, VerdictRestsOnTheWorstRatioInclusive) {
    const std::vector<double> tone = distortion_tone(1000.0, 0.5, kFrames);
    const WavFile ref = distortion_wav({tone});
    const WavFile dut =
        distortion_wav({distortion_mix(tone, distortion_tone(3000.0, 0.01, kFrames), 1.0)});
    const double ratio = check_single(ref, dut, 20, -100.0, 1.0).channel[0].thdn_ratio;
    EXPECT_TRUE(check_single(ref, dut, 20, -100.0, ratio).passed);
    const DistortionResult below = check_single(ref, dut, 20, -100.0, std::nextafter(ratio, 0.0));
    EXPECT_FALSE(below.passed);
    EXPECT_FALSE(below.channel[0].passed);
    EXPECT_EQ(below.channel[0].thdn_ratio, ratio);
}

TEST(DistortionCheck, FullScaleIntegerExtremesStayFinite) {
    // A full-scale square wave between +32767 and -32768 codes, against itself and against a DUT
    // that clips the negative half a little: ratios are finite.
    const double low = -32768.0 / 32767.0;
    std::vector<double> square(kFrames);
    std::vector<double> clipped(kFrames);
    for (std::size_t i = 0; i < kFrames; ++i) {
        square[i] = (i / 24) % 2 == 0 ? 1.0 : low;
        clipped[i] = (i / 24) % 2 == 0 ? 1.0 : -0.9;
    }
    const WavFile ref = distortion_wav({square});
    const DistortionChannelResult same = check_single(ref, ref).channel[0];
    EXPECT_EQ(same.thdn_ratio, 0.0);
    EXPECT_EQ(same.thdn_db, -200.0);
    EXPECT_DOUBLE_EQ(same.fundamental_freq_hz, 85.0 * 48000.0 / 4096.0);
    const DistortionChannelResult c =
        check_single(ref, distortion_wav({clipped}), 20, -100.0, 1.0).channel[0];
    EXPECT_TRUE(std::isfinite(c.thdn_ratio));
    EXPECT_TRUE(std::isfinite(c.thdn_db));
    EXPECT_GT(c.thdn_ratio, 0.0);
}

TEST(DistortionCheck, OneFrameFilesAreInsufficient) {
    const WavFile one = distortion_wav({std::vector<double>{0.5}});
    const DistortionChannelResult c = check_single(one, one).channel[0];
    EXPECT_TRUE(c.passed);
    EXPECT_TRUE(c.insufficient_samples);
    EXPECT_FALSE(c.frame_gated);
    EXPECT_EQ(c.frames_scanned, 0u);
    EXPECT_EQ(c.thdn_ratio, 0.0);
}

} // namespace
