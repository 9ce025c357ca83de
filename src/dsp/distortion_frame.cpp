#include "dsp/distortion_frame.h"

#include "audio/audio.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kSmallestNotchPower = 1e-300;

} // namespace

std::size_t distortion_fundamental_bin(std::span<const double> ref_mag) {
    std::size_t best = 0;
    for (std::size_t k = 1; k < ref_mag.size(); ++k) {
        if (ref_mag[k] > ref_mag[best]) best = k;
    }
    return best;
}

ThdnFigure distortion_thdn(std::span<const double> ref_mag, std::span<const double> dut_mag,
                           std::size_t k0, std::size_t notch_bins) {
    const std::size_t last = dut_mag.size() - 1;
    const std::size_t low = k0 > notch_bins ? k0 - notch_bins : 0;
    // Written as a comparison so that a huge notch cannot overflow k0 + notch_bins.
    const std::size_t high = notch_bins >= last - k0 ? last : k0 + notch_bins;
    double signal = 0.0;
    double residual = 0.0;
    for (std::size_t k = 0; k <= last; ++k) {
        const double dut_power = dut_mag[k] * dut_mag[k];
        if (k >= low && k <= high) {
            signal += dut_power;
            continue;
        }
        const double excess = dut_power - ref_mag[k] * ref_mag[k];
        if (excess > 0.0) residual += excess;
    }
    const double quotient = residual / std::max(signal, kSmallestNotchPower);
    ThdnFigure figure;
    figure.ratio = std::sqrt(quotient);
    figure.db = magnitude_db(figure.ratio); // positive exactly when the quotient is
    return figure;
}
