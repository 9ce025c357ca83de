// The matched filter: correlates a signal with a short template by the same blocked FFT
// correlation as the alignment, at the lags where the template lies wholly inside the signal, and
// rates the best lag by its peak-to-sidelobe ratio (PSR).
#pragma once

#include <cstddef>
#include <span>

struct MatchedFilterResult {
    std::size_t index = 0; // lag k of the largest |c_k|, c_k = sum signal[k + j] * template[j]
    double psr = 0.0;      // |c_index| over the mean |c_k| outside the excluded neighbourhood
    double peak = 0.0;     // c_index with its sign
};

// Searches the lags 0 ... n - m. Exhausted memory gives the zeroed result; so do a template
// longer than the signal and an empty template, which have no lag to search.
MatchedFilterResult matched_filter(std::span<const double> signal, std::span<const double> tmpl);
