#include "cli/overall_verdict.h"

#include "cli/capped_append.h"

#include <algorithm>
#include <array>
#include <cstdio>

OverallVerdict compute_overall_verdict(const GatingInputs& inputs) {
    OverallVerdict overall;
    for (std::size_t index = 0; index < kGatingCheckCount; ++index) {
        const auto check = static_cast<GatingCheck>(index);
        if (!check_fails_overall(check, inputs[index])) continue;
        overall.failed[index] = true;
        append_capped(overall.machine_list, ",", gating_machine_name(check), kMaxMachineListLength);
        append_capped(overall.readable_list, ", ", gating_readable_name(check),
                      kMaxReadableListLength);
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
