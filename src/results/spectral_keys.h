// The spectral block of the results JSON: the verdict, then either the snapshot form (sufficiency,
// snapshot count, per channel and snapshot its time, verdict and bin figures) or the per-channel
// form of the single-frame and continuous scans.
#pragma once

#include "results/json_entries.h"
#include "results/spectral_outcome.h"

// Writes spectral_verdict and the keys of the form that ran, each entry with a trailing comma;
// channel 1 only for a stereo reference. False at the first entry that fails.
bool write_spectral_keys(FlatJson& json, const SpectralOutcome& outcome);
