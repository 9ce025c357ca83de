#include "dsp/spectrum_frame.h"
#include "audio/audio.h"

#include "dsp/fft.h"

#include <cmath>
#include <memory>
#include <new>
#include <numbers>
#include <vector>

namespace {

// The analysis window's argument uses i + 1, not i: the first and last samples get a small
// non-zero weight and the second-to-last gets weight 0.
double window_weight(std::size_t i, std::size_t n) {
    return 0.5 * (1.0 - std::cos(2.0 * std::numbers::pi * static_cast<double>(i + 1) /
                                 static_cast<double>(n - 1)));
}

// The display window is the plain Hann weight 0.5 (1 - cos(2 pi i / n)).
double display_weight(std::size_t i, std::size_t n) {
    return 0.5 * (1.0 - std::cos(2.0 * std::numbers::pi * static_cast<double>(i) /
                                 static_cast<double>(n)));
}

// Magnitudes below this (-140 dB), zero included, are shown at the display floor.
constexpr double kDisplayFloorMagnitude = 1e-7;

// The weights of the last frame length asked for, computed once: the frames of a scan share one
// length, so each frame costs no cosines. The program runs on one thread, so one cache serves.
// Null when the weights cannot be allocated; the caller then computes each weight itself, which
// gives the same numbers.
const double* cached_window(std::size_t n) {
    static std::size_t cached_n = 0;
    static std::unique_ptr<double[]> weights;
    if (cached_n == n && weights) {
        return weights.get();
    }
    weights.reset(new (std::nothrow) double[n]);
    cached_n = weights ? n : 0;
    for (std::size_t i = 0; weights && i < n; ++i) {
        weights[i] = window_weight(i, n);
    }
    return weights.get();
}

// Writes the n / 2 linear magnitudes of the windowed frame to `out`. Returns false, writing
// nothing, when n is not a power of two or the frame buffer cannot be allocated.
bool frame_magnitudes(const WavFile& file, unsigned channel, std::size_t start_frame, std::size_t n,
                      SpectrumWindow kind, double* out) {
    if ((n & (n - 1)) != 0) {
        return false;
    }
    const std::unique_ptr<double[]> frame(new (std::nothrow) double[2 * n]);
    if (!frame) {
        return false;
    }
    // Only the analysis frames of a scan repeat one length; the display frames are few.
    const double* const window = kind == SpectrumWindow::analysis ? cached_window(n) : nullptr;
    for (std::size_t i = 0; i < n; ++i) {
        const double x = file.samples[(start_frame + i) * file.channels + channel];
        const double weight = kind == SpectrumWindow::display ? display_weight(i, n)
                              : window                        ? window[i]
                                                              : window_weight(i, n);
        frame[2 * i] = x * weight;
        frame[2 * i + 1] = 0.0;
    }
    fft_complex(frame.get(), n, false);
    for (std::size_t k = 0; k < n / 2; ++k) {
        out[k] = std::hypot(frame[2 * k], frame[2 * k + 1]) * 4.0 / static_cast<double>(n);
    }
    return true;
}

void fill(double* out, std::size_t count, double value) {
    for (std::size_t k = 0; k < count; ++k) {
        out[k] = value;
    }
}

} // namespace

// With fewer than two frames there are no bins: nothing is read or written. Without a frame (n
// not a power of two, or no memory for the frame buffer) every bin reads as silent: -200.0 dB
// here, magnitude 0.0 below.
void spectrum_db_frame(const WavFile& file, unsigned channel, std::size_t start_frame,
                       std::size_t n, double* out) {
    if (n < 2) {
        return;
    }
    if (!frame_magnitudes(file, channel, start_frame, n, SpectrumWindow::analysis, out)) {
        fill(out, n / 2, kSilenceDb);
        return;
    }
    for (std::size_t k = 0; k < n / 2; ++k) {
        out[k] = magnitude_db(out[k]);
    }
}

void spectrum_mag_frame(const WavFile& file, unsigned channel, std::size_t start_frame,
                        std::size_t n, double* out) {
    if (n < 2) {
        return;
    }
    if (!frame_magnitudes(file, channel, start_frame, n, SpectrumWindow::analysis, out)) {
        fill(out, n / 2, 0.0);
    }
}

std::vector<double> display_spectrum_db(const WavFile& file, unsigned channel,
                                        std::size_t start_frame, std::size_t n) {
    const bool power_of_two = n >= 2 && (n & (n - 1)) == 0;
    if (!power_of_two || channel >= file.channels || start_frame > file.frames ||
        n > file.frames - start_frame)
        return {};
    std::vector<double> levels(n / 2);
    if (!frame_magnitudes(file, channel, start_frame, n, SpectrumWindow::display, levels.data()))
        return {};
    for (double& level : levels)
        level = level < kDisplayFloorMagnitude ? kDisplayFloorDb : magnitude_db(level);
    return levels;
}
