// The event walk of artifact detection: flagged samples, handed over in frame order, are grouped
// into maximal runs of consecutive frames; runs shorter than the minimum are dropped and every
// kept run becomes an event that is either counted (it fails the channel) or minor. The walk keeps
// the totals, the first event and the worst event of each kind.
#pragma once

#include "dsp/artifact.h"

#include <cstddef>
#include <cstdint>

struct ArtifactEventRules {
    double k = 0.0;                       // deviation threshold in robust standard deviations
    std::size_t min_run = 1;              // shortest run that makes an event
    double min_severity = 0.0;            // an event counts when its local peak > this * k,
    double min_global_severity = 0.0;     // or its whole-file peak > this * k,
    std::size_t min_silence_clip_run = 0; // or its longest silence/clip stretch reaches this
};

// One flagged sample: its reference frame, its local and whole-file deviations (both measured
// from the local median) and whether it passed the silence/clip test.
struct FlaggedSample {
    std::uint64_t frame = 0;
    double z_local = 0.0;
    double z_global = 0.0;
    bool silence_clip = false;
};

// A run of flagged samples, or an event in one of the worst slots.
struct ArtifactRun {
    std::uint64_t start = 0;
    std::uint64_t length = 0;
    double local_peak = 0.0;  // largest z_local
    double global_peak = 0.0; // largest z_global among samples with z_local > k (0 when none)
    std::uint64_t silence_clip_stretch = 0; // current stretch of silence/clip samples
    std::uint64_t silence_clip_longest = 0;
};

struct ArtifactEventWalk {
    ArtifactEventRules rules;
    ArtifactRun run; // the run being extended (length 0 when none)
    std::uint64_t events = 0;
    std::uint64_t counted = 0;
    std::uint64_t flagged = 0; // samples inside kept events
    ArtifactRun first;
    // Slots for the worst counted and the worst minor event (length 0 while empty).
    ArtifactRun worst_counted;
    ArtifactRun worst_minor;
};

// Adds a flagged sample; a frame that does not follow the current run ends that run first.
void artifact_walk_flagged(ArtifactEventWalk& walk, const FlaggedSample& sample);

// Ends the current run and fills the event figures and the verdict of `out`.
void artifact_walk_finish(ArtifactEventWalk& walk, ArtifactChannelResult& out);
