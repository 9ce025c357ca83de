// The overall verdict: which checks failed it, in a fixed order, as a count, a machine list for
// the JSON and a readable list for the console summary line.
#pragma once

#include "results/run_results.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

inline constexpr std::size_t kMaxMachineListLength = 191;
inline constexpr std::size_t kMaxReadableListLength = 319;
inline constexpr std::size_t kMaxSummaryLength = 399;

// What one check contributes. A check that did not run counts as passed. `gates` is the check's
// resolved gating switch; it is ignored for the checks that always gate (length mismatch,
// spectral fidelity) and for those that have no switch (distortion, time domain, impulse
// template). The checks that always run (length mismatch, level fidelity, artifact detection,
// spectral fidelity) are given with `ran` set.
struct GatingInput {
    bool ran = false;
    bool gates = false;
    bool passed = true;
};

using GatingInputs = std::array<GatingInput, kGatingCheckCount>; // indexed by GatingCheck

// "length_mismatch", "bitexact", ... as in the gating_failures list.
const char* gating_machine_name(GatingCheck check);
// "Length Mismatch", "Bit-Exactness", ... as in the console summary.
const char* gating_readable_name(GatingCheck check);

// The inputs of one run: the length mismatch always ran and always gates; every check's block
// adds its ran flag, resolved gating switch and verdict here, and a check without a block yet
// stays not run.
GatingInputs gating_inputs(const RunResults& results);

// Visits the checks in GatingCheck order and records each one that fails the overall verdict.
OverallVerdict compute_overall_verdict(const GatingInputs& inputs);

// "overall: PASS", or "overall: FAIL -- " and the readable list; at most kMaxSummaryLength
// characters.
std::string overall_summary_line(const OverallVerdict& overall);
