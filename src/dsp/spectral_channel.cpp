#include "dsp/spectral_channel.h"

#include "dsp/statistics.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <span>

namespace {

// A non-throwing array allocation; null on failure.
template <typename T> std::unique_ptr<T[]> try_allocate(std::size_t count) {
    return std::unique_ptr<T[]>(new (std::nothrow) T[count]);
}

// Index into `kept` of the entry to give up first: the lowest reference level, and among equal
// levels the highest bin, so that earlier bins keep their place.
std::size_t weakest_kept(std::span<const std::size_t> kept, const double* ref_db) {
    std::size_t weakest = 0;
    for (std::size_t i = 1; i < kept.size(); ++i) {
        const double level = ref_db[kept[i]];
        const double low = ref_db[kept[weakest]];
        if (level < low || (level == low && kept[i] > kept[weakest])) weakest = i;
    }
    return weakest;
}

// The flagged peaks of the frame just compared: at most kMaxChartPeaks with the highest reference
// levels (a later bin replaces a kept one only when strictly louder), listed in bin order.
void collect_chart_peaks(const SpectralChannelWork& work, std::vector<std::size_t>& out) {
    std::array<std::size_t, kMaxChartPeaks> kept{};
    std::size_t count = 0;
    const double* ref_db = work.buffers.ref_db;
    for (std::size_t k = 0; k < work.setup.bin_count; ++k) {
        if (work.buffers.peak[k] == 0) continue;
        if (count < kept.size()) {
            kept[count++] = k;
            continue;
        }
        const std::size_t weakest = weakest_kept(kept, ref_db);
        if (ref_db[k] > ref_db[kept[weakest]]) kept[weakest] = k;
    }
    std::sort(kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(count));
    out.assign(kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(count));
}

// Makes the frame just compared the record's chart frame.
void take_chart(const SpectralChannelWork& work, const SpectralFrameResult& frame,
                std::size_t start, SpectralChannelResult& out) {
    out.chart_frame_start = start;
    out.worst_tolerance_db = frame.worst_tolerance_db;
    out.chart_tiers.noise_floor_db = frame.peak_band_floor_db;
    if (frame.peak_band < work.bands.size()) {
        const SpectralBand& band = work.bands[frame.peak_band];
        out.chart_tiers.low_level_threshold_db = band.low_level_threshold_db;
        out.chart_tiers.peak_threshold_db = band.peak_threshold_db;
    }
    collect_chart_peaks(work, out.chart_peak_bins);
}

// Adds an ungated frame's counts; true when it holds a new worst bin.
bool fold_compared(const SpectralFrameResult& frame, std::size_t start, SpectralRecordFold& fold,
                   SpectralChannelResult& out) {
    out.bins_compared += frame.bins_compared;
    out.bins_excluded += frame.bins_excluded;
    out.bins_failed += frame.bins_failed;
    fold.failing_peak = fold.failing_peak || frame.failing_peak;
    if (frame.worst_bin < 0 || !(frame.worst_ratio > fold.worst_ratio)) return false;
    fold.worst_ratio = frame.worst_ratio;
    fold.worst_bin = frame.worst_bin;
    out.worst_ratio = frame.worst_ratio;
    out.worst_diff_db = frame.worst_diff_db;
    out.worst_is_peak = frame.worst_is_peak;
    out.worst_frame_start = start;
    return true;
}

} // namespace

std::optional<Overlap> spectral_usable_overlap(const AlignedPair& pair, std::size_t n,
                                               unsigned channels) {
    // A channel the DUT lacks has nothing to line up with, like an empty overlap.
    if (n < 2 || pair.dut->channels < channels) return std::nullopt;
    if (pair.overlap.length < n) return std::nullopt;
    return pair.overlap;
}

bool spectral_channel_prepare(const AlignedPair& pair, unsigned channel,
                              const SpectralSettings& settings, std::size_t pool_frames,
                              SpectralChannelWork& work) {
    const std::size_t bins = settings.n / 2;
    if (bins == 0 ||
        pool_frames > std::numeric_limits<std::size_t>::max() / sizeof(double) / bins) {
        return false;
    }
    work.pair = &pair;
    work.channel = channel;
    work.ref_db = try_allocate<double>(bins);
    work.dut_db = try_allocate<double>(bins);
    work.peak = try_allocate<std::uint8_t>(bins);
    work.ratios = try_allocate<double>(pool_frames * bins);
    if (!work.ref_db || !work.dut_db || !work.peak || !work.ratios) return false;
    work.bands = spectral_band_table(settings.bands, settings.defaults);
    spectral_band_map(work.bands, bins, static_cast<double>(pair.ref->sample_rate), settings.n,
                      work.band_of_bin);
    work.setup = {.n = settings.n,
                  .bin_count = bins,
                  .mode = settings.mode,
                  .relative_floor_db = settings.relative_floor_db,
                  .bands = work.bands,
                  .band_of_bin = work.band_of_bin,
                  .sweep = settings.sweep};
    work.buffers = {.ref_db = work.ref_db.get(),
                    .dut_db = work.dut_db.get(),
                    .peak = work.peak.get(),
                    .ratios = work.ratios.get(),
                    .ratio_count = 0};
    return true;
}

SpectralRecordFold spectral_record_begin(SpectralChannelWork& work) {
    work.buffers.ratio_count = 0;
    return {};
}

void spectral_record_frame(SpectralChannelWork& work, std::size_t start, SpectralRecordFold& fold,
                           SpectralChannelResult& out) {
    const SpectralFrameResult frame =
        spectral_compare_frame(*work.pair, work.channel, start, work.setup, work.buffers);
    const bool first = out.frames_scanned == 0;
    ++out.frames_scanned;
    bool new_worst = false;
    if (frame.gated) {
        ++out.frames_gated;
    } else {
        new_worst = fold_compared(frame, start, fold, out);
    }
    // The first frame is the chart frame, gated or not, until some frame holds a worst bin.
    if (first || new_worst) take_chart(work, frame, start, out);
}

void spectral_record_finish(SpectralChannelWork& work, const SpectralRecordFold& fold,
                            SpectralChannelResult& out) {
    out.frame_gated = out.frames_scanned > 0 && out.frames_gated == out.frames_scanned;
    if (fold.worst_bin >= 0) {
        out.worst_freq_hz = static_cast<double>(fold.worst_bin) *
                            static_cast<double>(work.pair->ref->sample_rate) /
                            static_cast<double>(work.setup.n);
    }
    const std::span<double> pool(work.ratios.get(), work.buffers.ratio_count);
    if (pool.empty()) return; // nothing compared: the pass flag stays set
    out.p50_ratio = nearest_rank_percentile(pool, 0.5);
    out.p95_ratio = nearest_rank_percentile(pool, 0.95);
    out.p99_ratio = nearest_rank_percentile(pool, 0.99);
    out.passed = out.p99_ratio <= kSpectralFailRatio && !fold.failing_peak;
}
