#include "dsp/fft_transform.h"

#include "dsp/bit_reverse.h"
#include "dsp/fft_stages.h"

#include <memory>
#include <new>

void fft_transform(FftKernel kernel, double* data, std::size_t n, bool inverse) {
    // Sizes that are not powers of two have no radix-2 transform; they are left alone like n < 2.
    if (n < 2 || (n & (n - 1)) != 0) {
        return;
    }
    bit_reverse_permute(data, n);
    // The twiddle runs and strip buffers are scratch of this call only; without them the stages
    // run one after another on a small fixed run, which gives the same bits more slowly.
    const std::unique_ptr<double[]> scratch(
        new (std::nothrow) double[fft_stages_scratch_doubles(n)]);
    if (scratch) {
        fft_stages_tabulated(kernel, data, n, inverse, scratch.get());
    } else {
        fft_stages_recurrence(kernel, data, n, inverse);
    }
    if (inverse) {
        const double scale = static_cast<double>(n);
        for (std::size_t i = 0; i < 2 * n; ++i) {
            data[i] /= scale;
        }
    }
}
