// The options of `sonalyx batch`: its own (--manifest, --out, --jobs, --json, --exit-code,
// --resume, --shard, --quiet, --merge) and every analyze option, which is passed on to each pair's
// analyze run after being checked here the way analyze checks it.
#pragma once

#include "cli/batch_shard.h"
#include "cli/options.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct BatchOptions {
    const char* manifest_path = nullptr; // with --merge: only names the JUnit suite
    const char* out_dir = nullptr;
    const char* merge_dir = nullptr; // --merge: build the outputs from the shard files there
    std::size_t jobs = 0;            // 0: one per processor core
    bool json = false;
    bool exit_code = false;
    bool resume = false;
    bool quiet = false;
    std::optional<Shard> shard;
    std::vector<std::string> analyze_args; // the analyze options, as given, for every pair
    AnalyzeOptions analyze;                // what they say (the settings files among them)
};

// `args` is the whole argument vector: args[0] the program, args[1] "batch".
ScanResult scan_batch_options(std::span<char* const> args, BatchOptions& out);
