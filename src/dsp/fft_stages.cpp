#include "dsp/fft_stages.h"

#include "dsp/fft_butterflies.h"
#include "dsp/fft_strips.h"
#include "dsp/fft_twiddles.h"

#include <algorithm>

namespace {

// Stages up to this length run block by block, so one block (128 KiB of points plus 256 KiB of
// twiddles) passes through all of them while it stays in cache; the longer ones run by strips.
constexpr std::size_t kBlockPoints = std::size_t{1} << 13;

std::size_t block_points(std::size_t n) {
    return std::min(n, kBlockPoints);
}

// Block stage with half length h keeps its run of h twiddles at double offset
// fft_twiddle_run_doubles(h - 1): the runs of halves 1, 2, 4, ... sit back to back.
const double* block_run(const double* table, std::size_t half) {
    return table + fft_twiddle_run_doubles(half - 1);
}

void fill_block_twiddles(std::size_t block, bool inverse, double* table) {
    for (std::size_t half = 1; half < block; half *= 2) {
        FftComplex w{1.0, 0.0};
        fft_fill_twiddle_run(table + fft_twiddle_run_doubles(half - 1), half,
                             fft_stage_step(2 * half, inverse), w);
    }
}

void run_block_stages(FftKernel kernel, double* block, std::size_t points, const double* table) {
    for (std::size_t half = 1; half < points; half *= 2) {
        fft_butterfly_stage(kernel, block, points, half, block_run(table, half));
    }
}

} // namespace

std::size_t fft_stages_scratch_doubles(std::size_t n) {
    const std::size_t rows = n / block_points(n);
    return fft_twiddle_run_doubles(block_points(n)) +
           (rows > 1 ? fft_strip_scratch_doubles(rows) : 0);
}

void fft_stages_tabulated(FftKernel kernel, double* data, std::size_t n, bool inverse,
                          double* scratch) {
    const std::size_t block = block_points(n);
    fill_block_twiddles(block, inverse, scratch);
    for (std::size_t s = 0; s < n; s += block) {
        run_block_stages(kernel, data + 2 * s, block, scratch);
    }
    const std::size_t rows = n / block;
    if (rows > 1) {
        fft_strip_stages(kernel, data, rows, block, inverse,
                         scratch + fft_twiddle_run_doubles(block));
    }
}

// Short stages fill their run once and share it across blocks; longer ones refill a fixed
// chunk as the chain advances through each block.
void fft_stages_recurrence(FftKernel kernel, double* data, std::size_t n, bool inverse) {
    constexpr std::size_t kChunk = 64;
    double run[fft_twiddle_run_doubles(kChunk)];
    for (std::size_t half = 1; half < n; half *= 2) {
        const FftComplex r = fft_stage_step(2 * half, inverse);
        if (half <= kChunk) {
            FftComplex w{1.0, 0.0};
            fft_fill_twiddle_run(run, half, r, w);
            fft_butterfly_stage(kernel, data, n, half, run);
            continue;
        }
        for (std::size_t s = 0; s < n; s += 2 * half) {
            FftComplex w{1.0, 0.0};
            for (std::size_t k = 0; k < half; k += kChunk) {
                fft_fill_twiddle_run(run, kChunk, r, w);
                fft_butterflies(kernel, data + 2 * (s + k), data + 2 * (s + k + half), run, kChunk);
            }
        }
    }
}
