// The two results JSON texts: the analyze results (one flat object with every measurement of
// RunResults in a fixed key order, written to the --json file and embedded in the HTML report)
// and the ERROR results of a run that could not compare its files.
#pragma once

#include "results/run_results.h"

#include <string>
#include <string_view>

// Builds the whole object, its paths and texts written whole however long they are: every entry
// carries a trailing comma and the comma after the last one is removed before the closing brace.
// False only when memory ran out or a measurement is NaN or infinite (an internal fault: the
// checks never produce one; its key is then put in `refused_key` when one is given, which is left
// empty otherwise); `json` is then empty.
bool build_results_json(const RunResults& results, std::string& json,
                        std::string* refused_key = nullptr);

// Builds sonalyx_phase, status "error", overall_verdict "ERROR", error, ref_file and dut_file,
// the last entry without a comma, however long the error text and the paths are. Both paths must
// be non-null. False only when memory ran out; `json` is then empty.
bool build_error_json(std::string_view error_text, const char* ref_path, const char* dut_path,
                      std::string& json);
