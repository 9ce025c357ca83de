// The body of `analyze`: settings, reading and checking both files, alignment, the length
// mismatch, settings validation, the checks in their fixed order, the overall verdict, the
// results JSON and the output files. Returns the exit status (0, 1, or 2 with --exit-code and an
// overall FAIL); comparison errors are left in `context.error_text` for the ERROR report. The
// output paths must already be planned in `context.paths`.
#pragma once

#include "cli/options.h"
#include "cli/run_context.h"

int run_analyze_pipeline(const AnalyzeOptions& options, RunContext& context);
