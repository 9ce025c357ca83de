// The radix-2 butterflies of one transform stage: the innermost loops of the transform, in a
// portable form and in vector forms for processors that offer wider registers.
#pragma once

#include <cstddef>

// Which loops run the butterflies. Every kernel evaluates each butterfly with the same
// operations in the same order, so all of them produce the same bits.
enum class FftKernel {
    portable, // plain scalar loops
    avx2,     // two points per 256-bit vector
    avx512,   // four points per 512-bit vector (the two shortest stages as avx2)
};

// True when this build and processor can run `kernel`; the portable kernel always can.
bool fft_kernel_available(FftKernel kernel);

// The widest available kernel.
FftKernel fft_best_kernel();

// For k < count: t = w_k * b[k], a[k] = a[k] + t, b[k] = a[k] - t, on interleaved (re, im)
// points, with the twiddles w_k stored as a run (fft_twiddles.h). The complex product is
// evaluated as (w.re * b.re - w.im * b.im, w.re * b.im + w.im * b.re) with no fused or reordered
// operations. The three ranges must not overlap; `kernel` must be available.
void fft_butterflies(FftKernel kernel, double* a, double* b, const double* w, std::size_t count);

// Runs one stage over `points` consecutive points: for every block start s = 0, 2 * half,
// 4 * half, ... the butterflies of data[s + k] and data[s + k + half] with twiddle k of the run w,
// k < half. points must be a multiple of 2 * half; w must not overlap data.
void fft_butterfly_stage(FftKernel kernel, double* data, std::size_t points, std::size_t half,
                         const double* w);
