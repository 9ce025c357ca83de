// Twiddle factors of the radix-2 stages and the layout in which the butterflies read them.
#pragma once

#include <cstddef>

struct FftComplex {
    double re;
    double im;
};

// a * b as (a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re). Inline: it is the step of
// every twiddle chain.
inline FftComplex fft_multiply(FftComplex a, FftComplex b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

// Step of the stage of length len: r = cos(theta) + i sin(theta), theta = -2 pi / len for the
// forward transform and +2 pi / len for the inverse.
FftComplex fft_stage_step(std::size_t len, bool inverse);

// Twiddle k of a stage is the k-th value of the chain w_0 = 1, w_{k+1} = w_k * r, stepped with
// fft_multiply: exactly the value the in-loop recurrence holds at butterfly k of every block.
//
// A run of `count` twiddles is stored in the layout of the points it multiplies, each part
// duplicated: doubles 2k and 2k + 1 hold the real part of twiddle k, doubles 2 count + 2k and
// 2 count + 2k + 1 its imaginary part, 4 * count doubles in all.
constexpr std::size_t fft_twiddle_run_doubles(std::size_t count) {
    return 4 * count;
}

inline void fft_store_twiddle(double* run, std::size_t count, std::size_t k, FftComplex w) {
    run[2 * k] = w.re;
    run[2 * k + 1] = w.re;
    run[2 * count + 2 * k] = w.im;
    run[2 * count + 2 * k + 1] = w.im;
}

// Stores `count` consecutive chain values starting with w into run and leaves w at the next one.
void fft_fill_twiddle_run(double* run, std::size_t count, FftComplex r, FftComplex& w);
