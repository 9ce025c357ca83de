#include "support/reference_fft.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace {

struct Complex {
    double re;
    double im;
};

Complex multiply(Complex a, Complex b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

Complex load(const double* data, std::size_t i) {
    return {data[2 * i], data[2 * i + 1]};
}

void store(double* data, std::size_t i, Complex value) {
    data[2 * i] = value.re;
    data[2 * i + 1] = value.im;
}

unsigned bit_count(std::size_t n) {
    unsigned bits = 0;
    while ((std::size_t{1} << bits) < n) {
        ++bits;
    }
    return bits;
}

std::size_t reverse_bits(std::size_t i, unsigned bits) {
    std::size_t j = 0;
    for (unsigned b = 0; b < bits; ++b) {
        j = (j << 1) | ((i >> b) & 1u);
    }
    return j;
}

void bit_reverse_permute(double* data, std::size_t n) {
    const unsigned bits = bit_count(n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t j = reverse_bits(i, bits);
        if (j > i) {
            std::swap(data[2 * i], data[2 * j]);
            std::swap(data[2 * i + 1], data[2 * j + 1]);
        }
    }
}

void run_stage(double* data, std::size_t n, std::size_t len, bool inverse) {
    const double theta = (inverse ? 2.0 : -2.0) * std::numbers::pi / static_cast<double>(len);
    const Complex r{std::cos(theta), std::sin(theta)};
    const std::size_t half = len / 2;
    for (std::size_t s = 0; s < n; s += len) {
        Complex w{1.0, 0.0};
        for (std::size_t k = 0; k < half; ++k) {
            const Complex u = load(data, s + k);
            const Complex t = multiply(w, load(data, s + k + half));
            store(data, s + k, {u.re + t.re, u.im + t.im});
            store(data, s + k + half, {u.re - t.re, u.im - t.im});
            w = multiply(w, r);
        }
    }
}

} // namespace

void reference_fft_complex(double* data, std::size_t n, bool inverse) {
    if (n < 2) {
        return;
    }
    bit_reverse_permute(data, n);
    for (std::size_t len = 2; len <= n; len *= 2) {
        run_stage(data, n, len, inverse);
    }
    if (inverse) {
        const double scale = static_cast<double>(n);
        for (std::size_t i = 0; i < 2 * n; ++i) {
            data[i] /= scale;
        }
    }
}
