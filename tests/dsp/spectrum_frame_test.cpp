// The windowed spectrum frames: levels of tones and silence, the shifted window, and which
// samples of an interleaved file a frame reads; the plain-Hann spectrum the pages show.
#include "dsp/fft.h"
#include "dsp/spectrum_frame.h"
#include "support/memory_wav.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <numbers>
#include <vector>

namespace {

constexpr double kRate = 48000.0;

WavFile make_wav(const std::vector<std::vector<double>>& channels) {
    WavFile file;
    file.sample_rate = static_cast<std::uint32_t>(kRate);
    file.channels = static_cast<std::uint32_t>(channels.size());
    file.format = kWavFormatFloat64;
    file.frames = channels[0].size();
    file.samples = signal_interleave(channels);
    return file;
}

// A sine whose frequency is exactly bin `bin` of an n-point frame.
std::vector<double> bin_sine(std::size_t bin, std::size_t n, double amplitude, std::size_t frames) {
    const double frequency = static_cast<double>(bin) * kRate / static_cast<double>(n);
    return signal_sine(frequency, amplitude, kRate, frames);
}

std::vector<double> db_frame(const WavFile& file, unsigned channel, std::size_t start,
                             std::size_t n) {
    std::vector<double> out(n / 2, 123.0);
    spectrum_db_frame(file, channel, start, n, out.data());
    return out;
}

std::vector<double> mag_frame(const WavFile& file, unsigned channel, std::size_t start,
                              std::size_t n) {
    std::vector<double> out(n / 2, 123.0);
    spectrum_mag_frame(file, channel, start, n, out.data());
    return out;
}

std::size_t peak_bin(const std::vector<double>& bins) {
    return static_cast<std::size_t>(std::max_element(bins.begin(), bins.end()) - bins.begin());
}

TEST(SpectrumFrame, FullScaleSineOnABinReadsZeroDb) {
    const std::size_t n = 1024;
    const WavFile file = make_wav({bin_sine(64, n, 1.0, n)});
    const std::vector<double> db = db_frame(file, 0, 0, n);
    ASSERT_EQ(peak_bin(db), 64u);
    EXPECT_NEAR(db[64], 0.0, 0.02);
    EXPECT_LT(db[100], -60.0);
}

TEST(SpectrumFrame, SineMagnitudeReadsItsAmplitude) {
    const std::size_t n = 4096;
    const WavFile file = make_wav({bin_sine(300, n, 0.5, n)});
    const std::vector<double> mag = mag_frame(file, 0, 0, n);
    ASSERT_EQ(peak_bin(mag), 300u);
    EXPECT_NEAR(mag[300], 0.5, 0.5e-3);
    EXPECT_NEAR(mag[299], 0.25, 0.5e-3); // the raised cosine spreads half the height to each side
}

TEST(SpectrumFrame, SilenceReadsExactlyTheFloor) {
    const std::size_t n = 512;
    const WavFile file = make_wav({std::vector<double>(n, 0.0)});
    for (double level : db_frame(file, 0, 0, n)) {
        EXPECT_EQ(level, -200.0);
    }
    for (double magnitude : mag_frame(file, 0, 0, n)) {
        EXPECT_EQ(magnitude, 0.0);
    }
}

// 0.5 * (1 - cos(2 pi position / (n - 1))): the frame uses position i + 1 for sample i.
double hann_weight(std::size_t position, std::size_t n) {
    return 0.5 * (1.0 - std::cos(2.0 * std::numbers::pi * static_cast<double>(position) /
                                 static_cast<double>(n - 1)));
}

// Direct evaluation of the windowed DFT, bin by bin, with sample i weighted at position i + shift.
std::vector<double> naive_magnitudes(const std::vector<double>& x, std::size_t shift) {
    const std::size_t n = x.size();
    std::vector<double> out(n / 2);
    for (std::size_t k = 0; k < n / 2; ++k) {
        std::complex<double> sum = 0.0;
        for (std::size_t i = 0; i < n; ++i) {
            const double angle =
                -2.0 * std::numbers::pi * static_cast<double>(k * i % n) / static_cast<double>(n);
            sum += x[i] * hann_weight(i + shift, n) * std::polar(1.0, angle);
        }
        out[k] = std::abs(sum) * 4.0 / static_cast<double>(n);
    }
    return out;
}

double largest_difference(const std::vector<double>& a, const std::vector<double>& b) {
    double largest = 0.0;
    for (std::size_t k = 0; k < a.size(); ++k) {
        largest = std::max(largest, std::fabs(a[k] - b[k]));
    }
    return largest;
}

TEST(SpectrumFrame, WindowUsesTheShiftedArgument) {
    const std::size_t n = 16;
    const std::vector<double> x = signal_uniform(16, n, -1.0, 1.0);
    const std::vector<double> mag = mag_frame(make_wav({x}), 0, 0, n);
    EXPECT_LT(largest_difference(mag, naive_magnitudes(x, 1)), 1e-14);
    // The textbook window without the shift gives a visibly different frame.
    EXPECT_GT(largest_difference(mag, naive_magnitudes(x, 0)), 1e-3);
}

TEST(SpectrumFrame, FirstSampleWeightedSecondToLastSilenced) {
    const std::size_t n = 32;
    std::vector<double> first(n, 0.0);
    first[0] = 1.0;
    const double expected = hann_weight(1, n) * 4.0 / static_cast<double>(n);
    for (double magnitude : mag_frame(make_wav({first}), 0, 0, n)) {
        EXPECT_NEAR(magnitude, expected, 1e-17);
    }
    std::vector<double> second_to_last(n, 0.0);
    second_to_last[n - 2] = 1.0;
    for (double level : db_frame(make_wav({second_to_last}), 0, 0, n)) {
        EXPECT_EQ(level, -200.0);
    }
}

// Channel 1 from frame 37 of a stereo file must give exactly the frame of a mono file holding
// just those samples; channel 0 carries a different tone.
TEST(SpectrumFrame, ReadsTheRequestedChannelAndStartFrame) {
    const std::size_t n = 256;
    const std::size_t start = 37;
    const std::vector<double> left = bin_sine(10, n, 0.8, start + n + 5);
    std::vector<double> right = signal_uniform(99, start + n + 5, -0.1, 0.1);
    const std::vector<double> tone = bin_sine(20, n, 0.5, n);
    for (std::size_t i = 0; i < n; ++i) {
        right[start + i] += tone[i];
    }
    const WavFile stereo = make_wav({left, right});
    const WavFile mono =
        make_wav({std::vector<double>(right.begin() + start, right.begin() + start + n)});

    const std::vector<double> from_stereo = db_frame(stereo, 1, start, n);
    const std::vector<double> from_mono = db_frame(mono, 0, 0, n);
    EXPECT_EQ(std::memcmp(from_stereo.data(), from_mono.data(), sizeof(double) * (n / 2)), 0);
    EXPECT_EQ(peak_bin(from_stereo), 20u);
    EXPECT_EQ(peak_bin(db_frame(stereo, 0, start, n)), 10u);
}

TEST(SpectrumFrame, FewerThanTwoFramesWriteNothing) {
    const WavFile file = make_wav({std::vector<double>(4, 0.5)});
    double out[2] = {7.0, 7.0};
    spectrum_db_frame(file, 0, 0, 1, out);
    spectrum_mag_frame(file, 0, 0, 0, out);
    EXPECT_EQ(out[0], 7.0);
    EXPECT_EQ(out[1], 7.0);
}

TEST(SpectrumFrame, SizesThatAreNotPowersOfTwoReadAsSilent) {
    const std::size_t n = 12;
    const WavFile file = make_wav({bin_sine(2, 16, 1.0, n)});
    for (double level : db_frame(file, 0, 0, n)) {
        EXPECT_EQ(level, -200.0);
    }
    for (double magnitude : mag_frame(file, 0, 0, n)) {
        EXPECT_EQ(magnitude, 0.0);
    }
}

} // namespace

