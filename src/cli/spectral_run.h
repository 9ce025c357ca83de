// The spectral check as the driver runs it: the resolved spectral_fidelity settings mapped to the
// comparison's parameters, and the choice between the snapshot form and the single-frame or
// continuous form.
#pragma once

#include "audio/audio.h"
#include "config/config.h"
#include "dsp/dsp.h"
#include "results/results.h"

#include <cstdint>

// The comparison parameters of the resolved settings.
SpectralSettings spectral_settings_from(const SpectralFidelityConfig& config);

// Snapshots when a snapshot setting is present (a list of times or a count), else one centred
// frame or a continuous scan.
SpectralOutcome run_spectral_check(const AlignedPair& pair, const SpectralFidelityConfig& config);
