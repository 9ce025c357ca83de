#include "dsp/true_peak.h"

#include "dsp/double_pair.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace {

// Samples before an interpolated one that its sums reach back to.
constexpr std::size_t kHistory = kTruePeakTapsPerPhase - 1;
// Samples copied out of the channel at a time; with their history they stay in the first-level
// cache while the sums read each of them 48 times.
constexpr std::size_t kChunk = 2048;

// Every tap twice, for the two halves of a pair.
using PairTaps = std::array<DoublePair, kTruePeakTaps>;

PairTaps pair_taps(const TruePeakFilter& h) {
    PairTaps taps{};
    for (std::size_t k = 0; k < kTruePeakTaps; ++k)
        taps[k] = DoublePair{h[k], h[k]};
    return taps;
}

// The phase sums of the four samples x[0] .. x[3] (their history x[-11] .. x[-1] before them),
// as the pairs (x[0], x[1]) and (x[2], x[3]): per phase and sample a sum from 0.0 adding
// h[p + 4 j] x[n - j] in the order j = 0 .. 11, as the scalar sum does; taps 4j .. 4j + 3 are the
// j-th taps of phases 0 .. 3. The magnitudes go into the peak pair.
void four_samples(const double* x, const PairTaps& taps, DoublePair& peak) {
    static_assert(kTruePeakPhases == 4);
    // Phase p of the first pair in a<p>, of the second in b<p>: eight sums in registers.
    DoublePair a0{};
    DoublePair a1{};
    DoublePair a2{};
    DoublePair a3{};
    DoublePair b0{};
    DoublePair b1{};
    DoublePair b2{};
    DoublePair b3{};
    for (std::size_t j = 0; j < kTruePeakTapsPerPhase; ++j) {
        const DoublePair first = load_pair(x - j);
        const DoublePair second = load_pair(x + 2 - j);
        const DoublePair* t = taps.data() + kTruePeakPhases * j;
        a0 += t[0] * first;
        b0 += t[0] * second;
        a1 += t[1] * first;
        b1 += t[1] * second;
        a2 += t[2] * first;
        b2 += t[2] * second;
        a3 += t[3] * first;
        b3 += t[3] * second;
    }
    for (const DoublePair sum : {a0, b0, a1, b1, a2, b2, a3, b3})
        peak = max_pair(peak, abs_pair(sum));
}

// The same sums for the single sample x[0], one phase after the other.
double one_sample(const double* x, const TruePeakFilter& h, double peak) {
    for (std::size_t p = 0; p < kTruePeakPhases; ++p) {
        double y = 0.0;
        for (std::size_t j = 0; j < kTruePeakTapsPerPhase; ++j)
            y += h[p + kTruePeakPhases * j] * x[-static_cast<std::ptrdiff_t>(j)];
        peak = std::max(peak, std::abs(y));
    }
    return peak;
}

// The peak so far of the sums taken four samples at a time (one per half) and of those taken one
// by one. A maximum keeps the peak against a NaN, so the peak is the largest magnitude that is a
// number, in whatever order the magnitudes arrive.
struct PeakPair {
    DoublePair pairs{};
    double single = 0.0;
};

// Peaks of the `count` samples from x (their history before them), four at a time and the rest
// one by one.
void chunk_peak(const double* x, std::size_t count, const TruePeakFilter& h, const PairTaps& taps,
                PeakPair& peak) {
    std::size_t n = 0;
    for (; n + 4 <= count; n += 4)
        four_samples(x + n, taps, peak.pairs);
    for (; n < count; ++n)
        peak.single = one_sample(x + n, h, peak.single);
}

} // namespace

TruePeakFilter true_peak_filter() {
    constexpr double pi = std::numbers::pi;
    TruePeakFilter h{};
    double sum = 0.0;
    for (std::size_t k = 0; k < kTruePeakTaps; ++k) {
        const auto index = static_cast<double>(k);
        // x = k - 23.5 is never 0, so the sinc's own value at 0 (0.25) is never needed.
        const double x = index - 23.5;
        const double hamming = 0.54 - 0.46 * std::cos(2.0 * pi * index / 47.0);
        // "x × π/4" is taken left to right: (x × π) / 4.
        h[k] = std::sin(x * pi / 4.0) / (x * pi) * hamming;
        sum += h[k];
    }
    const double scale = 4.0 / sum;
    for (double& tap : h)
        tap *= scale;
    return h;
}

double channel_sample_peak(const double* first, std::size_t count, std::size_t stride) {
    double peak = 0.0;
    for (std::size_t n = 0; n < count; ++n)
        peak = std::max(peak, std::abs(first[n * stride]));
    return peak;
}

// The channel is copied chunk by chunk behind the last kHistory samples of the chunk before; the
// first chunk's history is silence, whose products add only zeros after the real terms and so
// leave every magnitude as the shorter sum gives it.
double channel_true_peak(const double* first, std::size_t count, std::size_t stride,
                         const TruePeakFilter& h) {
    const PairTaps taps = pair_taps(h);
    std::array<double, kHistory + kChunk> buffer{};
    PeakPair peak;
    for (std::size_t done = 0; done < count;) {
        const std::size_t n = std::min(kChunk, count - done);
        for (std::size_t i = 0; i < n; ++i)
            buffer[kHistory + i] = first[(done + i) * stride];
        chunk_peak(buffer.data() + kHistory, n, h, taps, peak);
        std::copy(buffer.begin() + static_cast<std::ptrdiff_t>(n),
                  buffer.begin() + static_cast<std::ptrdiff_t>(n + kHistory), buffer.begin());
        done += n;
    }
    return std::max({peak.single, peak.pairs[0], peak.pairs[1]});
}
