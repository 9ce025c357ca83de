#include "cli_test_support.h"

#include "support/temp_dir.h"

// Every run starts in a scratch directory of its own, so relative output paths in a test never
// land in the build tree.
ProcessOutput run_sonalyx_at(const std::string& exe, const std::vector<std::string>& args) {
    std::vector<std::string> argv{exe};
    argv.insert(argv.end(), args.begin(), args.end());
    const TempDir working_dir;
    return run_process(argv, working_dir.path());
}

ProcessOutput run_sonalyx_in(const std::string& working_dir, const std::vector<std::string>& args,
                             const ProcessLimits& limits) {
    std::vector<std::string> argv{SONALYX_EXE};
    argv.insert(argv.end(), args.begin(), args.end());
    return run_process(argv, working_dir, limits);
}

ProcessOutput run_sonalyx(const std::vector<std::string>& args) {
    return run_sonalyx_at(SONALYX_EXE, args);
}

const std::string& usage_text() {
    static const std::string text = run_sonalyx({"--help"}).out;
    return text;
}
