// The program's entry: looks at the first argument and dispatches to help, the version banner or
// one of the subcommands analyze, trim and plot.
#pragma once

// Takes the argument vector and returns the process exit status (0 success, 1 error).
int sonalyx_main(int argc, char** argv);
