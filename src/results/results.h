// The results record: everything one analyze run measured (RunResults), and its rendering as the
// flat results JSON, the ERROR results JSON and the trim report, with the entry writer and the
// JSON writer they share; each check's keys have their own writer. Also each check's gating
// status, decided once for the verdict and the page, and the figures every page shows.
#pragma once

#include "results/artifact_keys.h"
#include "results/batch_row.h"
#include "results/bit_compare_keys.h"
#include "results/check_gating.h"
#include "results/distortion_keys.h"
#include "results/flat_json_reader.h"
#include "results/gating_names.h"
#include "results/impulse_template_keys.h"
#include "results/json_entries.h"
#include "results/json_writer.h"
#include "results/level_fidelity_keys.h"
#include "results/loudness_keys.h"
#include "results/markup_escape.h"
#include "results/page_figures.h"
#include "results/results_blocks.h"
#include "results/results_json.h"
#include "results/run_results.h"
#include "results/spectral_outcome.h"
#include "results/time_domain_keys.h"
#include "results/trim_report.h"
#include "results/version.h"
