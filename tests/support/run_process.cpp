#include "support/run_process.h"

#include "support/temp_dir.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The child: redirect both streams into files, change directory, exec. Never returns.
[[noreturn]] void exec_child(const std::vector<std::string>& argv, const std::string& working_dir,
                             const std::string& out_path, const std::string& err_path) {
    const int out = ::open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int err = ::open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (out < 0 || err < 0 || ::dup2(out, 1) < 0 || ::dup2(err, 2) < 0) ::_exit(127);
    if (!working_dir.empty() && ::chdir(working_dir.c_str()) != 0) ::_exit(127);
    std::vector<char*> args;
    for (const std::string& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    ::execv(args[0], args.data());
    ::_exit(127);
}

} // namespace

ProcessOutput run_process(const std::vector<std::string>& argv, const std::string& working_dir) {
    ProcessOutput result;
    if (argv.empty()) return result;
    const TempDir capture;
    const std::string out_path = capture.file("stdout");
    const std::string err_path = capture.file("stderr");
    const pid_t child = ::fork();
    if (child < 0) return result;
    if (child == 0) exec_child(argv, working_dir, out_path, err_path);
    int status = 0;
    if (::waitpid(child, &status, 0) == child && WIFEXITED(status))
        result.exit_status = WEXITSTATUS(status);
    result.out = read_text_file(out_path);
    result.err = read_text_file(err_path);
    return result;
}
