// The loudness block of the results JSON: the verdict, then for each figure (integrated loudness,
// loudness range, true peak, sample peak, largest momentary and short-term loudness) the
// reference's value, the DUT's value and the delta.
#pragma once

#include "dsp/dsp.h"
#include "results/json_entries.h"

// Writes loudness_verdict and the eighteen loudness_ref_*, loudness_dut_* and loudness_delta_*
// reals, each entry with a trailing comma. False at the first entry that fails.
bool write_loudness_keys(FlatJson& json, const LoudnessResult& r);
