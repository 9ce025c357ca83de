#include "results/check_gating.h"

namespace {

template <typename Result> CheckStatus block_status(const CheckBlock<Result>& block, bool gates) {
    return {block.ran, gates, !block.ran || block.result.passed};
}

// The record's ran flag, resolved gating switch (false for a check without one) and verdict.
CheckStatus recorded_status(const RunResults& r, GatingCheck check) {
    const AnalysisConfig& c = r.config;
    switch (check) {
    case GatingCheck::length_mismatch:
        return {true, false, !r.length_mismatch.failed};
    case GatingCheck::bitexact:
        return block_status(r.bit_exact, c.bit_exact.gates_overall.value);
    case GatingCheck::levelfidelity:
        return block_status(r.level_fidelity, c.level_fidelity.gates_overall.value);
    case GatingCheck::artifact:
        return block_status(r.artifact, c.artifact.gates_overall.value);
    case GatingCheck::spectral:
        return {r.spectral.ran, false, !r.spectral.ran || spectral_passed(r.spectral.result)};
    case GatingCheck::distortion:
        return block_status(r.distortion, false);
    case GatingCheck::loudness:
        return block_status(r.loudness, c.loudness.gates_overall.value);
    case GatingCheck::time_domain:
        return block_status(r.time_domain, false);
    case GatingCheck::impulse_template:
    case GatingCheck::count:
        break;
    }
    return block_status(r.impulse_template, false);
}

} // namespace

bool always_gates(GatingCheck check) {
    return check != GatingCheck::bitexact && check != GatingCheck::levelfidelity &&
           check != GatingCheck::artifact && check != GatingCheck::loudness;
}

bool check_failed(const CheckStatus& status) {
    return status.ran && !status.passed;
}

bool check_failed_nongating(const CheckStatus& status) {
    return check_failed(status) && !status.gates;
}

bool check_fails_overall(GatingCheck check, const CheckStatus& status) {
    return check_failed(status) && (status.gates || always_gates(check));
}

CheckStatus check_status(const RunResults& results, GatingCheck check) {
    CheckStatus status = recorded_status(results, check);
    status.gates = status.gates || always_gates(check);
    return status;
}

CheckStatus bit_accuracy_status(const RunResults& results) {
    return block_status(results.bit_accuracy, false);
}

GatingInputs gating_inputs(const RunResults& results) {
    GatingInputs inputs{};
    for (std::size_t index = 0; index < kGatingCheckCount; ++index)
        inputs[index] = check_status(results, static_cast<GatingCheck>(index));
    return inputs;
}
