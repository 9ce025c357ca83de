#include "dsp/loudness.h"

#include "audio/audio.h"
#include "dsp/k_weighting.h"
#include "dsp/loudness_blocks.h"
#include "dsp/loudness_gating.h"
#include "dsp/loudness_range.h"
#include "dsp/nothrow_array.h"
#include "dsp/true_peak.h"

#include <algorithm>
#include <memory>

namespace {

constexpr unsigned kMaxChannels = 2;
constexpr LoudnessBlockShape kMomentary{0.4, 0.75};
constexpr LoudnessBlockShape kShortTerm{3.0, 0.97};
constexpr double kRangePaddingSeconds = 1.5;

// The measured frames of the file: the first `channels` channels of `length` frames from
// `start_frame`.
struct MeasuredFrames {
    const WavFile* file = nullptr;
    std::size_t start_frame = 0;
    std::size_t length = 0;
    unsigned channels = 0;
};

// The squares of the K-weighted channels are made a chunk at a time into a window that holds only
// the frames the block scans still read: the whole signal is never stored, so the memory needed
// does not grow with the file and no large buffer has to be set up.
constexpr std::size_t kChunkFrames = 4096;

// The squares of frames base .. base + held - 1, frame by frame, in room for `capacity` frames.
struct SquaresWindow {
    std::unique_ptr<double[]> data;
    std::size_t channels = 0;
    std::size_t capacity = 0;
    std::size_t base = 0;
    std::size_t held = 0;
};

// The scans of one measure: momentary blocks over the signal, short-term blocks over the signal
// followed by the silence the loudness range is padded with.
struct BlockScans {
    LoudnessBlockScan momentary;
    LoudnessBlockScan short_term;
};

// Room for twice the longest stretch the waiting blocks can span (a group of short-term blocks
// and the next one) and a chunk, so that the window seldom has to move its contents down.
std::size_t window_capacity(double sample_rate) {
    const SampleRange first = loudness_block_span(0, sample_rate, kShortTerm);
    const SampleRange after_group = loudness_block_span(kSquareSumLanes, sample_rate, kShortTerm);
    return 2 * (after_group.end - first.start) + kChunkFrames;
}

// Drops the frames before the first one a scan still reads when the next chunk would not fit.
void make_room(SquaresWindow& w, const BlockScans& scans) {
    if (w.held + kChunkFrames <= w.capacity) return;
    const std::size_t needed = std::min(loudness_block_scan_needs(scans.momentary),
                                        loudness_block_scan_needs(scans.short_term));
    const std::size_t dropped = std::min(needed, w.base + w.held) - w.base;
    double* data = w.data.get();
    std::copy(data + dropped * w.channels, data + w.held * w.channels, data);
    w.base += dropped;
    w.held -= dropped;
}

// Appends the squares of frames done .. done + count - 1: K-weighted samples up to the signal's
// end, silence after it.
void append_squares(const MeasuredFrames& f, const KWeighting& k, KWeightingState& state,
                    std::size_t done, std::size_t count, SquaresWindow& w) {
    double* out = w.data.get() + w.held * w.channels;
    const std::size_t weighted = done < f.length ? std::min(count, f.length - done) : 0;
    if (weighted > 0) {
        const WavFile& file = *f.file;
        const InterleavedFrames in{file.samples.data() + (f.start_frame + done) * file.channels,
                                   weighted, file.channels, f.channels};
        k_weighting_squares(k, in, state, out);
    }
    std::fill(out + weighted * w.channels, out + count * w.channels, 0.0);
    w.held += count;
}

// Feeds every frame to both scans; false when a list or the window cannot be allocated (then no
// sample is read).
bool scan_squares(const MeasuredFrames& f, double sample_rate, std::size_t total,
                  BlockScans& scans) {
    if (!scans.momentary.allocated || !scans.short_term.allocated) return false;
    SquaresWindow w;
    w.channels = f.channels;
    w.capacity = window_capacity(sample_rate);
    w.data = try_allocate_doubles(w.capacity * w.channels);
    if (!w.data) return false;
    const KWeighting k = k_weighting_design(sample_rate);
    KWeightingState state;
    for (std::size_t done = 0; done < total;) {
        make_room(w, scans);
        // The capacity leaves room for a chunk whatever the scans still need; this only guards it.
        const std::size_t count = std::min({kChunkFrames, total - done, w.capacity - w.held});
        if (count == 0) return false;
        report_progress(static_cast<double>(done) / static_cast<double>(total));
        append_squares(f, k, state, done, count, w);
        done += count;
        const FrameSquares held{w.data.get(), w.channels, w.held};
        loudness_block_scan_feed(scans.momentary, held, w.base, done == total);
        loudness_block_scan_feed(scans.short_term, held, w.base, done == total);
    }
    return true;
}

// Integrated loudness and the largest momentary loudness over the signal; the largest short-term
// loudness over the signal and the loudness range over the padded signal. The short-term blocks of
// the signal are the first blocks of the padded scan, so one scan serves both. False when a
// buffer cannot be had.
bool measure_loudness(const MeasuredFrames& f, double sample_rate, LoudnessMeasure& m) {
    const auto padding =
        static_cast<std::size_t>(round_half_away_from_zero(kRangePaddingSeconds * sample_rate));
    BlockScans scans;
    scans.momentary = loudness_block_scan(f.channels, f.length, sample_rate, kMomentary,
                                          /*keep_mean_squares=*/true);
    scans.short_term = loudness_block_scan(f.channels, f.length + padding, sample_rate, kShortTerm,
                                           /*keep_mean_squares=*/false);
    if (!scan_squares(f, sample_rate, f.length + padding, scans)) return false;
    const LoudnessBlockList& momentary = scans.momentary.list;
    m.integrated_lufs = integrated_loudness(momentary);
    m.max_momentary_lufs = max_block_loudness(momentary, momentary.count);
    const LoudnessBlockList& short_term = scans.short_term.list;
    // Without the list (it could not be allocated) there are no blocks to take the maximum of.
    const std::size_t signal_blocks =
        std::min(short_term.count, loudness_kept_blocks(f.length, sample_rate, kShortTerm));
    m.max_short_term_lufs = max_block_loudness(short_term, signal_blocks);
    m.range_lu = loudness_range({short_term.loudness.get(), short_term.count});
    return true;
}

// Peaks of several channels combine as the largest of the per-channel dB values.
void measure_peaks(const MeasuredFrames& f, LoudnessMeasure& m) {
    const TruePeakFilter filter = true_peak_filter();
    const WavFile& file = *f.file;
    for (unsigned k = 0; k < f.channels; ++k) {
        const double* first = file.samples.data() + f.start_frame * file.channels + k;
        const double sample_peak = channel_sample_peak(first, f.length, file.channels);
        const double true_peak = channel_true_peak(first, f.length, file.channels, filter);
        m.sample_peak_dbfs = std::max(m.sample_peak_dbfs, magnitude_db(sample_peak));
        m.true_peak_dbtp = std::max(m.true_peak_dbtp, magnitude_db(true_peak));
    }
}

} // namespace

LoudnessMeasure loudness_measure(const WavFile& file, unsigned channels, std::size_t start_frame,
                                 std::size_t length, double sample_rate) {
    LoudnessMeasure m;
    MeasuredFrames f;
    f.file = &file;
    f.start_frame = start_frame;
    // Never more channels or frames than the file holds, so no sample outside it is read.
    f.channels = std::min({channels, file.channels, kMaxChannels});
    f.length = std::min(length, file.frames - std::min(start_frame, file.frames));
    if (f.length == 0 || f.channels == 0) return m;
    if (!measure_loudness(f, sample_rate, m)) return LoudnessMeasure{};
    measure_peaks(f, m);
    return m;
}
