// The results JSON blocks of the checks: each check's keys, written only when it ran.
#include "results/artifact_keys.h"
#include "results/bit_compare_keys.h"
#include "results/distortion_keys.h"
#include "results/impulse_template_keys.h"
#include "results/level_fidelity_keys.h"
#include "results/loudness_keys.h"
#include "results/results_blocks.h"
#include "results/spectral_keys.h"
#include "results/time_domain_keys.h"

bool write_bitexact_block(FlatJson& json, const RunResults& results) {
    return !results.bit_exact.ran || write_bitexact_keys(json, results.bit_exact.result);
}

bool write_bit_accuracy_block(FlatJson& json, const RunResults& results) {
    return !results.bit_accuracy.ran ||
           write_bit_accuracy_keys(json, results.bit_accuracy.result,
                                   results.config.bit_accuracy.tolerance_db.value);
}

bool write_level_fidelity_block(FlatJson& json, const RunResults& results) {
    return !results.level_fidelity.ran ||
           write_level_fidelity_keys(json, results.level_fidelity.result);
}

bool write_artifact_block(FlatJson& json, const RunResults& results) {
    const ArtifactConfig& a = results.config.artifact;
    return !results.artifact.ran ||
           write_artifact_keys(json, results.artifact.result,
                               static_cast<long>(a.window_samples.value), a.min_severity.value,
                               static_cast<long>(a.min_silence_clip_run.value),
                               a.min_global_severity.value);
}

bool write_spectral_block(FlatJson& json, const RunResults& results) {
    return !results.spectral.ran || write_spectral_keys(json, results.spectral.result);
}

bool write_distortion_block(FlatJson& json, const RunResults& results) {
    return !results.distortion.ran || write_distortion_keys(json, results.distortion.result);
}

bool write_loudness_block(FlatJson& json, const RunResults& results) {
    return !results.loudness.ran || write_loudness_keys(json, results.loudness.result);
}

bool write_time_domain_block(FlatJson& json, const RunResults& results) {
    return !results.time_domain.ran || write_time_domain_keys(json, results.time_domain.result);
}

bool write_impulse_template_block(FlatJson& json, const RunResults& results) {
    return !results.impulse_template.ran ||
           write_impulse_template_keys(json, results.impulse_template.result);
}
