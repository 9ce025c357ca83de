#include "cli/overall_verdict.h"

#include "cli/capped_append.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

struct GatingNames {
    const char* machine;
    const char* readable;
};

constexpr std::array<GatingNames, kGatingCheckCount> kGatingNames = {{
    {"length_mismatch", "Length Mismatch"},
    {"bitexact", "Bit-Exactness"},
    {"levelfidelity", "Level Fidelity"},
    {"artifact", "Artifact Detection"},
    {"spectral", "Spectral Fidelity"},
    {"distortion", "Distortion"},
    {"loudness", "Loudness"},
    {"time_domain", "Time Domain"},
    {"impulse_template", "Impulse Template"},
}};

const GatingNames& names_of(GatingCheck check) {
    return kGatingNames[static_cast<std::size_t>(check)];
}

} // namespace

const char* gating_machine_name(GatingCheck check) {
    return names_of(check).machine;
}

const char* gating_readable_name(GatingCheck check) {
    return names_of(check).readable;
}

OverallVerdict compute_overall_verdict(const GatingInputs& inputs) {
    OverallVerdict overall;
    for (std::size_t index = 0; index < kGatingCheckCount; ++index) {
        const auto check = static_cast<GatingCheck>(index);
        if (!check_fails_overall(check, inputs[index])) continue;
        const GatingNames& names = names_of(check);
        overall.failed[index] = true;
        append_capped(overall.machine_list, ",", names.machine, kMaxMachineListLength);
        append_capped(overall.readable_list, ", ", names.readable, kMaxReadableListLength);
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
