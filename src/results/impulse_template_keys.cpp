#include "results/impulse_template_keys.h"

#include "results/results_blocks.h"
#include "results/run_results.h"

namespace {

bool write_channel(FlatJson& json, std::size_t index, const ImpulseTemplateChannel& channel) {
    const auto key = [index](const char* suffix) {
        return channel_key("impulse_template", index, suffix);
    };
    if (!json_long(json, key("total_fails").c_str(), static_cast<long>(channel.total_fails)))
        return false;
    if (!channel.has_failures) return true;
    return json_long(json, key("worst_sample").c_str(), static_cast<long>(channel.worst_sample)) &&
           json_real(json, key("worst_diff").c_str(), channel.worst_diff) &&
           json_real(json, key("worst_ref_amp").c_str(), channel.worst_ref_amp) &&
           json_real(json, key("worst_dut_amp").c_str(), channel.worst_dut_amp);
}

} // namespace

bool write_impulse_template_keys(FlatJson& json, const ImpulseTemplateResult& r) {
    if (!json_text(json, "impulse_template_verdict", verdict_text(r.passed))) return false;
    const std::size_t channels = r.channels >= 2 ? 2 : 1;
    for (std::size_t index = 0; index < channels; ++index) {
        if (!write_channel(json, index, r.channel[index])) return false;
    }
    return true;
}
