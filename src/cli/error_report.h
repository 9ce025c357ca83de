// The ERROR report written in place of the normal one when the two files cannot be compared.
#pragma once

#include "cli/run_context.h"

// Writes what this build has of the ERROR report (the ERROR results JSON, with --json) beside
// where the normal report would go, and says so on standard error. Failures to resolve the
// output path end silently; a failed write is a warning. The run's status stays 1 either way.
void write_error_report(const RunContext& context);
