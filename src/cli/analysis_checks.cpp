#include "cli/analysis_checks.h"

#include "checks/checks.h"
#include "cli/run_stage.h"
#include "cli/spectral_run.h"
#include "dsp/dsp.h"

namespace {

// The checks that compare samples directly, each only when enabled.
void run_sample_checks(const AlignedPair& pair, RunResults& results) {
    const AnalysisConfig& c = results.config;
    set_run_stage("comparing samples bit for bit");
    if (c.bit_exact.enabled.value)
        results.bit_exact = {true, bit_compare(pair, c.bit_exact.bit_deviation_db.value)};
    if (c.bit_accuracy.enabled.value)
        results.bit_accuracy = {true, bit_compare(pair, c.bit_accuracy.tolerance_db.value)};
    const TimeDomainConfig& t = c.time_domain;
    set_run_stage("scanning the time domain");
    if (t.enabled.value)
        results.time_domain = {
            true,
            time_domain_scan(pair, t.noise_floor_db.value, t.peak_threshold_db.value,
                             t.peak_tolerance_pct.value, t.low_level_signal_threshold_db.value,
                             t.low_level_signal_tolerance_pct.value, t.signal_tolerance_pct.value)};
    const ImpulseTemplateConfig& i = c.impulse_template;
    set_run_stage("checking the impulse template");
    if (i.enabled.value)
        results.impulse_template = {
            true, impulse_template_check(pair, i.frame_size.value, i.peak_threshold_db.value,
                                         i.ratio.value, i.noise_floor_db.value)};
}

// Level fidelity, artifact detection and spectral fidelity always run; distortion and loudness
// when enabled.
void run_signal_checks(const AlignedPair& pair, RunResults& results) {
    const AnalysisConfig& c = results.config;
    const LevelFidelityConfig& l = c.level_fidelity;
    set_run_stage("measuring level fidelity");
    results.level_fidelity = {true,
                              level_fidelity(pair, l.noise_floor_db.value, l.p99_tolerance_db.value,
                                             l.min_sustained_run_ms.value)};
    const ArtifactConfig& a = c.artifact;
    set_run_stage("detecting artifacts");
    results.artifact = {true, artifact_check(pair, a.k.value, a.noise_floor_db.value,
                                             a.window_samples.value, a.min_run.value,
                                             a.min_severity.value, a.min_global_severity.value,
                                             a.min_silence_clip_run.value)};
    set_run_stage("comparing spectra");
    results.spectral = {true, run_spectral_check(pair, c.spectral_fidelity)};
    const DistortionConfig& d = c.distortion;
    set_run_stage("measuring distortion");
    if (d.enabled.value)
        results.distortion = {true,
                              distortion_check(pair, c.spectral_fidelity.fft_size.value,
                                               d.fundamental_notch_bins.value, d.continuous.value,
                                               d.noise_floor_db.value, d.tolerance_ratio.value,
                                               d.overlap_fraction.value)};
    const LoudnessConfig& n = c.loudness;
    set_run_stage("measuring loudness");
    if (n.enabled.value)
        // The ceiling test applies only when a settings file gives a ceiling.
        results.loudness = {true, loudness_compare(pair, n.true_peak_ceiling_dbtp.set,
                                                   n.integrated_tolerance_lu.value,
                                                   n.true_peak_tolerance_db.value,
                                                   n.true_peak_ceiling_dbtp.value)};
}

} // namespace

void run_analysis_checks(const AlignedPair& pair, RunResults& results) {
    run_sample_checks(pair, results);
    run_signal_checks(pair, results);
}