namespace {

// The magnitudes computed step by step with every weight evaluated on the spot, as the frame is
// defined: the frame functions must give exactly these bits whatever window they have cached.
std::vector<double> magnitudes_weight_by_weight(const std::vector<double>& x) {
    const std::size_t n = x.size();
    std::vector<double> frame(2 * n, 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        frame[2 * i] =
            x[i] * (0.5 * (1.0 - std::cos(2.0 * std::numbers::pi * static_cast<double>(i + 1) /
                                          static_cast<double>(n - 1))));
    }
    fft_complex(frame.data(), n, false);
    std::vector<double> out(n / 2);
    for (std::size_t k = 0; k < n / 2; ++k) {
        out[k] = std::hypot(frame[2 * k], frame[2 * k + 1]) * 4.0 / static_cast<double>(n);
    }
    return out;
}

TEST(SpectrumFrame, ReusedWindowGivesTheSameBitsAcrossFrameLengths) {
    const std::vector<double> x = signal_uniform(91, 1024, -1.0, 1.0);
    const std::vector<double> half(x.begin(), x.begin() + 512);
    const std::vector<double> expected = magnitudes_weight_by_weight(x);
    const std::vector<double> expected_half = magnitudes_weight_by_weight(half);
    const WavFile file = make_wav({x});
    for (int round = 0; round < 2; ++round) { // switch lengths so the cached window is rebuilt
        const std::vector<double> full = mag_frame(file, 0, 0, 1024);
        const std::vector<double> first_half = mag_frame(file, 0, 0, 512);
        ASSERT_EQ(std::memcmp(full.data(), expected.data(), full.size() * sizeof(double)), 0);
        ASSERT_EQ(std::memcmp(first_half.data(), expected_half.data(),
                              first_half.size() * sizeof(double)),
                  0);
    }
}

} // namespace

