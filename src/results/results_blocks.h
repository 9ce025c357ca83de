// The blocks of the results JSON, one writer per block in key order. Each writes its entries with
// a trailing comma and returns false at the first entry that fails. A check's block is
// added by declaring its writer here and listing it in build_results_json. The writers build their
// keys in strings, so running out of memory throws from them: build_results_json runs them under
// json_guard_memory, which turns that into false.
#pragma once

#include "results/json_entries.h"
#include "results/run_results.h"

#include <cstddef>
#include <string>

using ResultsBlockWriter = bool (*)(FlatJson& json, const RunResults& results);

// sonalyx_phase, status, the overall verdict and its gating failures, then the file facts.
bool write_header_block(FlatJson& json, const RunResults& results);
// The file offset and disagreement, then per channel the confidence, offset, state and silent
// flags.
bool write_alignment_block(FlatJson& json, const RunResults& results);
// The length-mismatch verdict, uncovered percentage and uncovered sample count.
bool write_length_mismatch_block(FlatJson& json, const RunResults& results);

// The sample-domain checks' blocks; each writes nothing when its check did not run.
bool write_bitexact_block(FlatJson& json, const RunResults& results);
bool write_bit_accuracy_block(FlatJson& json, const RunResults& results);
bool write_level_fidelity_block(FlatJson& json, const RunResults& results);
bool write_artifact_block(FlatJson& json, const RunResults& results);
bool write_spectral_block(FlatJson& json, const RunResults& results);
bool write_distortion_block(FlatJson& json, const RunResults& results);
bool write_loudness_block(FlatJson& json, const RunResults& results);
bool write_time_domain_block(FlatJson& json, const RunResults& results);
bool write_impulse_template_block(FlatJson& json, const RunResults& results);

// Channels that get per-channel keys: 2 for a stereo reference, else 1.
std::size_t json_channel_count(const RunResults& results);
// "<check>_channel_<N>_<suffix>", e.g. "align_channel_1_offset".
std::string channel_key(const char* check, std::size_t channel, const char* suffix);
