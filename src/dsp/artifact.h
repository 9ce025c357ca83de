// Artifact detection: short, local defects in the DUT (clicks, glitches, dropouts, clipping) that
// the spectral and loudness checks average away. Per channel, the sample-by-sample difference
// DUT - reference is compared with its own neighbourhood: a sample whose difference departs from
// the neighbourhood median by more than k robust standard deviations (the median absolute
// deviation scaled by 1.4826), or that shows a dropout or a clip the reference does not have, is
// flagged. Runs of flagged samples become events; an event counts against the verdict when it is
// severe enough, locally or measured against the whole file, or holds a long enough
// silence/clip run. A channel passes when no event counts.
#pragma once

#include "audio/audio.h"

#include <array>
#include <cstddef>
#include <cstdint>

struct ArtifactChannelResult {
    bool passed = false;                       // no event counted
    std::uint64_t samples_checked = 0;         // the overlap length
    std::uint64_t samples_excluded = 0;        // both files below the noise floor
    std::uint64_t samples_flagged = 0;         // samples inside kept events
    std::uint64_t event_count = 0;             // runs of at least min_run flagged samples
    std::uint64_t counted_event_count = 0;     // events that fail the channel
    std::uint64_t minor_event_count = 0;       // the other events
    std::uint64_t first_event_start_frame = 0; // reference frame of the first event
    std::uint64_t first_event_length = 0;
    std::uint64_t worst_event_start_frame = 0; // the worst counted event, else the worst minor one
    std::uint64_t worst_event_length = 0;
    bool worst_event_counted = false;         // some event was counted
    double worst_event_global_severity = 0.0; // its whole-file peak / k (0 when k <= 0)
    double worst_event_severity = 0.0;        // its local peak / k (0 when k <= 0)
    double worst_event_deviation_ratio = 0.0; // its local peak in robust standard deviations
};

struct ArtifactResult {
    std::array<ArtifactChannelResult, 2> channel{};
    std::uint32_t channels = 0; // the reference's channel count
    bool passed = false;        // every examined channel passed
};

// Examines the first min(reference channels, 2) channels over the pair's overlap. Samples where
// both files lie below 10^(noise_floor_db / 20) are excluded. The neighbourhood of a sample reaches
// window_samples / 2 samples to either side (cut short at the ends of the overlap) without the
// sample itself. Runs shorter than min_run are dropped; an event counts when its local peak exceeds
// min_severity * k, its whole-file peak exceeds min_global_severity * k, or its longest
// silence/clip stretch is non-empty and at least min_silence_clip_run long. A channel with no
// overlap, or whose working arrays cannot be allocated, fails with every figure 0. A reference with
// no channels gives a passing result.
ArtifactResult artifact_check(const AlignedPair& pair, double k, double noise_floor_db,
                              std::size_t window_samples, std::size_t min_run, double min_severity,
                              double min_global_severity, std::size_t min_silence_clip_run);
