#include "cli/batch_jobs.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <map>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::size_t kMaxErrorText = 64 * 1024;

struct RunningJob {
    std::size_t index = 0;
    int error_file = -1; // the capture of the child's standard error, read when it ends
};

// Never returns: sends standard output to /dev/null and standard error to `error_file`, then
// becomes the program.
[[noreturn]] void become_program(const Job& job, int error_file) {
    const int null_out = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (null_out < 0 || ::dup2(null_out, STDOUT_FILENO) < 0 ||
        ::dup2(error_file, STDERR_FILENO) < 0)
        ::_exit(127);
    std::vector<char*> args;
    for (const std::string& arg : job.argv)
        args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    ::execv(args[0], args.data());
    ::_exit(127);
}

std::string read_capture(int file) {
    std::string text;
    char block[4096];
    off_t at = 0;
    while (text.size() < kMaxErrorText) {
        const ssize_t n = ::pread(file, block, sizeof block, at);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        text.append(block, static_cast<std::size_t>(n));
        at += n;
    }
    ::close(file);
    text.resize(std::min(text.size(), kMaxErrorText));
    return text;
}

// Starts one job; false (and nothing running) when no child could be made.
bool start_job(const Job& job, std::size_t index, std::map<pid_t, RunningJob>& running,
               const JobHooks& hooks) {
    const int error_file = ::memfd_create("sonalyx-job-stderr", MFD_CLOEXEC);
    if (error_file < 0) return false;
    const pid_t child = ::fork();
    if (child < 0) {
        ::close(error_file);
        return false;
    }
    if (child == 0) become_program(job, error_file);
    running[child] = {index, error_file};
    if (hooks.started) hooks.started(index, child);
    return true;
}

// Waits for any running child to end and records its outcome.
void reap_one(std::map<pid_t, RunningJob>& running, std::vector<JobOutcome>& outcomes,
              const JobHooks& hooks) {
    int status = 0;
    pid_t child = -1;
    do {
        child = ::waitpid(-1, &status, 0);
    } while (child < 0 && errno == EINTR);
    const auto found = running.find(child);
    if (found == running.end()) {
        if (child < 0) running.clear(); // nothing left to wait for
        return;
    }
    JobOutcome& outcome = outcomes[found->second.index];
    outcome.started = true;
    outcome.exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    outcome.error_text = read_capture(found->second.error_file);
    const std::size_t index = found->second.index;
    running.erase(found);
    if (hooks.finished) hooks.finished(index, outcome);
}

} // namespace

std::vector<JobOutcome> run_jobs(std::span<const Job> jobs, std::size_t limit,
                                 const JobHooks& hooks) {
    std::vector<JobOutcome> outcomes(jobs.size());
    std::map<pid_t, RunningJob> running;
    std::size_t next = 0;
    while (next < jobs.size() || !running.empty()) {
        while (next < jobs.size() && running.size() < std::max<std::size_t>(limit, 1)) {
            if (!start_job(jobs[next], next, running, hooks) && hooks.finished)
                hooks.finished(next, outcomes[next]);
            ++next;
        }
        if (!running.empty()) reap_one(running, outcomes, hooks);
    }
    return outcomes;
}
