// A folder of short generated pairs and a manifest for the batch tests, and the rows a batch
// wrote, read back.
#pragma once

#include "results/results.h"
#include "support/run_process.h"
#include "support/temp_dir.h"

#include <string>
#include <vector>

// In its folder: pass.wav and ref.wav (a 1 s noise and the same 3 frames late), short.wav (half
// of it: a length mismatch FAIL) and other.wav (unrelated noise: the alignment fails).
struct BatchFolder {
    TempDir dir;
    BatchFolder();
    // Writes `text` as the manifest `name` in the folder and returns its path.
    std::string manifest(const std::string& text, const std::string& name = "pairs.tsv") const;
    // Runs `sonalyx batch` in the folder.
    ProcessOutput batch(const std::vector<std::string>& args) const;
};

// The manifest lines of the four kinds of pair: PASS, FAIL, not comparable, DUT missing.
extern const char* const kFourPairs;

// The rows of a summary or shard JSON file; fails the test when it cannot be read.
std::vector<BatchRow> read_rows(const std::string& path);

// Sets a file's access and modification times to `seconds` after the epoch; fails the test when
// it cannot.
void set_time(const std::string& path, long seconds);

// The rows without their times, one line each, for comparing two runs row for row.
std::string rows_without_times(const std::vector<BatchRow>& rows);
