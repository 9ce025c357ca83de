// The command line and run driver: the entry point and its dispatch, the usage text and version
// banner, option scanning of analyze, trim and plot, the defaults-file lookup next to the
// executable, and the resolution of report output paths.
#pragma once

#include "cli/commands.h"
#include "cli/defaults_lookup.h"
#include "cli/dispatch.h"
#include "cli/options.h"
#include "cli/output_paths.h"
#include "cli/usage.h"
