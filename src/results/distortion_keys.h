// The distortion block of the results JSON: the verdict, then per examined channel the gating and
// sufficiency flags, the frame counts, the worst frame's fundamental, THD+N and start, and the
// percentiles of the ungated frames' ratios.
#pragma once

#include "dsp/dsp.h"
#include "results/json_entries.h"

// Writes distortion_verdict and the distortion_channel_N_* keys for channel 0 and, when the
// reference is stereo, channel 1, each entry with a trailing comma. False at the first entry that
// fails.
bool write_distortion_keys(FlatJson& json, const DistortionResult& r);
