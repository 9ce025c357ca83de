#include "resolved_view.h"

namespace {

#define NUMBER(section, key, builtin)                                                              \
    ScalarKey {                                                                                    \
#section, #key, KeyKind::number, builtin, true, RESOLVED_GETTER(section, key)              \
    }
#define NUMBER_UNSET(section, key)                                                                 \
    ScalarKey {                                                                                    \
#section, #key, KeyKind::number, 0.0, false, RESOLVED_GETTER(section, key)                 \
    }
#define INTEGER(section, key, builtin)                                                             \
    ScalarKey {                                                                                    \
#section, #key, KeyKind::integer, builtin, true, RESOLVED_GETTER(section, key)             \
    }
#define BOOLEAN(section, key, builtin)                                                             \
    ScalarKey {                                                                                    \
#section, #key, KeyKind::boolean, (builtin) ? 1.0 : 0.0, true,                             \
            RESOLVED_GETTER(section, key)                                                          \
    }

} // namespace

const std::vector<ScalarKey>& scalar_keys() {
    static const std::vector<ScalarKey> keys = {
        NUMBER(general, low_level_signal_threshold_db, -70.0),
        NUMBER(general, length_mismatch_tolerance_pct, 1.0),
        NUMBER(level_fidelity, noise_floor_db, -80.0),
        NUMBER(level_fidelity, p99_tolerance_db, 1.02),
        NUMBER(level_fidelity, min_sustained_run_ms, 20.0),
        BOOLEAN(level_fidelity, gates_overall, true),
        INTEGER(artifact, window_samples, 64),
        NUMBER(artifact, k, 6.0),
        INTEGER(artifact, min_run, 1),
        NUMBER(artifact, noise_floor_db, -80.0),
        BOOLEAN(artifact, gates_overall, true),
        NUMBER(artifact, min_severity, 4.0),
        INTEGER(artifact, min_silence_clip_run, 8),
        NUMBER(artifact, min_global_severity, 100.0),
        INTEGER(spectral_fidelity, fft_size, 8192),
        NUMBER(spectral_fidelity, noise_floor_db, -100.0),
        NUMBER_UNSET(spectral_fidelity, relative_noise_floor_db),
        NUMBER(spectral_fidelity, low_level_signal_threshold_db, -70.0),
        NUMBER(spectral_fidelity, peak_threshold_db, -60.0),
        NUMBER(spectral_fidelity, signal_tolerance_db, 5.0),
        NUMBER(spectral_fidelity, low_level_signal_tolerance_db, 10.0),
        NUMBER(spectral_fidelity, peak_tolerance_db, 1.0),
        BOOLEAN(spectral_fidelity, continuous, false),
        NUMBER_UNSET(spectral_fidelity, overlap_fraction),
        NUMBER_UNSET(spectral_fidelity, freq_sweep_start_hz),
        NUMBER_UNSET(spectral_fidelity, freq_sweep_end_hz),
        NUMBER_UNSET(spectral_fidelity, amp_sweep_test_freq_hz),
        NUMBER(spectral_fidelity, sweep_search_window_cents, 50.0),
        INTEGER(spectral_fidelity, sweep_edge_skip_samples, 4096),
        NUMBER(distortion, noise_floor_db, -100.0),
        INTEGER(distortion, fundamental_notch_bins, 20),
        NUMBER(distortion, tolerance_ratio, 0.01),
        BOOLEAN(distortion, enabled, true),
        BOOLEAN(distortion, continuous, false),
        NUMBER(distortion, overlap_fraction, 0.0),
        NUMBER(bit_exact, bit_deviation_db, 0.0),
        BOOLEAN(bit_exact, gates_overall, false),
        BOOLEAN(bit_exact, enabled, true),
        BOOLEAN(bit_accuracy, enabled, false),
        NUMBER(bit_accuracy, tolerance_db, 108.0),
        BOOLEAN(time_domain, enabled, false),
        NUMBER(time_domain, noise_floor_db, -80.0),
        NUMBER(time_domain, peak_threshold_db, -60.0),
        NUMBER(time_domain, peak_tolerance_pct, 10.0),
        NUMBER(time_domain, low_level_signal_threshold_db, -70.0),
        NUMBER(time_domain, low_level_signal_tolerance_pct, 50.0),
        NUMBER(time_domain, signal_tolerance_pct, 50.0),
        BOOLEAN(impulse_template, enabled, false),
        NUMBER(impulse_template, peak_threshold_db, -10.0),
        NUMBER(impulse_template, ratio, 1.25),
        NUMBER(impulse_template, noise_floor_db, -30.0),
        INTEGER(impulse_template, frame_size, 8192),
        BOOLEAN(loudness, enabled, true),
        NUMBER(loudness, integrated_tolerance_lu, 0.5),
        NUMBER(loudness, true_peak_tolerance_db, 0.5),
        NUMBER_UNSET(loudness, true_peak_ceiling_dbtp),
        BOOLEAN(loudness, gates_overall, false),
    };
    return keys;
}
