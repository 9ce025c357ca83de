// One pair of a batch run as the batch outputs show it (the index page, the JUnit file, the
// summary and shard JSON): its verdict, its failing checks or error, the offset and a few key
// figures read from the pair's results JSON, and how long the pair took.
#pragma once

#include "results/run_results.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct BatchRow {
    std::string id;
    std::string ref_path;
    std::string dut_path;
    std::string verdict;        // "PASS", "FAIL" or "ERROR"
    std::string failing_checks; // readable failing-check list of the overall verdict, "" when none
    std::string error;          // the error text of an ERROR pair
    std::optional<std::int64_t> offset;
    std::optional<double> level_p99_db;
    std::optional<double> loudness_delta_lu;
    std::optional<double> thdn_db;
    std::optional<std::int64_t> artifact_count;
    double seconds = 0.0;
    std::string report; // "ID.html", relative to the batch folder
};

// Fills verdict, failing_checks, error, offset and the key figures from a results JSON or an
// ERROR JSON as analyze writes them; id, paths, seconds and report are left as they are. False
// when the text is not such a JSON object.
bool batch_row_from_results_json(std::string_view json_text, BatchRow& row);

// The rows and the total time as one JSON object (the batch summary and every shard file). False
// only when memory ran out or a figure is NaN or infinite; `out` is then empty.
bool write_batch_rows_json(std::span<const BatchRow> rows, double total_seconds, std::string& out);

// Reads back exactly what write_batch_rows_json wrote. False with a one-line `error` otherwise.
bool read_batch_rows_json(std::string_view text, std::vector<BatchRow>& rows, std::string& error);

// A JUnit file with one test suite named `suite_name` and one test case per pair: a FAIL pair
// carries a <failure> with its failing checks and figures, an ERROR pair an <error> with its
// error text. False only when memory ran out; `out` is then empty.
bool write_batch_junit(std::string_view suite_name, std::span<const BatchRow> rows,
                       double total_seconds, std::string& out);

// A JUnit file of one analyze run: one test case per check that ran, a <failure> for each check
// that fails the overall verdict. False only when memory ran out; `out` is then empty.
bool write_analyze_junit(const RunResults& results, std::string& out);
// The JUnit file of an analyze run that could not compare its files: one test case with an
// <error> carrying `error_text`. False only when memory ran out; `out` is then empty.
bool write_analyze_error_junit(std::string_view error_text, std::string_view ref_path,
                               std::string_view dut_path, std::string& out);
