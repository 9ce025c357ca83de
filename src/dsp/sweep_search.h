// The peak search range of the sweep profiles: under a frequency or amplitude sweep the test signal
// holds one tone at a time, so the reference peak is looked for only in a narrow range of bins
// around the frequency the tone must have in the frame at hand.
#pragma once

#include <cstddef>

// The three comparison modes of the spectral check.
enum class SpectralMode {
    multitone = 0,  // several tones at once; the peak is searched over the whole spectrum
    freq_sweep = 1, // one tone gliding from a start to an end frequency
    amp_sweep = 2,  // one fixed tone whose level changes
};

enum class SweepShape { linear, log };

struct SweepSettings {
    // False when the sweep's frequencies are not configured (no start/end for a frequency sweep,
    // no test frequency for an amplitude sweep): the peak is then searched over every bin.
    bool windowing = false;
    SweepShape shape = SweepShape::linear;
    double start_hz = 0.0;      // frequency sweep: tone at the start of the reference
    double end_hz = 0.0;        // frequency sweep: tone at the end of the reference
    double test_freq_hz = 0.0;  // amplitude sweep: the fixed tone
    double window_cents = 50.0; // half-width of the search range
};

// Inclusive bin range [lo, hi].
struct BinRange {
    std::size_t lo = 0;
    std::size_t hi = 0;
};

// The tone frequency expected in the frame starting at reference frame `start` (length n) of a
// reference of `ref_frames` frames. Frequency sweep: p = (start + 0.5 n) / ref_frames clamped to
// [0, 1], then start * (end / start)^p for the log shape with a start above 0, else
// start + (end - start) * p. Amplitude sweep: the test frequency. Multitone: 0.
double sweep_expected_frequency(SpectralMode mode, const SweepSettings& sweep, std::size_t start,
                                std::size_t n, std::size_t ref_frames);

// Bins within window_cents of freq_hz, bin width sample_rate / n: lo = floor(f 2^(-W/1200) / w),
// hi = ceil(f 2^(W/1200) / w), widened to at least one bin each side of round(f / w) and clamped
// to [0, bin_count - 1] with lo <= hi.
BinRange sweep_search_range(double freq_hz, double sample_rate, std::size_t n,
                            std::size_t bin_count, double window_cents);
