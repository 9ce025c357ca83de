// The results record: everything one analyze run measured (RunResults), and its rendering as the
// flat results JSON, the ERROR results JSON, and the bounded entry writer those and the trim
// report share.
#pragma once

#include "results/json_entries.h"
#include "results/results_blocks.h"
#include "results/results_json.h"
#include "results/run_results.h"
#include "results/version.h"
