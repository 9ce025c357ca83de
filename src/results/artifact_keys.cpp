#include "results/artifact_keys.h"

#include "results/prefixed_entries.h"
#include "results/results_blocks.h"
#include "results/run_results.h"

#include <cstddef>
#include <string>

namespace {

bool write_channel(FlatJson& json, std::size_t channel, const ArtifactChannelResult& c) {
    const std::string p = channel_key("artifact", channel, "");
    return json_prefixed_count(json, p, "samples_checked", c.samples_checked) &&
           json_prefixed_count(json, p, "samples_excluded", c.samples_excluded) &&
           json_prefixed_count(json, p, "samples_flagged", c.samples_flagged) &&
           json_prefixed_count(json, p, "event_count", c.event_count) &&
           json_prefixed_count(json, p, "counted_event_count", c.counted_event_count) &&
           json_prefixed_count(json, p, "minor_event_count", c.minor_event_count) &&
           json_prefixed_count(json, p, "worst_event_start_frame", c.worst_event_start_frame) &&
           json_prefixed_count(json, p, "worst_event_length", c.worst_event_length) &&
           json_prefixed_real(json, p, "worst_event_deviation_ratio",
                              c.worst_event_deviation_ratio) &&
           json_prefixed_real(json, p, "worst_event_severity", c.worst_event_severity) &&
           json_prefixed_real(json, p, "worst_event_global_severity",
                              c.worst_event_global_severity) &&
           json_prefixed_flag(json, p, "worst_event_counted", c.worst_event_counted);
}

} // namespace

bool write_artifact_keys(FlatJson& json, const ArtifactResult& r, long window_samples,
                         double min_severity, long min_silence_clip_run,
                         double min_global_severity) {
    if (!json_text(json, "artifact_verdict", verdict_text(r.passed)) ||
        !json_long(json, "artifact_window_samples", window_samples) ||
        !json_real(json, "artifact_min_severity", min_severity) ||
        !json_long(json, "artifact_min_silence_clip_run", min_silence_clip_run) ||
        !json_real(json, "artifact_min_global_severity", min_global_severity)) {
        return false;
    }
    // Channel 1 keys only for a stereo reference, as for every other per-channel block.
    const std::size_t channels = r.channels >= 2 ? 2 : 1;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (!write_channel(json, channel, r.channel[channel])) return false;
    }
    return true;
}
