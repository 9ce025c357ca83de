#include "results/level_fidelity_keys.h"

#include "results/results_blocks.h"
#include "results/run_results.h"

#include <cstddef>
#include <string>

namespace {

std::string level_key(std::size_t channel, const char* suffix) {
    return channel_key("levelfidelity", channel, suffix);
}

bool write_worst_sample(FlatJson& json, std::size_t channel, const LevelFidelityChannel& c) {
    return json_long(json, level_key(channel, "worst_sample").c_str(),
                     static_cast<long>(c.worst_sample)) &&
           json_real(json, level_key(channel, "worst_diff_db").c_str(), c.worst_diff_db) &&
           json_real(json, level_key(channel, "worst_ref_amp").c_str(), c.worst_ref_amp) &&
           json_real(json, level_key(channel, "worst_dut_amp").c_str(), c.worst_dut_amp);
}

bool write_channel(FlatJson& json, std::size_t channel, const LevelFidelityChannel& c) {
    const bool written = json_long(json, level_key(channel, "samples_included").c_str(),
                                   static_cast<long>(c.samples_included)) &&
                         json_long(json, level_key(channel, "samples_excluded").c_str(),
                                   static_cast<long>(c.samples_excluded)) &&
                         json_real(json, level_key(channel, "median_db").c_str(), c.median_db) &&
                         json_real(json, level_key(channel, "mad_db").c_str(), c.mad_db) &&
                         json_real(json, level_key(channel, "p99_abs_db").c_str(), c.p99_abs_db) &&
                         json_real(json, level_key(channel, "longest_sustained_run_ms").c_str(),
                                   c.longest_sustained_run_ms);
    // The worst-sample keys exist only for a channel that produced at least one ratio.
    return written && (!c.has_data || write_worst_sample(json, channel, c));
}

} // namespace

bool write_level_fidelity_keys(FlatJson& json, const LevelFidelityResult& r) {
    if (!json_text(json, "levelfidelity_verdict", verdict_text(r.passed))) return false;
    // Channel 1 keys only for a stereo reference, as for every other per-channel block.
    const std::size_t channels = r.channels >= 2 ? 2 : 1;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (!write_channel(json, channel, r.channel[channel])) return false;
    }
    return true;
}
