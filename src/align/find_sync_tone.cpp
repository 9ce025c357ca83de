#include "align/find_sync_tone.h"

#include "align/matched_filter.h"
#include "dsp/dsp.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>

namespace {

using Buffer = std::unique_ptr<double[]>;

// Channel k of the frames first ... first + out.size() - 1.
void copy_frames(const WavFile& wav, std::size_t k, std::size_t first, std::span<double> out) {
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] = wav.samples[(first + i) * wav.channels + k];
    }
}

double energy(std::span<const double> x) {
    double sum = 0.0;
    for (double v : x) {
        sum += v * v;
    }
    return sum;
}

// peak / sqrt(E_t * E_s); 0 when either energy is 0, and never below 0 (an inverted match).
double similarity(double peak, double template_energy, double region_energy) {
    if (template_energy == 0.0 || region_energy == 0.0) return 0.0;
    return std::max(peak / std::sqrt(template_energy * region_energy), 0.0);
}

struct BestMatch {
    std::int32_t channel = -1;
    MatchedFilterResult filter{0, -1.0, 0.0};
    double similarity = 0.0;
};

// Runs the filter on every channel's region in turn (reusing `region`); a channel replaces the
// best so far only with a strictly greater PSR, so ties keep the lower channel.
BestMatch best_channel(const WavFile& wav, std::size_t start, std::span<double> region,
                       std::span<const double> tmpl, double template_energy) {
    BestMatch best;
    for (std::uint32_t k = 0; k < wav.channels; ++k) {
        copy_frames(wav, k, start, region);
        const MatchedFilterResult result = matched_filter(region, tmpl);
        if (result.psr > best.filter.psr) {
            const double region_energy = energy(region.subspan(result.index, tmpl.size()));
            best = {static_cast<std::int32_t>(k), result,
                    similarity(result.peak, template_energy, region_energy)};
        }
    }
    return best;
}

// PSR of chirp r searched around its expected start on the detected channel; 0 when the window
// is shorter than the chirp or cannot be allocated.
double chirp_psr(const WavFile& wav, const SyncDetection& hit, int r, std::span<const double> chirp,
                 SyncToneLayout layout) {
    const std::size_t length = layout.chirp;
    const std::size_t expected = hit.position + r * (length + layout.gap);
    const std::size_t lo = expected > length / 2 ? expected - length / 2 : 0;
    const std::size_t hi = std::min(expected + length / 2 + length, wav.frames);
    if (hi < lo || hi - lo < length) return 0.0;
    const Buffer window = try_allocate_doubles(hi - lo);
    if (!window) return 0.0;
    const std::span<double> view(window.get(), hi - lo);
    copy_frames(wav, static_cast<std::size_t>(hit.channel), lo, view);
    return matched_filter(view, chirp).psr;
}

// Fills rep_count and rep_psr of a found tone.
void check_chirps(const WavFile& wav, SyncDetection& hit) {
    hit.rep_count = kSyncChirpCount;
    const SyncToneLayout layout = sync_tone_layout(wav.sample_rate);
    const Buffer chirp = try_allocate_doubles(layout.chirp);
    if (!chirp) return; // every chirp skipped: rep_psr stays 0
    const std::span<double> view(chirp.get(), layout.chirp);
    for (int r = 0; r < kSyncChirpCount; ++r) {
        sync_chirp_generate(view, r, wav.sample_rate);
        hit.rep_psr[r] = chirp_psr(wav, hit, r, view, layout);
    }
}

} // namespace

SyncDetection find_sync_tone(const WavFile& wav, std::size_t start, std::size_t length,
                             double psr_threshold, double similarity_threshold) {
    SyncDetection out;
    const std::size_t m = sync_template_length(wav.sample_rate);
    const Buffer tmpl_buffer = try_allocate_doubles(m);
    if (!tmpl_buffer) return out; // the zeroed record
    const std::span<double> tmpl(tmpl_buffer.get(), m);
    sync_template_generate(tmpl, wav.sample_rate);
    const double template_energy = energy(tmpl);

    out.channel = -1;
    out.psr = -1.0;
    if (start >= wav.frames) return out;
    const std::size_t n = std::min(length, wav.frames - start);
    if (n < m) return out;
    const Buffer region = try_allocate_doubles(n);
    if (!region) return out; // no channel could be searched
    const BestMatch best =
        best_channel(wav, start, std::span<double>(region.get(), n), tmpl, template_energy);
    if (best.channel < 0) return out;

    out.channel = best.channel;
    out.position = start + best.filter.index;
    out.psr = best.filter.psr;
    out.similarity = best.similarity;
    out.found = out.psr >= psr_threshold && out.similarity >= similarity_threshold;
    if (out.found) check_chirps(wav, out);
    return out;
}
