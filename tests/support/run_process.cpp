#include "support/run_process.h"

#include "support/temp_dir.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool set_limit(int resource, const std::optional<unsigned long>& bytes) {
    if (!bytes) return true;
    const rlimit limit{*bytes, *bytes};
    return ::setrlimit(resource, &limit) == 0;
}

// An ignored SIGXFSZ survives exec: a write past the file size limit then fails with EFBIG, as a
// full disk would make it fail, instead of killing the program. (The capture files count against
// the limit too; what a program prints stays far below any limit a test sets.)
bool apply_limits(const ProcessLimits& limits) {
    if (limits.file_size && std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR) return false;
    if (limits.seconds) ::alarm(*limits.seconds); // a pending alarm survives exec
    return set_limit(RLIMIT_FSIZE, limits.file_size) && set_limit(RLIMIT_AS, limits.address_space);
}

[[noreturn]] void exec_program(const std::vector<std::string>& argv) {
    std::vector<char*> args;
    for (const std::string& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    ::execv(args[0], args.data());
    ::_exit(127);
}

// Everything the terminal's other side receives until the child closes it.
std::string drain_terminal(int terminal) {
    std::string received;
    char block[4096];
    for (;;) {
        const ssize_t n = ::read(terminal, block, sizeof block);
        if (n > 0) {
            received.append(block, static_cast<std::size_t>(n));
        } else if (n < 0 && errno == EINTR) {
            continue;
        } else {
            return received; // EIO once the child's side is closed
        }
    }
}

// The child: redirect both streams into files, change directory, set the limits, exec. Never
// returns.
[[noreturn]] void exec_child(const std::vector<std::string>& argv, const std::string& working_dir,
                             const ProcessLimits& limits, const std::string& out_path,
                             const std::string& err_path) {
    const int out = ::open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int err = ::open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (out < 0 || err < 0 || ::dup2(out, 1) < 0 || ::dup2(err, 2) < 0) ::_exit(127);
    if (!working_dir.empty() && ::chdir(working_dir.c_str()) != 0) ::_exit(127);
    if (!apply_limits(limits)) ::_exit(127);
    exec_program(argv);
}

} // namespace

ProcessOutput run_process(const std::vector<std::string>& argv, const std::string& working_dir,
                          const ProcessLimits& limits) {
    ProcessOutput result;
    if (argv.empty()) return result;
    const TempDir capture;
    const std::string out_path = capture.file("stdout");
    const std::string err_path = capture.file("stderr");
    const pid_t child = ::fork();
    if (child < 0) return result;
    if (child == 0) exec_child(argv, working_dir, limits, out_path, err_path);
    int status = 0;
    if (::waitpid(child, &status, 0) == child && WIFEXITED(status))
        result.exit_status = WEXITSTATUS(status);
    result.out = read_text_file(out_path);
    result.err = read_text_file(err_path);
    return result;
}

ProcessOutput run_process_on_terminal(const std::vector<std::string>& argv,
                                      const std::string& working_dir) {
    ProcessOutput result;
    if (argv.empty()) return result;
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child < 0) return result;
    if (child == 0) {
        if (!working_dir.empty() && ::chdir(working_dir.c_str()) != 0) ::_exit(127);
        exec_program(argv);
    }
    result.out = drain_terminal(terminal);
    ::close(terminal);
    int status = 0;
    if (::waitpid(child, &status, 0) == child && WIFEXITED(status))
        result.exit_status = WEXITSTATUS(status);
    return result;
}
