#include "report/charts/overview_markers.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

namespace {

using Location = std::optional<std::uint64_t>;

// The worst point of the first examined channel (at most two) that `locate` finds.
template <typename Channels, typename Locate>
Location first_located(const Channels& channels, std::uint64_t count, Locate locate) {
    const std::uint64_t examined = std::min<std::uint64_t>(count, channels.size());
    for (std::uint64_t c = 0; c < examined; ++c) {
        const Location where = locate(channels[c]);
        if (where) return where;
    }
    return std::nullopt;
}

Location bit_compare_worst(const CheckBlock<BitCompareResult>& block) {
    const BitCompareResult& r = block.result;
    if (!block.ran || r.passed || r.samples_differing == 0) return std::nullopt;
    return r.worst_diff_frame;
}

Location time_domain_worst(const CheckBlock<TimeDomainResult>& block) {
    if (!block.ran || block.result.passed) return std::nullopt;
    return first_located(block.result.channel, block.result.channels,
                         [](const TimeDomainChannel& ch) -> Location {
                             if (!ch.has_failures) return std::nullopt;
                             return ch.worst_sample;
                         });
}

Location impulse_worst(const CheckBlock<ImpulseTemplateResult>& block) {
    if (!block.ran || block.result.passed) return std::nullopt;
    return first_located(block.result.channel, block.result.channels,
                         [](const ImpulseTemplateChannel& ch) -> Location {
                             if (!ch.has_failures) return std::nullopt;
                             return ch.worst_sample;
                         });
}

Location level_worst(const CheckBlock<LevelFidelityResult>& block) {
    if (!block.ran || block.result.passed) return std::nullopt;
    return first_located(block.result.channel, block.result.channels,
                         [](const LevelFidelityChannel& ch) -> Location {
                             if (ch.passed || !ch.has_data) return std::nullopt;
                             return ch.worst_sample;
                         });
}

Location artifact_worst(const CheckBlock<ArtifactResult>& block) {
    if (!block.ran || block.result.passed) return std::nullopt;
    return first_located(block.result.channel, block.result.channels,
                         [](const ArtifactChannelResult& ch) -> Location {
                             if (ch.passed || ch.event_count == 0) return std::nullopt;
                             return ch.worst_event_start_frame;
                         });
}

// The frame holding a failing record's worst bin.
Location spectral_record_worst(const SpectralChannelResult& record) {
    if (record.passed || record.bins_compared == 0) return std::nullopt;
    return record.worst_frame_start;
}

// Snapshot mode: the worst bin of the first failing snapshot.
Location spectral_worst(const CheckBlock<SpectralOutcome>& block) {
    const SpectralOutcome& outcome = block.result;
    if (!block.ran || spectral_passed(outcome)) return std::nullopt;
    if (!outcome.snapshot_mode) {
        return first_located(outcome.scan.channel, outcome.scan.channels, spectral_record_worst);
    }
    for (const SpectralSnapshot& snapshot : outcome.snapshots.snapshots) {
        const Location where =
            first_located(snapshot.channel, outcome.snapshots.channels, spectral_record_worst);
        if (where) return where;
    }
    return std::nullopt;
}

Location distortion_worst(const CheckBlock<DistortionResult>& block) {
    if (!block.ran || block.result.passed) return std::nullopt;
    return first_located(block.result.channel, block.result.channels,
                         [](const DistortionChannelResult& ch) -> Location {
                             if (ch.passed || ch.frames_scanned == ch.frames_gated) {
                                 return std::nullopt;
                             }
                             return ch.worst_frame_start;
                         });
}

} // namespace

std::vector<ChartMarker> overview_failure_markers(const RunResults& results,
                                                  std::size_t ref_frames) {
    const std::pair<const char*, Location> located[] = {
        {"Bit-Exact", bit_compare_worst(results.bit_exact)},
        {"Bit Accuracy", bit_compare_worst(results.bit_accuracy)},
        {"Time Domain", time_domain_worst(results.time_domain)},
        {"Impulse", impulse_worst(results.impulse_template)},
        {"Level Fidelity", level_worst(results.level_fidelity)},
        {"Artifact", artifact_worst(results.artifact)},
        {"Spectral", spectral_worst(results.spectral)},
        {"Distortion", distortion_worst(results.distortion)},
    };
    std::vector<ChartMarker> markers;
    for (const auto& [label, where] : located) {
        if (!where) continue;
        const double frac =
            ref_frames == 0 ? 0.0 : static_cast<double>(*where) / static_cast<double>(ref_frames);
        markers.push_back({label, frac});
    }
    return markers;
}
