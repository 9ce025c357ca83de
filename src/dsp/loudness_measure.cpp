#include "dsp/loudness.h"

#include "audio/decibels.h"
#include "audio/rounding.h"
#include "dsp/k_weighting.h"
#include "dsp/loudness_blocks.h"
#include "dsp/loudness_gating.h"
#include "dsp/loudness_range.h"
#include "dsp/nothrow_array.h"
#include "dsp/true_peak.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>

namespace {

constexpr unsigned kMaxChannels = 2;
constexpr LoudnessBlockShape kMomentary{0.4, 0.75};
constexpr LoudnessBlockShape kShortTerm{3.0, 0.97};
constexpr double kRangePaddingSeconds = 1.5;

using Buffer = std::unique_ptr<double[]>;

// Per measured channel the unfiltered samples (length of them) and the K-weighted signal followed
// by the silence the loudness range is padded with (length + padding).
struct ChannelSignals {
    std::array<Buffer, kMaxChannels> raw;
    std::array<Buffer, kMaxChannels> weighted;
    unsigned channels = 0;
    std::size_t length = 0;
    std::size_t padding = 0;
};

// The range's padding is allocated with the K-weighted buffers (a buffer that cannot be had,
// padding included, leaves the initial values); the range computation itself only allocates its
// blocks.
bool allocate_signals(ChannelSignals& s) {
    for (unsigned k = 0; k < s.channels; ++k) {
        s.raw[k] = try_allocate_doubles(s.length);
        s.weighted[k] = try_allocate_doubles(s.length + s.padding);
        if (!s.raw[k] || !s.weighted[k]) return false;
    }
    return true;
}

// Copies each channel out of the interleaved samples and K-weights it; the padding stays silent.
void fill_signals(const WavFile& file, std::size_t start_frame, double sample_rate,
                  ChannelSignals& s) {
    const KWeighting k_weighting = k_weighting_design(sample_rate);
    for (unsigned k = 0; k < s.channels; ++k) {
        double* raw = s.raw[k].get();
        for (std::size_t i = 0; i < s.length; ++i) {
            raw[i] = file.samples[(start_frame + i) * file.channels + k];
        }
        double* weighted = s.weighted[k].get();
        k_weighting_filter(k_weighting, {raw, s.length}, {weighted, s.length});
        std::fill(weighted + s.length, weighted + s.length + s.padding, 0.0);
    }
}

// The K-weighted channel signals, each `length` samples long.
std::array<std::span<const double>, kMaxChannels> weighted_views(const ChannelSignals& s,
                                                                 std::size_t length) {
    std::array<std::span<const double>, kMaxChannels> views{};
    for (unsigned k = 0; k < s.channels; ++k)
        views[k] = {s.weighted[k].get(), length};
    return views;
}

// Integrated loudness and the largest momentary and short-term loudness, all taken over the
// unpadded K-weighted signals.
void measure_loudness(const ChannelSignals& s, double sample_rate, LoudnessMeasure& m) {
    const auto views = weighted_views(s, s.length);
    const std::span<const std::span<const double>> signals(views.data(), s.channels);
    const LoudnessBlockList momentary =
        loudness_blocks(signals, s.length, sample_rate, kMomentary, /*keep_mean_squares=*/true);
    m.integrated_lufs = integrated_loudness(momentary);
    m.max_momentary_lufs = max_block_loudness(momentary);
    const LoudnessBlockList short_term =
        loudness_blocks(signals, s.length, sample_rate, kShortTerm, /*keep_mean_squares=*/false);
    m.max_short_term_lufs = max_block_loudness(short_term);
}

// The loudness range over the short-term blocks of the padded signals; 0.0 when the block list
// cannot be allocated.
double measure_range(const ChannelSignals& s, double sample_rate) {
    const std::size_t padded = s.length + s.padding;
    const auto views = weighted_views(s, padded);
    const std::span<const std::span<const double>> signals(views.data(), s.channels);
    LoudnessBlockList blocks =
        loudness_blocks(signals, padded, sample_rate, kShortTerm, /*keep_mean_squares=*/false);
    return loudness_range({blocks.loudness.get(), blocks.count});
}

// Peaks of several channels combine as the largest of the per-channel dB values.
void measure_peaks(const ChannelSignals& s, LoudnessMeasure& m) {
    const TruePeakFilter filter = true_peak_filter();
    for (unsigned k = 0; k < s.channels; ++k) {
        const std::span<const double> raw(s.raw[k].get(), s.length);
        m.sample_peak_dbfs = std::max(m.sample_peak_dbfs, magnitude_db(channel_sample_peak(raw)));
        m.true_peak_dbtp = std::max(m.true_peak_dbtp, magnitude_db(channel_true_peak(raw, filter)));
    }
}

} // namespace

LoudnessMeasure loudness_measure(const WavFile& file, unsigned channels, std::size_t start_frame,
                                 std::size_t length, double sample_rate) {
    LoudnessMeasure m;
    ChannelSignals s;
    // Never more channels or frames than the file holds, so no sample outside it is read.
    s.channels = std::min({channels, file.channels, kMaxChannels});
    s.length = std::min(length, file.frames - std::min(start_frame, file.frames));
    if (s.length == 0 || s.channels == 0) return m;
    s.padding =
        static_cast<std::size_t>(round_half_away_from_zero(kRangePaddingSeconds * sample_rate));
    if (!allocate_signals(s)) return m;
    fill_signals(file, start_frame, sample_rate, s);
    measure_loudness(s, sample_rate, m);
    m.range_lu = measure_range(s, sample_rate);
    measure_peaks(s, m);
    return m;
}
