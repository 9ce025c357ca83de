// The overall verdict: which checks failed it, in a fixed order, as a count, a machine list for
// the JSON and a readable list for the console summary line. Whether a check fails it is the
// results' gating rule (check_gating.h); this only collects and names the failures.
#pragma once

#include "results/results.h"

#include <cstddef>
#include <string>

inline constexpr std::size_t kMaxMachineListLength = 191;
inline constexpr std::size_t kMaxReadableListLength = 319;
inline constexpr std::size_t kMaxSummaryLength = 399;

// Visits the checks in GatingCheck order and records each one that fails the overall verdict.
OverallVerdict compute_overall_verdict(const GatingInputs& inputs);

// "overall: PASS", or "overall: FAIL -- " and the readable list; at most kMaxSummaryLength
// characters.
std::string overall_summary_line(const OverallVerdict& overall);
