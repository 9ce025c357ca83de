// Running the checks of an analyze run in their fixed order, each only when enabled, with its
// parameters taken from the resolved settings.
#pragma once

#include "audio/audio.h"
#include "results/results.h"

// Bit-exactness, bit accuracy, time domain, impulse template, level fidelity (always), artifact
// detection (always), spectral fidelity (always), distortion, then loudness; each fills its block
// of `results` over the aligned pair.
void run_analysis_checks(const AlignedPair& pair, RunResults& results);
