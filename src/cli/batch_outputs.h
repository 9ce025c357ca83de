// What a batch leaves beside the pairs' own reports: the index page, the JUnit file and the
// summary JSON, put in place together or not at all; or, for one shard, its rows file. Also the
// counts of the final summary line.
#pragma once

#include "results/results.h"

#include <cstddef>
#include <span>
#include <string>

struct VerdictCounts {
    std::size_t pass = 0;
    std::size_t fail = 0;
    std::size_t error = 0;
};

VerdictCounts count_verdicts(std::span<const BatchRow> rows);

// "N pairs: P PASS, F FAIL, E ERROR".
std::string verdict_summary(std::span<const BatchRow> rows);

// The batch folder as the outputs name it: the --out or --merge text without trailing '/'.
std::string batch_folder(const char* text);

// The summary line of written outputs: "wrote <written> (N pairs: P PASS, F FAIL, E ERROR)\n".
void print_batch_written(const std::string& written, std::span<const BatchRow> rows);

// What write_batch_outputs wrote as the summary line names it: the index page, and with --json
// the summary JSON after a " + ".
std::string batch_outputs_named(const std::string& out_dir, bool json);

// DIR/index.html, DIR/junit.xml (one suite named `suite_name`) and DIR/summary.json. False with
// "error: failed to write '<path>'\n" in `message`; then none of them was left behind.
bool write_batch_outputs(const std::string& out_dir, const std::string& suite_name,
                         std::span<const BatchRow> rows, double total_seconds,
                         std::string& message);

// The rows file of one shard at `path`; false with the same message.
bool write_shard_rows(const std::string& path, std::span<const BatchRow> rows, double total_seconds,
                      std::string& message);
