// The level fidelity block of the results JSON: the verdict, then per examined channel the sample
// counts, the three statistics and the longest run, and the worst sample when the channel had
// data.
#pragma once

#include "checks/checks.h"
#include "results/json_entries.h"

// Writes levelfidelity_verdict and the levelfidelity_channel_N_* keys for channel 0 and, when the
// reference is stereo, channel 1, each entry with a trailing comma. False at the first entry that
// fails.
bool write_level_fidelity_keys(FlatJson& json, const LevelFidelityResult& r);
