#include "dsp/fft_butterflies.h"

#include <cstring>
#include <utility>

namespace {

void butterflies_portable(double* __restrict a, double* __restrict b, const double* __restrict w,
                          std::size_t count) {
    const double* w_im = w + 2 * count;
    for (std::size_t d = 0; d < 2 * count; d += 2) {
        const double tre = w[d] * b[d] - w_im[d] * b[d + 1];
        const double tim = w[d + 1] * b[d + 1] + w_im[d + 1] * b[d];
        const double ure = a[d];
        const double uim = a[d + 1];
        a[d] = ure + tre;
        a[d + 1] = uim + tim;
        b[d] = ure - tre;
        b[d + 1] = uim - tim;
    }
}

// A stage whose half length is a compile-time constant, so the inner loop is straight-line code;
// used for the short first stages where a loop per block would cost more than its butterflies.
template <std::size_t kHalf>
void short_stage_portable(double* data, std::size_t points, const double* w) {
    for (std::size_t s = 0; s < points; s += 2 * kHalf) {
        butterflies_portable(data + 2 * s, data + 2 * (s + kHalf), w, kHalf);
    }
}

void stage_portable(double* data, std::size_t points, std::size_t half, const double* w) {
    if (half == 1) {
        short_stage_portable<1>(data, points, w);
        return;
    }
    if (half == 2) {
        short_stage_portable<2>(data, points, w);
        return;
    }
    for (std::size_t s = 0; s < points; s += 2 * half) {
        butterflies_portable(data + 2 * s, data + 2 * (s + half), w, half);
    }
}

#if defined(__x86_64__) && defined(__GNUC__)
#define SONALYX_FFT_VECTORS 1

// Vectors hold whole points, lanes (re0, im0, re1, im1, ...), and twiddle runs duplicate each
// part to match. With p = w.re * b and q = w.im * swap(b), lane re of p - q is
// w.re * b.re - w.im * b.im and lane im of p + q is w.re * b.im + w.im * b.re: the scalar
// expressions, operation for operation. The helpers below are always inlined into functions
// compiled for the wider instruction set, and take vectors by reference so that no vector
// crosses a function boundary.
typedef double Vec4 __attribute__((vector_size(32)));
typedef double Vec8 __attribute__((vector_size(64)));

template <class V> constexpr std::size_t kLanes = sizeof(V) / sizeof(double);

template <class V> [[gnu::always_inline]] inline void load(V& v, const double* from) {
    std::memcpy(&v, from, sizeof v);
}

template <class V> [[gnu::always_inline]] inline void store(double* to, const V& v) {
    std::memcpy(to, &v, sizeof v);
}

template <class V, std::size_t... I>
[[gnu::always_inline]] inline void twiddle_product(const V& re, const V& im, const V& b, V& t,
                                                   std::index_sequence<I...>) {
    const V p = re * b;
    const V q = im * __builtin_shufflevector(b, b, (I ^ 1)...);
    t = __builtin_shufflevector(p - q, p + q, (I % 2 == 0 ? I : I + sizeof...(I))...);
}

template <class V>
[[gnu::always_inline]] inline void butterfly(V& a, V& b, const V& re, const V& im) {
    V t;
    twiddle_product(re, im, b, t, std::make_index_sequence<kLanes<V>>{});
    const V upper = a + t;
    b = a - t;
    a = upper;
}

// count must be a multiple of the points per vector.
template <class V>
[[gnu::always_inline]] inline void butterflies_vector(double* __restrict a, double* __restrict b,
                                                      const double* __restrict w,
                                                      std::size_t count) {
    const double* w_im = w + 2 * count;
    for (std::size_t d = 0; d < 2 * count; d += kLanes<V>) {
        V upper;
        V lower;
        V re;
        V im;
        load(upper, a + d);
        load(lower, b + d);
        load(re, w + d);
        load(im, w_im + d);
        butterfly(upper, lower, re, im);
        store(a + d, upper);
        store(b + d, lower);
    }
}

template <class V>
[[gnu::always_inline]] inline void stage_vector(double* data, std::size_t points, std::size_t half,
                                                const double* w) {
    for (std::size_t s = 0; s < points; s += 2 * half) {
        butterflies_vector<V>(data + 2 * s, data + 2 * (s + half), w, half);
    }
}

// Stage of half length 1: blocks are adjacent point pairs sharing one twiddle. Two blocks
// (p0, p1) and (p2, p3) are regrouped into upper (p0, p2) and lower (p1, p3) vectors and back.
[[gnu::target("avx2")]] void pairs_stage_avx2(double* data, std::size_t points, const double* w) {
    const Vec4 re = {w[0], w[1], w[0], w[1]};
    const Vec4 im = {w[2], w[3], w[2], w[3]};
    for (std::size_t d = 0; d < 2 * points; d += 8) {
        Vec4 first;
        Vec4 second;
        load(first, data + d);
        load(second, data + d + 4);
        Vec4 upper = __builtin_shufflevector(first, second, 0, 1, 4, 5);
        Vec4 lower = __builtin_shufflevector(first, second, 2, 3, 6, 7);
        butterfly(upper, lower, re, im);
        const Vec4 first_out = __builtin_shufflevector(upper, lower, 0, 1, 4, 5);
        const Vec4 second_out = __builtin_shufflevector(upper, lower, 2, 3, 6, 7);
        store(data + d, first_out);
        store(data + d + 4, second_out);
    }
}

// Stage of half length 2: each block of four points is one upper and one lower vector, and all
// blocks share the same two twiddles.
[[gnu::target("avx2")]] void quads_stage_avx2(double* data, std::size_t points, const double* w) {
    Vec4 re;
    Vec4 im;
    load(re, w);
    load(im, w + 4);
    for (std::size_t d = 0; d < 2 * points; d += 8) {
        Vec4 upper;
        Vec4 lower;
        load(upper, data + d);
        load(lower, data + d + 4);
        butterfly(upper, lower, re, im);
        store(data + d, upper);
        store(data + d + 4, lower);
    }
}

[[gnu::target("avx2")]] void butterflies_avx2(double* a, double* b, const double* w,
                                              std::size_t count) {
    butterflies_vector<Vec4>(a, b, w, count);
}

[[gnu::target("avx2")]] void stage_avx2(double* data, std::size_t points, std::size_t half,
                                        const double* w) {
    stage_vector<Vec4>(data, points, half, w);
}

[[gnu::target("avx512f")]] void butterflies_avx512(double* a, double* b, const double* w,
                                                   std::size_t count) {
    butterflies_vector<Vec8>(a, b, w, count);
}

[[gnu::target("avx512f")]] void stage_avx512(double* data, std::size_t points, std::size_t half,
                                             const double* w) {
    stage_vector<Vec8>(data, points, half, w);
}

// Points per vector of each vector kernel: shorter runs fall to narrower loops.
void vector_butterflies(FftKernel kernel, double* a, double* b, const double* w,
                        std::size_t count) {
    if (kernel == FftKernel::avx512 && count % 4 == 0) {
        butterflies_avx512(a, b, w, count);
    } else if (count % 2 == 0) {
        butterflies_avx2(a, b, w, count);
    } else {
        butterflies_portable(a, b, w, count);
    }
}

void vector_stage(FftKernel kernel, double* data, std::size_t points, std::size_t half,
                  const double* w) {
    if (half == 1) {
        pairs_stage_avx2(data, points, w);
    } else if (half == 2) {
        quads_stage_avx2(data, points, w);
    } else if (kernel == FftKernel::avx512) {
        stage_avx512(data, points, half, w);
    } else {
        stage_avx2(data, points, half, w);
    }
}
#endif

} // namespace

