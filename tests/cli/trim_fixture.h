// Generated captures for the end-to-end trim tests, and the report texts a run must print for
// them, formatted here from what the library finds in the same file.
#pragma once

#include "align/trim_points.h"
#include "cli_test_support.h"
#include "support/sync_capture.h"
#include "support/temp_dir.h"

#include <cstdint>
#include <string>
#include <vector>

// The sync tone at `rate`.
std::vector<double> sync_tone(std::uint32_t rate);

struct TrimRun {
    TempDir dir;
    std::string input = dir.file("capture.wav");
    std::string out = dir.file("clean.wav");
    std::string report = dir.file("sync.json");

    // Writes the capture as the input file.
    void write(const SyncCaptureLayout& layout, const SyncCapture& capture) const;
    // `sonalyx trim --input <input> --out <out>` and `extra`.
    ProcessOutput run(const std::vector<std::string>& extra = {}) const;
};

// Where the library finds the tones in `path` with the default settings and the given window.
TrimPoints located(const std::string& path, std::size_t window);

// The summary a run without --report prints for `points`.
std::string expected_summary(const std::string& out, const TrimPoints& points);
// The report a run with --report writes for `points`.
std::string expected_report(const std::string& input, const TrimPoints& points);
