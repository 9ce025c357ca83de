// Times the fast transform against the straightforward reference loop on the same random input,
// side by side, and checks that both produce the same bytes. Usage: fft_bench [largest_log2]
// (default 24; sizes 2^10, 2^12, ... up to it).
#include "dsp/fft.h"
#include "dsp/fft_butterflies.h"
#include "support/reference_fft.h"
#include "support/signal_gen.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr int kRepetitions = 3;

struct Row {
    std::size_t n = 0;
    double reference_seconds = 1e30;
    double fast_seconds = 1e30;
    bool identical = false;
};

// Copies `input` into `work` (untimed), then times one forward transform of it.
template <class Transform>
double time_once(const std::vector<double>& input, std::vector<double>& work, Transform transform) {
    work = input;
    const auto start = std::chrono::steady_clock::now();
    transform(work.data(), work.size() / 2);
    const auto stop = std::chrono::steady_clock::now();
    return std::chrono::duration<double>(stop - start).count();
}

// Best of kRepetitions, alternating the two transforms so both see the same machine load.
Row measure(std::size_t n) {
    const std::vector<double> input = signal_uniform(n, 2 * n, -1.0, 1.0);
    std::vector<double> reference;
    std::vector<double> fast;
    Row row;
    row.n = n;
    for (int r = 0; r < kRepetitions; ++r) {
        row.reference_seconds =
            std::min(row.reference_seconds,
                     time_once(input, reference, [](double* data, std::size_t points) {
                         reference_fft_complex(data, points, false);
                     }));
        row.fast_seconds =
            std::min(row.fast_seconds, time_once(input, fast, [](double* data, std::size_t points) {
                         fft_complex(data, points, false);
                     }));
    }
    row.identical = std::memcmp(reference.data(), fast.data(), sizeof(double) * 2 * n) == 0;
    return row;
}

const char* kernel_name(FftKernel kernel) {
    switch (kernel) {
    case FftKernel::avx512:
        return "avx512";
    case FftKernel::avx2:
        return "avx2";
    default:
        return "portable";
    }
}

} // namespace

int main(int argc, char** argv) {
    const int largest = argc > 1 ? std::atoi(argv[1]) : 24;
    std::printf("butterfly kernel of the fast transform: %s\n", kernel_name(fft_best_kernel()));
    std::printf("%10s %14s %14s %9s %10s\n", "n", "reference_s", "fast_s", "speed-up", "identical");
    bool all_identical = true;
    for (int bits = 10; bits <= largest; bits += 2) {
        const Row row = measure(std::size_t{1} << bits);
        std::printf("%10zu %14.6f %14.6f %8.2fx %10s\n", row.n, row.reference_seconds,
                    row.fast_seconds, row.reference_seconds / row.fast_seconds,
                    row.identical ? "yes" : "no");
        std::fflush(stdout);
        all_identical = all_identical && row.identical;
    }
    return all_identical ? 0 : 1;
}
