// The artifact block of the results JSON: the verdict and the four event settings that explain
// it, then per examined channel the sample counts, the event counts and the worst event.
#pragma once

#include "dsp/dsp.h"
#include "results/json_entries.h"

// Writes artifact_verdict, artifact_window_samples, artifact_min_severity,
// artifact_min_silence_clip_run, artifact_min_global_severity and the artifact_channel_N_* keys
// for channel 0 and, when the reference is stereo, channel 1, each entry with a trailing comma.
// False at the first entry that fails.
bool write_artifact_keys(FlatJson& json, const ArtifactResult& r, long window_samples,
                         double min_severity, long min_silence_clip_run,
                         double min_global_severity);
