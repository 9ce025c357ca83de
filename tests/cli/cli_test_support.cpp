#include "cli_test_support.h"

ProcessOutput run_sonalyx_at(const std::string& exe, const std::vector<std::string>& args) {
    std::vector<std::string> argv{exe};
    argv.insert(argv.end(), args.begin(), args.end());
    return run_process(argv);
}

ProcessOutput run_sonalyx(const std::vector<std::string>& args) {
    return run_sonalyx_at(SONALYX_EXE, args);
}

const std::string& usage_text() {
    static const std::string text = run_sonalyx({"--help"}).out;
    return text;
}
