// How far a long loop has come, for the program to show on a terminal. A loop reports the
// fraction of its work done now and then; with no listener installed (the library tests, a run
// whose standard error is no terminal) a report does nothing.
#pragma once

using ProgressListener = void (*)(double fraction);

// Installs `listener` (null for none) and returns the one it replaces.
ProgressListener set_progress_listener(ProgressListener listener);

// Tells the listener that `fraction` (0 to 1) of the current stage's work is done.
void report_progress(double fraction);
