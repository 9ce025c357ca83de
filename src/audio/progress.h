// How far a long loop has come, for the program to show on a terminal. A loop reports the
// fraction of its work done now and then; with no listener installed (the library tests, a run
// whose standard error is no terminal) a report does nothing.
#pragma once

#include <cstddef>

using ProgressListener = void (*)(double fraction);

// Installs `listener` (null for none) and returns the one it replaces.
ProgressListener set_progress_listener(ProgressListener listener);

// Tells the listener that `fraction` (0 to 1) of the current work is done: of the stage, or of the
// part of it that a ProgressPart names.
void report_progress(double fraction);

// While it lives, the reports of one part of a stage's work are mapped onto [from, to] of the
// enclosing work (parts may nest): the two channels of a check report 0 to 1 each, and the stage
// shows 0 to 50 % for the first and 50 to 100 % for the second.
class ProgressPart {
  public:
    ProgressPart(double from, double to);
    // Part `index` of `count` equal parts (count > 0): a channel of a check, for example.
    ProgressPart(std::size_t index, std::size_t count);
    ~ProgressPart();
    ProgressPart(const ProgressPart&) = delete;
    ProgressPart& operator=(const ProgressPart&) = delete;

  private:
    double saved_from_;
    double saved_scale_;
};
