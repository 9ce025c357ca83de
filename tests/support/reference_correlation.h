#pragma once
// The whole-signal correlation search, kept as ground truth for the blocked one: both inputs
// zero-padded to one transform of next_pow2(a + b - 1) points, A * conj(B), the inverse, the scan
// over the lag window and the energies of the overlap, with the straightforward reference
// transform (which gives the same bits as the fast one).

#include <cstddef>
#include <cstdint>
#include <span>

struct ReferencePeak {
    std::int64_t lag = 0; // b lags a by this many samples
    double corr = 0.0;    // signed normalised correlation there
};

// The lag L within lo = max(-max_lag, 1 - b.size()) ... hi = min(max_lag, a.size() - 1) with the
// strictly largest sign * C(L), C(L) = sum a[n] * b[n - L], sign -1 with `invert`; the smallest L
// wins ties. Reported as lag -L with C(L) over the root of both energies of the overlap at L (0
// when either is 0). Empty inputs give lag 0 and correlation 0.
ReferencePeak reference_correlate(std::span<const double> a, std::span<const double> b,
                                  std::size_t max_lag, bool invert);
