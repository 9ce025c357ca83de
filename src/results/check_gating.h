// The gating rule, written once: for each check whether it ran, whether it gates the overall
// verdict and whether it passed, read from one run's record. The overall verdict and the report's
// tiles, tabs and badges all read these statuses, so a page can never show a gating decision
// other than the one the verdict made.
#pragma once

#include "results/run_results.h"

#include <array>

// A check that did not run counts as passed. `gates` is already decided: a check without a
// gating switch gates whenever it runs.
struct CheckStatus {
    bool ran = false;
    bool gates = false;
    bool passed = true;
};

using GatingInputs = std::array<CheckStatus, kGatingCheckCount>; // indexed by GatingCheck

// True for the checks that have no gating switch (length mismatch, spectral fidelity,
// distortion, time domain, impulse template): they gate whenever they ran.
bool always_gates(GatingCheck check);

// Ran and failed.
bool check_failed(const CheckStatus& status);
// Failed without gating the overall verdict.
bool check_failed_nongating(const CheckStatus& status);
// Fails the overall verdict: ran, gates (or always gates) and failed.
bool check_fails_overall(GatingCheck check, const CheckStatus& status);

// One check's status in a run: the length mismatch always ran; every check adds its ran flag,
// resolved gating switch and verdict; a check without a block yet stays not run.
CheckStatus check_status(const RunResults& results, GatingCheck check);
// Bit accuracy is shown like a check but never gates.
CheckStatus bit_accuracy_status(const RunResults& results);

// Every gating check's status, in GatingCheck order.
GatingInputs gating_inputs(const RunResults& results);