TEST(DisplaySpectrum, ConstantFrameShowsThePlainHannWindow) {
    const WavFile file = memory_wav({std::vector<double>(64, 1.0)}, 48000);
    const std::vector<double> levels = display_spectrum_db(file, 0, 0, 64);
    ASSERT_EQ(levels.size(), 32U);
    EXPECT_NEAR(levels[0], 20.0 * std::log10(2.0), 1e-9); // window sum 32, times 4 / 64
    EXPECT_NEAR(levels[1], 0.0, 1e-9);                    // the window's first harmonic, -16
    for (std::size_t k = 2; k < levels.size(); ++k) {
        EXPECT_EQ(levels[k], -140.0) << k;
    }
}

TEST(DisplaySpectrum, SineCentredOnABinReadsItsAmplitudeFromTheStartFrame) {
    std::vector<double> left(80, 0.9);
    std::vector<double> right(80, 0.0);
    for (std::size_t i = 0; i < 64; ++i) {
        right[16 + i] =
            0.5 * std::sin(2.0 * std::numbers::pi * 8.0 * static_cast<double>(i) / 64.0);
    }
    const WavFile file = memory_wav({left, right}, 48000);
    const std::vector<double> levels = display_spectrum_db(file, 1, 16, 64);
    ASSERT_EQ(levels.size(), 32U);
    EXPECT_NEAR(levels[8], -6.020599913279624, 1e-9);
    EXPECT_NEAR(levels[7], -12.041199826559248, 1e-9);
    EXPECT_NEAR(levels[9], -12.041199826559248, 1e-9);
    EXPECT_EQ(levels[0], -140.0);
}

TEST(DisplaySpectrum, EmptyWhenTheFrameCannotBeTaken) {
    const WavFile file = memory_wav({std::vector<double>(64, 0.25)}, 48000);
    EXPECT_TRUE(display_spectrum_db(file, 0, 1, 64).empty()); // runs past the end
    EXPECT_TRUE(display_spectrum_db(file, 0, 0, 48).empty()); // not a power of two
    EXPECT_TRUE(display_spectrum_db(file, 1, 0, 64).empty()); // no such channel
    EXPECT_TRUE(display_spectrum_db(file, 0, 65, 2).empty()); // starts past the end
    EXPECT_EQ(display_spectrum_db(file, 0, 32, 32).size(), 16U);
}
