#include "results/distortion_keys.h"

#include "results/results_blocks.h"
#include "results/run_results.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

std::string distortion_key(std::size_t channel, const char* suffix) {
    return channel_key("distortion", channel, suffix);
}

bool write_flag(FlatJson& json, std::size_t channel, const char* suffix, bool flag) {
    return json_int(json, distortion_key(channel, suffix).c_str(), flag ? 1 : 0);
}

bool write_count(FlatJson& json, std::size_t channel, const char* suffix, std::uint64_t count) {
    return json_long(json, distortion_key(channel, suffix).c_str(), static_cast<long>(count));
}

bool write_real(FlatJson& json, std::size_t channel, const char* suffix, double value) {
    return json_real(json, distortion_key(channel, suffix).c_str(), value);
}

bool write_channel(FlatJson& json, std::size_t channel, const DistortionChannelResult& c) {
    return write_flag(json, channel, "frame_gated", c.frame_gated) &&
           write_flag(json, channel, "insufficient_samples", c.insufficient_samples) &&
           write_count(json, channel, "frames_scanned", c.frames_scanned) &&
           write_count(json, channel, "frames_gated", c.frames_gated) &&
           write_real(json, channel, "fundamental_freq_hz", c.fundamental_freq_hz) &&
           write_real(json, channel, "thdn_ratio", c.thdn_ratio) &&
           write_real(json, channel, "thdn_db", c.thdn_db) &&
           write_count(json, channel, "worst_frame_start", c.worst_frame_start) &&
           write_real(json, channel, "p50_thdn_ratio", c.p50_thdn_ratio) &&
           write_real(json, channel, "p95_thdn_ratio", c.p95_thdn_ratio);
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
