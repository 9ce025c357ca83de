// The loudness measure written as plainly as possible: every channel copied out and K-weighted into
// its own array, every block's sum of squares taken afresh from its first sample, the short-term
// blocks scanned once over the signal for their maximum and again over the padded signal for the
// loudness range, a full sort for the range, and the true peak as the 48-tap sums written out.
// The tests compare the fast measure against it figure for figure, and the benchmark uses it as
// the baseline. It shares no code with the measure it verifies.
#pragma once

#include "audio/wav_file.h"

#include <cstddef>
#include <span>
#include <vector>

struct ReferenceLoudness {
    double integrated_lufs = -200.0;
    double range_lu = 0.0;
    double true_peak_dbtp = -200.0;
    double sample_peak_dbfs = -200.0;
    double max_momentary_lufs = -200.0;
    double max_short_term_lufs = -200.0;
};

// `length` frames from `start_frame` of the first min(channels, file.channels, 2) channels at
// `sample_rate` (the length cut to the frames the file holds); the initial values when there are
// no frames or no channels.
ReferenceLoudness reference_loudness(const WavFile& file, unsigned channels,
                                     std::size_t start_frame, std::size_t length,
                                     double sample_rate);

// One channel through the shelf and then the high-pass stage of the K-weighting filter.
std::vector<double> reference_k_weighted(std::span<const double> x, double sample_rate);

// The largest |y| of the polyphase sums y = h[p + 4 j] x[n - j], j = 0 .. min(n, 11), each added
// in the order of j; 0.0 for no samples.
double reference_true_peak(std::span<const double> x);

// Every kept block of a scan over `length` samples of the K-weighted channels: its loudness and its
// mean square per channel (block i, channel k at i * channels + k).
struct ReferenceBlocks {
    std::vector<double> loudness;
    std::vector<double> mean_squares;
};

ReferenceBlocks reference_blocks(const std::vector<std::vector<double>>& weighted,
                                 std::size_t length, double sample_rate, double block_seconds,
                                 double overlap);
