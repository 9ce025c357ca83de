// Running programs as child processes, at most a given number at a time. Each child's standard
// output is discarded and its standard error captured whole, so that children running side by
// side never mix their lines and a child's own error text can be reported with its job. A child
// that crashes, runs out of memory or is killed ends only itself.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

struct Job {
    std::vector<std::string> argv; // argv[0] is the program's path
};

struct JobOutcome {
    bool started = false;   // false when the child could not be made
    int exit_status = -1;   // the status the child exited with; -1 when a signal ended it
    int signal = 0;         // the signal that ended the child, 0 when it exited
    std::string error_text; // what the child wrote to standard error (at most 64 KiB)
};

// Called in the parent for each job as it ends, in the order the jobs end.
using JobFinished = std::function<void(std::size_t index, const JobOutcome& outcome)>;
// Called in the parent with each child's process id once it is started.
using JobStarted = std::function<void(std::size_t index, int pid)>;

struct JobHooks {
    JobStarted started;   // may be empty
    JobFinished finished; // may be empty
};

// Runs every job, at most `limit` (at least 1) at a time, and returns each one's outcome in the
// order of `jobs`.
std::vector<JobOutcome> run_jobs(std::span<const Job> jobs, std::size_t limit,
                                 const JobHooks& hooks = {});
