#include "dsp/fft_twiddles.h"

#include <cmath>
#include <numbers>

FftComplex fft_stage_step(std::size_t len, bool inverse) {
    const double theta = (inverse ? 2.0 : -2.0) * std::numbers::pi / static_cast<double>(len);
    return {std::cos(theta), std::sin(theta)};
}

void fft_fill_twiddle_run(double* run, std::size_t count, FftComplex r, FftComplex& w) {
    for (std::size_t k = 0; k < count; ++k) {
        fft_store_twiddle(run, count, k, w);
        w = fft_multiply(w, r);
    }
}
