// The one line a batch shows on a terminal while its pairs run: "  <done> / <total> pairs done,
// ETA <m>:<ss>", rewritten in place as pairs end and erased before the summary line.
#pragma once

#include <cstddef>

struct BatchProgress {
    bool wanted = false;   // standard error is a terminal and the run is not quiet
    bool shown = false;    // a line stands on the terminal
    double started = 0.0;  // steady-clock seconds when the pairs began
    std::size_t total = 0; // pairs to run
};

// Starts the clock and, when `wanted`, shows the line.
BatchProgress start_batch_progress(std::size_t total, bool wanted);

// Shows `done` pairs of the total and the time left at the pace so far.
void show_batch_progress(BatchProgress& progress, std::size_t done);

// Erases the line, if one is shown.
void clear_batch_progress(BatchProgress& progress);

// Steady-clock seconds, for timing the pairs.
double batch_seconds_now();
