// Runs a program to completion with its standard output and standard error captured, for tests
// that drive the built executable.
#pragma once

#include <string>
#include <vector>

struct ProcessOutput {
    int exit_status = -1; // -1 when the program could not be started or did not exit normally
    std::string out;      // everything written to standard output
    std::string err;      // everything written to standard error
};

// argv[0] is the program path; the child runs in `working_dir` when it is not empty.
ProcessOutput run_process(const std::vector<std::string>& argv,
                          const std::string& working_dir = {});
