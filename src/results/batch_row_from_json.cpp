// A pair's row from the results JSON its analyze run wrote.
#include "results/batch_row.h"
#include "results/flat_json_reader.h"
#include "results/gating_names.h"
#include "results/json_entries.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace {

constexpr std::size_t kJsonChannels = 2; // channel 1 keys exist only for stereo pairs

std::string channel_key(std::string_view check, std::size_t channel, std::string_view suffix) {
    return std::string(check) + "_channel_" + std::to_string(channel) + "_" + std::string(suffix);
}

// The larger of two figures where either may be missing.
std::optional<double> worse(std::optional<double> a, std::optional<double> b) {
    if (!a) return b;
    if (!b) return a;
    return std::max(*a, *b);
}

std::optional<double> worst_level_p99(const FlatObject& json) {
    std::optional<double> worst;
    for (std::size_t channel = 0; channel < kJsonChannels; ++channel) {
        worst = worse(worst, flat_real(json, channel_key("levelfidelity", channel, "p99_abs_db")));
    }
    return worst;
}

// A channel whose frames were all gated or too short has no THD+N figure worth showing.
std::optional<double> worst_thdn(const FlatObject& json) {
    std::optional<double> worst;
    for (std::size_t channel = 0; channel < kJsonChannels; ++channel) {
        const bool measured =
            flat_integer(json, channel_key("distortion", channel, "frame_gated")) == 0 &&
            flat_integer(json, channel_key("distortion", channel, "insufficient_samples")) == 0;
        if (measured)
            worst = worse(worst, flat_real(json, channel_key("distortion", channel, "thdn_db")));
    }
    return worst;
}

std::optional<std::int64_t> counted_artifacts(const FlatObject& json) {
    std::optional<std::int64_t> sum;
    for (std::size_t channel = 0; channel < kJsonChannels; ++channel) {
        const std::optional<std::int64_t> count =
            flat_integer(json, channel_key("artifact", channel, "counted_event_count"));
        if (count) sum = sum.value_or(0) + *count;
    }
    return sum;
}

// "levelfidelity,spectral" becomes "Level Fidelity, Spectral Fidelity"; an unknown name stays.
std::string readable_failures(std::string_view machine_list) {
    std::string readable;
    while (!machine_list.empty()) {
        const std::size_t comma = std::min(machine_list.find(','), machine_list.size());
        const std::string_view name = machine_list.substr(0, comma);
        const std::optional<GatingCheck> check = gating_check_named(name);
        if (!readable.empty()) readable += ", ";
        readable += check ? std::string_view(gating_readable_name(*check)) : name;
        machine_list.remove_prefix(std::min(comma + 1, machine_list.size()));
    }
    return readable;
}

// The key figures: the worst channel's level p99 deviation, the integrated loudness delta, the
// worst measured channel's THD+N in dB and the counted artifact events of all channels.
void read_figures(const FlatObject& json, BatchRow& row) {
    row.offset = flat_integer(json, "align_file_offset");
    row.level_p99_db = worst_level_p99(json);
    row.loudness_delta_lu = flat_real(json, "loudness_delta_integrated_lu");
    row.thdn_db = worst_thdn(json);
    row.artifact_count = counted_artifacts(json);
}

} // namespace

bool batch_row_from_results_json(std::string_view json_text, BatchRow& row) {
    return json_guard_memory([&] {
        FlatObject json;
        std::string error;
        if (!read_flat_json(json_text, json, error)) return false;
        const std::optional<std::string> verdict = flat_text(json, "overall_verdict");
        if (!verdict || (*verdict != "PASS" && *verdict != "FAIL" && *verdict != "ERROR")) {
            return false;
        }
        row.verdict = *verdict;
        row.error = flat_text(json, "error").value_or("");
        row.failing_checks = readable_failures(flat_text(json, "gating_failures").value_or(""));
        read_figures(json, row);
        return true;
    });
}
