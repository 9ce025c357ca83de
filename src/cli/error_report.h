// The ERROR report written in place of the normal one when the two files cannot be compared.
#pragma once

#include "cli/run_context.h"

// Writes the ERROR page and, with --json, the ERROR results JSON where the normal report would
// go, as one set: both are written or neither is. Says which on standard error ("wrote an error
// report to ..." or a warning naming what failed). The run's status stays 1 either way.
void write_error_report(const RunContext& context);
