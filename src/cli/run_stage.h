// What the run is doing now: named by the line that stops it when memory runs out, and shown with
// the percent done on a terminal. The stage is kept in a fixed buffer so that naming it, showing
// it and stopping never need memory themselves.
#pragma once

#include <cstddef>

// Sets the stage, printf-style ("reading --ref '%s'", "aligning the files"); a text too long for
// the buffer is cut. Erases the progress line of the stage before.
void set_run_stage(const char* format, ...) __attribute__((format(printf, 1, 2)));
const char* run_stage();

// Prints "error: out of memory while <stage>: could not allocate <bytes> bytes" and ends the
// process with status 1 at once. Outputs are only ever put in place complete, so none is left.
[[noreturn]] void stop_out_of_memory(std::size_t bytes);

// Shows the stage's progress on standard error from now on: "  <stage> <percent>%" on one line,
// rewritten in place as the long loops report (audio/progress.h) and erased when the stage ends.
// For a terminal only; without it nothing but the usual lines is ever printed.
void show_stage_progress();

// Erases the progress line, if one is shown (before any other line is printed).
void clear_stage_progress();

// Ends the last stage. With SONALYX_STAGE_TIMES set in the environment, every stage prints
// "stage-time <seconds> <peak resident KiB so far> <stage>" to standard error as it ends, for
// the whole-run benchmark.
void finish_run_stages();
