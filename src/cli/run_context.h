// What the analyze pipeline shares with its caller: enough to write an ERROR report when the two
// files turn out not to be comparable.
#pragma once

#include "cli/output_paths.h"
#include "results/results.h"

#include <string>

struct RunContext {
    bool report_possible = false; // set once the settings files are loaded
    const char* ref_path = nullptr;
    const char* dut_path = nullptr;
    const char* out_path = nullptr;
    bool json = false;
    OutputPaths paths; // planned and checked against the inputs before the run starts
    TesterInfo tester;
    std::string error_text; // the comparison errors of the run, joined by "; "
};
