// Runs a program to completion with its standard output and standard error captured, for tests
// that drive the built executable.
#pragma once

#include <optional>
#include <string>
#include <vector>

// Limits set in the child before it starts; unset means inherited.
struct ProcessLimits {
    // Bytes: the largest file the child may write (RLIMIT_FSIZE). A write past it fails, as on a
    // full disk, instead of killing the child.
    std::optional<unsigned long> file_size;
    // Bytes: the child's address space (RLIMIT_AS).
    std::optional<unsigned long> address_space;
    // Wall-clock seconds before SIGALRM ends the child, so that a test of something that must not
    // hang fails instead of waiting.
    std::optional<unsigned> seconds;
};

struct ProcessOutput {
    int exit_status = -1; // -1 when the program could not be started or did not exit normally
    std::string out;      // everything written to standard output
    std::string err;      // everything written to standard error
};

// argv[0] is the program path; the child runs in `working_dir` when it is not empty.
ProcessOutput run_process(const std::vector<std::string>& argv, const std::string& working_dir = {},
                          const ProcessLimits& limits = {});

// As run_process, with standard output and standard error both on one new pseudo-terminal, as
// when a person runs the program: everything the terminal received, in order, lands in `out`.
ProcessOutput run_process_on_terminal(const std::vector<std::string>& argv,
                                      const std::string& working_dir = {});
