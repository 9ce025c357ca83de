#include "dsp/spectral_snapshots.h"

#include "audio/audio.h"
#include "dsp/spectral_channel.h"

#include <algorithm>
#include <optional>

namespace {

// Frame positions are held within +-2^62 so that sums of them cannot overflow.
constexpr double kFrameLimit = 4611686018427387904.0;

// round(x) as a signed frame index, held within the limit; NaN counts as far before the start.
std::int64_t saturated_round(double x) {
    if (!(x > -kFrameLimit)) return -static_cast<std::int64_t>(kFrameLimit);
    if (x > kFrameLimit) return static_cast<std::int64_t>(kFrameLimit);
    return static_cast<std::int64_t>(round_half_away_from_zero(x));
}

// The snapshot whose frame centre is `centre`: start = centre - n/2, raised to the reference
// start, then set to end - n when the frame would run past the usable end.
SpectralSnapshot snapshot_at(std::int64_t centre, const Overlap& overlap, std::size_t n,
                             double sample_rate) {
    const auto ref_start = static_cast<std::int64_t>(overlap.ref_start);
    const auto last_start = static_cast<std::int64_t>(overlap.ref_start + overlap.length - n);
    const std::int64_t start =
        std::min(std::max(centre - static_cast<std::int64_t>(n / 2), ref_start), last_start);
    SpectralSnapshot snapshot;
    snapshot.start_frame = static_cast<std::uint64_t>(start);
    snapshot.time_sec = static_cast<double>(snapshot.start_frame + n / 2) / sample_rate;
    return snapshot;
}

// One snapshot per listed time t, centred on round(t * rate).
std::vector<SpectralSnapshot> snapshots_at_times(std::span<const double> times_sec,
                                                 const Overlap& overlap, std::size_t n,
                                                 double sample_rate) {
    std::vector<SpectralSnapshot> snapshots;
    snapshots.reserve(times_sec.size());
    for (const double t : times_sec) {
        snapshots.push_back(snapshot_at(saturated_round(t * sample_rate), overlap, n, sample_rate));
    }
    return snapshots;
}

// `count` snapshots: one centred in the overlap, or spread from ref_start + m to end - m with a
// margin m = round(0.05 L).
std::vector<SpectralSnapshot> snapshots_spread(std::size_t count, const Overlap& overlap,
                                               std::size_t n, double sample_rate) {
    const auto ref_start = static_cast<std::int64_t>(overlap.ref_start);
    const auto length = static_cast<std::int64_t>(overlap.length);
    const std::int64_t end = ref_start + length;
    const std::int64_t margin = saturated_round(0.05 * static_cast<double>(length));
    const std::int64_t span = end - (ref_start + 2 * margin);
    std::vector<SpectralSnapshot> snapshots;
    snapshots.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::int64_t centre =
            count == 1 ? (end + ref_start) / 2
                       : saturated_round(static_cast<double>(i) * static_cast<double>(span) /
                                         static_cast<double>(count - 1)) +
                             ref_start + margin;
        snapshots.push_back(snapshot_at(centre, overlap, n, sample_rate));
    }
    return snapshots;
}

// Compares every snapshot's frame of one channel, each as a record of its own. When the working
// arrays cannot be allocated the channel's records stay empty and passing.
void measure_channel(const AlignedPair& pair, unsigned channel, const SpectralSettings& settings,
                     std::vector<SpectralSnapshot>& snapshots) {
    SpectralChannelWork work;
    if (!spectral_channel_prepare(pair, channel, settings, 1, work)) return;
    for (SpectralSnapshot& snapshot : snapshots) {
        SpectralChannelResult& out = snapshot.channel[channel];
        SpectralRecordFold fold = spectral_record_begin(work);
        spectral_record_frame(work, snapshot.start_frame, fold, out);
        spectral_record_finish(work, fold, out);
    }
}

} // namespace

SpectralSnapshotsResult spectral_snapshots(const AlignedPair& pair,
                                           const SpectralSettings& settings,
                                           std::span<const double> times_sec, std::size_t count) {
    SpectralSnapshotsResult result;
    result.channels = pair.ref->channels;
    const unsigned examined = std::min(result.channels, 2u);
    if (examined == 0) return result;
    const std::optional<Overlap> overlap = spectral_usable_overlap(pair, settings.n, examined);
    if (!overlap) {
        result.insufficient_samples = true;
        return result;
    }
    const auto rate = static_cast<double>(pair.ref->sample_rate);
    result.snapshots = times_sec.empty()
                           ? snapshots_spread(count, *overlap, settings.n, rate)
                           : snapshots_at_times(times_sec, *overlap, settings.n, rate);
    for (unsigned channel = 0; channel < examined; ++channel) {
        measure_channel(pair, channel, settings, result.snapshots);
    }
    for (const SpectralSnapshot& snapshot : result.snapshots) {
        for (unsigned channel = 0; channel < examined; ++channel) {
            result.passed = result.passed && snapshot.channel[channel].passed;
        }
    }
    return result;
}
