#include "cli/overall_verdict.h"

#include "cli/capped_append.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

struct GatingRow {
    const char* machine;
    const char* readable;
    bool has_switch; // false: the check gates whenever it ran and failed
};

constexpr std::array<GatingRow, kGatingCheckCount> kGatingRows = {{
    {"length_mismatch", "Length Mismatch", false},
    {"bitexact", "Bit-Exactness", true},
    {"levelfidelity", "Level Fidelity", true},
    {"artifact", "Artifact Detection", true},
    {"spectral", "Spectral Fidelity", false},
    {"distortion", "Distortion", false},
    {"loudness", "Loudness", true},
    {"time_domain", "Time Domain", false},
    {"impulse_template", "Impulse Template", false},
}};

const GatingRow& row_of(GatingCheck check) {
    return kGatingRows[static_cast<std::size_t>(check)];
}

bool fails_overall(const GatingRow& row, const GatingInput& input) {
    return input.ran && (!row.has_switch || input.gates) && !input.passed;
}

} // namespace

const char* gating_machine_name(GatingCheck check) {
    return row_of(check).machine;
}

const char* gating_readable_name(GatingCheck check) {
    return row_of(check).readable;
}

namespace {

template <typename Result>
GatingInput check_input(const CheckBlock<Result>& block, bool gates = false) {
    return {block.ran, gates, !block.ran || block.result.passed};
}

} // namespace

GatingInputs gating_inputs(const RunResults& results) {
    const AnalysisConfig& config = results.config;
    GatingInputs inputs{};
    auto input = [&inputs](GatingCheck check) -> GatingInput& {
        return inputs[static_cast<std::size_t>(check)];
    };
    input(GatingCheck::length_mismatch) = {true, true, !results.length_mismatch.failed};
    input(GatingCheck::bitexact) =
        check_input(results.bit_exact, config.bit_exact.gates_overall.value);
    input(GatingCheck::levelfidelity) =
        check_input(results.level_fidelity, config.level_fidelity.gates_overall.value);
    input(GatingCheck::artifact) =
        check_input(results.artifact, config.artifact.gates_overall.value);
    // Spectral fidelity always gates.
    input(GatingCheck::spectral) = {results.spectral.ran, true,
                                    !results.spectral.ran ||
                                        spectral_passed(results.spectral.result)};
    input(GatingCheck::distortion) = check_input(results.distortion);
    input(GatingCheck::loudness) =
        check_input(results.loudness, config.loudness.gates_overall.value);
    input(GatingCheck::time_domain) = check_input(results.time_domain);
    input(GatingCheck::impulse_template) = check_input(results.impulse_template);
    return inputs;
}

OverallVerdict compute_overall_verdict(const GatingInputs& inputs) {
    OverallVerdict overall;
    for (std::size_t index = 0; index < kGatingCheckCount; ++index) {
        const GatingRow& row = kGatingRows[index];
        if (!fails_overall(row, inputs[index])) continue;
        overall.failed[index] = true;
        append_capped(overall.machine_list, ",", row.machine, kMaxMachineListLength);
        append_capped(overall.readable_list, ", ", row.readable, kMaxReadableListLength);
        ++overall.gating_failure_count;
    }
    overall.passed = overall.gating_failure_count == 0;
    return overall;
}

std::string overall_summary_line(const OverallVerdict& overall) {
    std::array<char, kMaxSummaryLength + 1> line{};
    const int written = overall.passed
                            ? std::snprintf(line.data(), line.size(), "overall: PASS")
                            : std::snprintf(line.data(), line.size(), "overall: FAIL -- %s",
                                            overall.readable_list.c_str());
    if (written < 0) return {};
    return std::string(line.data()); // snprintf cut it to the buffer
}
