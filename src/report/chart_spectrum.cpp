// The spectral chart's own magnitude spectrum of one frame.
#include "report/spectral_chart.h"

#include "dsp/fft.h"
#include "report/chart_scales.h"

#include <cmath>
#include <numbers>

namespace {

// Magnitudes below this (-140 dB), zero included, are drawn at the -140 dB floor.
constexpr double kMagnitudeFloor = 1e-7;

bool frame_fits(const WavFile& file, unsigned channel, std::size_t start_frame, std::size_t n) {
    const bool power_of_two = n >= 2 && (n & (n - 1)) == 0;
    return power_of_two && channel < file.channels && start_frame <= file.frames &&
           n <= file.frames - start_frame;
}

} // namespace

// The window is the plain Hann weight 0.5 (1 - cos(2 pi i / n)), not the shifted window of the
// analysis frames.
std::vector<double> chart_spectrum(const WavFile& file, unsigned channel, std::size_t start_frame,
                                   std::size_t n) {
    if (!frame_fits(file, channel, start_frame, n)) return {};
    std::vector<double> frame(2 * n, 0.0);
    const double length = static_cast<double>(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double weight =
            0.5 * (1.0 - std::cos(2.0 * std::numbers::pi * static_cast<double>(i) / length));
        frame[2 * i] = file.samples[(start_frame + i) * file.channels + channel] * weight;
    }
    fft_complex(frame.data(), n, false);
    std::vector<double> levels(n / 2);
    for (std::size_t k = 0; k < n / 2; ++k) {
        const double magnitude = std::hypot(frame[2 * k], frame[2 * k + 1]) * 4.0 / length;
        levels[k] = magnitude < kMagnitudeFloor ? kChartDbMin : 20.0 * std::log10(magnitude);
    }
    return levels;
}
