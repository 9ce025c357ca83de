// Running a batch's pairs: each pair is one analyze run of this same program in a child process
// (`analyze --ref R --dut D --out DIR/ID.html --json --quiet` and the batch's analyze options),
// so that a pair that crashes or runs out of memory ends only its own run. Each pair becomes one
// row of the batch outputs, read from the results JSON its run wrote.
//
// For the tests alone: SONALYX_BATCH_TEST_KILL=<id> in the batch's environment makes the batch
// kill that pair's analyze process with SIGKILL as soon as it has started.
#pragma once

#include "cli/batch_manifest.h"
#include "results/results.h"

#include <cstddef>
#include <string>
#include <vector>

struct BatchPlan {
    std::string out_dir;                   // where DIR/ID.html and DIR/ID.json go, no trailing '/'
    std::vector<std::string> analyze_args; // passed on to every pair
    std::size_t jobs = 1;                  // pairs running at once
    bool show_progress = false;
};

struct PairRow {
    BatchRow row;
    bool ran = false; // false when the pair's analyze could not run at all (no results of its own)
};

// The page and JSON paths of a pair.
std::string pair_page_path(const std::string& out_dir, const ManifestPair& pair);
std::string pair_json_path(const std::string& out_dir, const ManifestPair& pair);

// A pair's row from the results JSON already in the folder; not `ran` when it is missing or
// unreadable.
PairRow read_pair_row(const std::string& out_dir, const ManifestPair& pair, double seconds);

// Runs the pairs and returns their rows in the order given.
std::vector<PairRow> run_pairs(const BatchPlan& plan, const std::vector<ManifestPair>& pairs);
