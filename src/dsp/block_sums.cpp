#include "dsp/block_sums.h"

#include <algorithm>

namespace {

// Continues `sum` over x[from] .. x[to - 1].
double add_squares(const double* x, std::size_t from, std::size_t to, double sum) {
    for (std::size_t i = from; i < to; ++i)
        sum += x[i] * x[i];
    return sum;
}

// Four ranges: their common length side by side, then each remainder on its own.
void four_sums(const double* x, std::span<const SampleRange> r, std::span<double> sums) {
    const double* p0 = x + r[0].start;
    const double* p1 = x + r[1].start;
    const double* p2 = x + r[2].start;
    const double* p3 = x + r[3].start;
    const std::size_t common = std::min({r[0].end - r[0].start, r[1].end - r[1].start,
                                         r[2].end - r[2].start, r[3].end - r[3].start});
    double s0 = 0.0;
    double s1 = 0.0;
    double s2 = 0.0;
    double s3 = 0.0;
    for (std::size_t i = 0; i < common; ++i) {
        s0 += p0[i] * p0[i];
        s1 += p1[i] * p1[i];
        s2 += p2[i] * p2[i];
        s3 += p3[i] * p3[i];
    }
    sums[0] = add_squares(p0, common, r[0].end - r[0].start, s0);
    sums[1] = add_squares(p1, common, r[1].end - r[1].start, s1);
    sums[2] = add_squares(p2, common, r[2].end - r[2].start, s2);
    sums[3] = add_squares(p3, common, r[3].end - r[3].start, s3);
}

} // namespace

void sums_of_squares(const double* x, std::span<const SampleRange> ranges, std::span<double> sums) {
    if (ranges.size() == kSquareSumLanes) {
        four_sums(x, ranges, sums);
        return;
    }
    for (std::size_t g = 0; g < ranges.size(); ++g) {
        sums[g] = add_squares(x, ranges[g].start, ranges[g].end, 0.0);
    }
}
