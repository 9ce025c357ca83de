// The two results JSON texts: the analyze results (one flat object with every measurement of
// RunResults in a fixed key order, written to the --json file and embedded in the HTML report)
// and the ERROR results of a run that could not compare its files.
#pragma once

#include "results/run_results.h"

#include <string>
#include <string_view>

// Builds the whole object within kResultsJsonCapacity bytes: every entry carries a trailing comma
// and the comma after the last one is removed before the closing brace. False when an entry does
// not fit (the run then stops with the internal-size error); `json` is then empty.
bool build_results_json(const RunResults& results, std::string& json);

// Builds sonalyx_phase, status "error", overall_verdict "ERROR", error, ref_file and dut_file
// within kErrorJsonCapacity bytes, the last entry without a comma. Both paths must be non-null.
// False when an entry does not fit; `json` is then empty.
bool build_error_json(std::string_view error_text, const char* ref_path, const char* dut_path,
                      std::string& json);
