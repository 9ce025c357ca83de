// The command line and run driver: the entry point and its dispatch, the usage text and version
// banner, option scanning of analyze, trim and plot, the defaults-file lookup next to the
// executable, the analyze pipeline with its comparison errors and ERROR report, the overall
// verdict, and the resolution of report output paths.
#pragma once

#include "cli/analysis_checks.h"
#include "cli/analyze_inputs.h"
#include "cli/analyze_pipeline.h"
#include "cli/capped_append.h"
#include "cli/commands.h"
#include "cli/comparison_error.h"
#include "cli/defaults_lookup.h"
#include "cli/dispatch.h"
#include "cli/error_report.h"
#include "cli/options.h"
#include "cli/output_paths.h"
#include "cli/overall_verdict.h"
#include "cli/run_context.h"
#include "cli/usage.h"
