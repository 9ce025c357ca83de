#include "dsp/artifact_events.h"

#include <algorithm>

namespace {

bool event_counts(const ArtifactRun& run, const ArtifactEventRules& rules) {
    return run.local_peak > rules.min_severity * rules.k ||
           run.global_peak > rules.min_global_severity * rules.k ||
           (run.silence_clip_longest > 0 && run.silence_clip_longest >= rules.min_silence_clip_run);
}

// An event takes the slot when the slot is empty or its local peak is strictly larger, so the
// earliest of equal events stays.
void offer_to_slot(ArtifactRun& slot, const ArtifactRun& event) {
    if (slot.length == 0 || event.local_peak > slot.local_peak) slot = event;
}

void close_run(ArtifactEventWalk& walk) {
    const ArtifactRun run = walk.run;
    walk.run = ArtifactRun{};
    if (run.length == 0 || run.length < walk.rules.min_run) return;
    if (walk.events == 0) walk.first = run;
    ++walk.events;
    // Only kept events add to the flagged count; the samples of dropped runs are not counted.
    walk.flagged += run.length;
    if (event_counts(run, walk.rules)) {
        ++walk.counted;
        offer_to_slot(walk.worst_counted, run);
    } else {
        offer_to_slot(walk.worst_minor, run);
    }
}

} // namespace

void artifact_walk_flagged(ArtifactEventWalk& walk, const FlaggedSample& sample) {
    ArtifactRun& run = walk.run;
    // Any sample not handed over, excluded ones included, breaks the run.
    if (run.length > 0 && sample.frame != run.start + run.length) close_run(walk);
    if (run.length == 0) run.start = sample.frame;
    ++run.length;
    // The local peak takes every sample of the run, also those flagged only as silence or clip.
    run.local_peak = std::max(run.local_peak, sample.z_local);
    if (sample.z_local > walk.rules.k) run.global_peak = std::max(run.global_peak, sample.z_global);
    run.silence_clip_stretch = sample.silence_clip ? run.silence_clip_stretch + 1 : 0;
    run.silence_clip_longest = std::max(run.silence_clip_longest, run.silence_clip_stretch);
}

void artifact_walk_finish(ArtifactEventWalk& walk, ArtifactChannelResult& out) {
    close_run(walk);
    out.samples_flagged = walk.flagged;
    out.event_count = walk.events;
    out.counted_event_count = walk.counted;
    out.minor_event_count = walk.events - walk.counted;
    out.first_event_start_frame = walk.first.start;
    out.first_event_length = walk.first.length;
    out.worst_event_counted = walk.counted > 0;
    const ArtifactRun& worst = out.worst_event_counted ? walk.worst_counted : walk.worst_minor;
    out.worst_event_start_frame = worst.start;
    out.worst_event_length = worst.length;
    out.worst_event_deviation_ratio = worst.local_peak;
    const double k = walk.rules.k;
    out.worst_event_severity = k > 0.0 ? worst.local_peak / k : 0.0;
    out.worst_event_global_severity = k > 0.0 ? worst.global_peak / k : 0.0;
    out.passed = walk.counted == 0;
}
