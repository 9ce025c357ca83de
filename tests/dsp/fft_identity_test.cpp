// The fast transform must reproduce the straightforward loop bit for bit: for every size, in both
// directions, with every butterfly kernel this processor can run, on the cache-blocked path and
// on the allocation-free path.
#include "dsp/bit_reverse.h"
#include "dsp/fft.h"
#include "dsp/fft_stages.h"
#include "dsp/fft_transform.h"
#include "support/reference_fft.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

namespace {

constexpr std::size_t kLargestTested = std::size_t{1} << 16;

std::vector<FftKernel> available_kernels() {
    std::vector<FftKernel> kernels;
    for (FftKernel kernel : {FftKernel::portable, FftKernel::avx2, FftKernel::avx512}) {
        if (fft_kernel_available(kernel)) {
            kernels.push_back(kernel);
        }
    }
    return kernels;
}

std::vector<double> random_points(std::size_t n, std::uint64_t seed) {
    return signal_uniform(seed, 2 * n, -1.0, 1.0);
}

bool same_bytes(const std::vector<double>& a, const std::vector<double>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

std::vector<double> reference(std::vector<double> data, bool inverse) {
    reference_fft_complex(data.data(), data.size() / 2, inverse);
    return data;
}

std::vector<double> fast(FftKernel kernel, std::vector<double> data, bool inverse) {
    fft_transform(kernel, data.data(), data.size() / 2, inverse);
    return data;
}

// The stages without scratch, as the transform runs them when its scratch cannot be allocated.
std::vector<double> allocation_free(FftKernel kernel, std::vector<double> data, bool inverse) {
    const std::size_t n = data.size() / 2;
    bit_reverse_permute(data.data(), n);
    fft_stages_recurrence(kernel, data.data(), n, inverse);
    if (inverse) {
        for (double& value : data) {
            value /= static_cast<double>(n);
        }
    }
    return data;
}

TEST(FftIdentity, PortableKernelIsAlwaysAvailableAndBestIsAvailable) {
    EXPECT_TRUE(fft_kernel_available(FftKernel::portable));
    EXPECT_TRUE(fft_kernel_available(fft_best_kernel()));
}

TEST(FftIdentity, EveryKernelMatchesReferenceForEveryPowerOfTwo) {
    for (FftKernel kernel : available_kernels()) {
        for (bool inverse : {false, true}) {
            for (std::size_t n = 2; n <= kLargestTested; n *= 2) {
                const std::vector<double> input = random_points(n, 1000 + n + inverse);
                EXPECT_TRUE(same_bytes(reference(input, inverse), fast(kernel, input, inverse)))
                    << "kernel=" << static_cast<int>(kernel) << " n=" << n
                    << " inverse=" << inverse;
            }
        }
    }
}

TEST(FftIdentity, PublicEntryMatchesReference) {
    for (std::size_t n = 2; n <= kLargestTested; n *= 4) {
        std::vector<double> actual = random_points(n, 2000 + n);
        const std::vector<double> expected = reference(actual, false);
        fft_complex(actual.data(), n, false);
        EXPECT_TRUE(same_bytes(expected, actual)) << "n=" << n;
    }
}

// Sizes with many rows of cache blocks exercise the column-strip stages more deeply.
TEST(FftIdentity, LargeSizesMatchReference) {
    for (FftKernel kernel : available_kernels()) {
        for (std::size_t n : {std::size_t{1} << 18, std::size_t{1} << 19}) {
            const std::vector<double> input = random_points(n, 3000 + n);
            EXPECT_TRUE(same_bytes(reference(input, false), fast(kernel, input, false)))
                << "kernel=" << static_cast<int>(kernel) << " n=" << n;
            EXPECT_TRUE(same_bytes(reference(input, true), fast(kernel, input, true)))
                << "kernel=" << static_cast<int>(kernel) << " n=" << n;
        }
    }
}

TEST(FftIdentity, SignedZerosAndInfinitiesMatchReference) {
    const double inf = std::numeric_limits<double>::infinity();
    for (FftKernel kernel : available_kernels()) {
        for (std::size_t n = 2; n <= std::size_t{1} << 14; n *= 4) {
            std::vector<double> input(2 * n, -0.0);
            for (std::size_t i = 0; i < 2 * n; i += 3) {
                input[i] = 0.0;
            }
            input[2 * (n / 2)] = 0.25;
            EXPECT_TRUE(same_bytes(reference(input, false), fast(kernel, input, false)))
                << "kernel=" << static_cast<int>(kernel) << " n=" << n;
            input[1] = -inf;
            EXPECT_TRUE(same_bytes(reference(input, true), fast(kernel, input, true)))
                << "kernel=" << static_cast<int>(kernel) << " n=" << n;
        }
    }
}

TEST(FftIdentity, AllocationFreePathMatchesReference) {
    for (FftKernel kernel : available_kernels()) {
        for (bool inverse : {false, true}) {
            for (std::size_t n = 2; n <= kLargestTested; n *= 2) {
                const std::vector<double> input = random_points(n, 5000 + n + inverse);
                EXPECT_TRUE(
                    same_bytes(reference(input, inverse), allocation_free(kernel, input, inverse)))
                    << "kernel=" << static_cast<int>(kernel) << " n=" << n
                    << " inverse=" << inverse;
            }
        }
    }
}

std::size_t reversed(std::size_t i, std::size_t n) {
    std::size_t j = 0;
    for (std::size_t bit = 1; bit < n; bit <<= 1) {
        j = (j << 1) | ((i & bit) != 0 ? 1 : 0);
    }
    return j;
}

// Small sizes swap pairwise, large ones move tiles; both must land every point on its reversal.
TEST(BitReverse, EveryPointLandsOnItsReversedIndex) {
    for (std::size_t n : {std::size_t{2}, std::size_t{8}, std::size_t{2048}, std::size_t{4096},
                          std::size_t{1} << 13, std::size_t{1} << 15}) {
        std::vector<double> data(2 * n);
        for (std::size_t i = 0; i < n; ++i) {
            data[2 * i] = static_cast<double>(i);
            data[2 * i + 1] = -static_cast<double>(i);
        }
        bit_reverse_permute(data.data(), n);
        std::size_t misplaced = 0;
        for (std::size_t j = 0; j < n; ++j) {
            const double source = static_cast<double>(reversed(j, n));
            misplaced += data[2 * j] != source || data[2 * j + 1] != -source ? 1 : 0;
        }
        EXPECT_EQ(misplaced, 0u) << "n=" << n;
    }
}

} // namespace
