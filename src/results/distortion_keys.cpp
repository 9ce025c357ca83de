#include "results/distortion_keys.h"

#include "results/prefixed_entries.h"
#include "results/results_blocks.h"
#include "results/run_results.h"

#include <cstddef>
#include <string>

namespace {

bool write_channel(FlatJson& json, std::size_t channel, const DistortionChannelResult& c) {
    const std::string p = channel_key("distortion", channel, "");
    return json_prefixed_flag(json, p, "frame_gated", c.frame_gated) &&
           json_prefixed_flag(json, p, "insufficient_samples", c.insufficient_samples) &&
           json_prefixed_count(json, p, "frames_scanned", c.frames_scanned) &&
           json_prefixed_count(json, p, "frames_gated", c.frames_gated) &&
           json_prefixed_real(json, p, "fundamental_freq_hz", c.fundamental_freq_hz) &&
           json_prefixed_real(json, p, "thdn_ratio", c.thdn_ratio) &&
           json_prefixed_real(json, p, "thdn_db", c.thdn_db) &&
           json_prefixed_count(json, p, "worst_frame_start", c.worst_frame_start) &&
           json_prefixed_real(json, p, "p50_thdn_ratio", c.p50_thdn_ratio) &&
           json_prefixed_real(json, p, "p95_thdn_ratio", c.p95_thdn_ratio);
}

} // namespace

bool write_distortion_keys(FlatJson& json, const DistortionResult& r) {
    if (!json_text(json, "distortion_verdict", verdict_text(r.passed))) return false;
    // Channel 1 keys only for a stereo reference, as for every other per-channel block.
    const std::size_t channels = r.channels >= 2 ? 2 : 1;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (!write_channel(json, channel, r.channel[channel])) return false;
    }
    return true;
}
