#include "results/time_domain_keys.h"

#include "results/results_blocks.h"
#include "results/run_results.h"

#include <cstddef>
#include <cstdint>

namespace {

bool write_channel(FlatJson& json, std::size_t channel, const TimeDomainChannel& c) {
    const auto key = [channel](const char* suffix) {
        return channel_key("time_domain", channel, suffix);
    };
    const auto count = [](std::uint64_t value) { return static_cast<long>(value); };
    if (!json_long(json, key("samples_included").c_str(), count(c.samples_included)) ||
        !json_long(json, key("samples_excluded").c_str(), count(c.samples_excluded)) ||
        !json_long(json, key("total_fails").c_str(), count(c.total_fails)) ||
        !json_long(json, key("fails_low_level_signal_tier").c_str(),
                   count(c.fails_low_level_signal_tier)) ||
        !json_long(json, key("fails_signal_tier").c_str(), count(c.fails_signal_tier)) ||
        !json_long(json, key("fails_peak_tier").c_str(), count(c.fails_peak_tier)))
        return false;
    // The key list of the whole JSON names the worst-sample keys unconditionally; the check's own
    // key list writes them only for a channel with failures, and that narrower rule is followed.
    if (!c.has_failures) return true;
    return json_long(json, key("worst_sample").c_str(), count(c.worst_sample)) &&
           json_real(json, key("worst_diff_pct").c_str(), c.worst_diff_pct) &&
           json_real(json, key("worst_ref_amp").c_str(), c.worst_ref_amp) &&
           json_real(json, key("worst_dut_amp").c_str(), c.worst_dut_amp) &&
           json_real(json, key("worst_tolerance_pct").c_str(), c.worst_tolerance_pct);
}

} // namespace

bool write_time_domain_keys(FlatJson& json, const TimeDomainResult& r) {
    if (!json_text(json, "time_domain_verdict", verdict_text(r.passed))) return false;
    const std::size_t channels = r.channels >= 2 ? 2 : 1;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (!write_channel(json, channel, r.channel[channel])) return false;
    }
    return true;
}