bool fft_kernel_available(FftKernel kernel) {
    switch (kernel) {
    case FftKernel::portable:
        return true;
#ifdef SONALYX_FFT_VECTORS
    case FftKernel::avx2:
        return __builtin_cpu_supports("avx2") != 0;
    case FftKernel::avx512:
        return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("avx512f") != 0;
#endif
    default:
        return false;
    }
}

FftKernel fft_best_kernel() {
    if (fft_kernel_available(FftKernel::avx512)) {
        return FftKernel::avx512;
    }
    return fft_kernel_available(FftKernel::avx2) ? FftKernel::avx2 : FftKernel::portable;
}

void fft_butterflies(FftKernel kernel, double* a, double* b, const double* w, std::size_t count) {
#ifdef SONALYX_FFT_VECTORS
    if (kernel != FftKernel::portable) {
        vector_butterflies(kernel, a, b, w, count);
        return;
    }
#endif
    butterflies_portable(a, b, w, count);
}

void fft_butterfly_stage(FftKernel kernel, double* data, std::size_t points, std::size_t half,
                         const double* w) {
#ifdef SONALYX_FFT_VECTORS
    if (kernel != FftKernel::portable && points >= 4) {
        vector_stage(kernel, data, points, half, w);
        return;
    }
#endif
    stage_portable(data, points, half, w);
}
