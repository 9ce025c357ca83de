#include "cli/report_files.h"

#include <cstdio>

namespace {

bool failed_to_write(ReportFiles& files, const std::string& path, std::string& message) {
    files.failed = path;
    message = "error: failed to write '" + path + "'\n";
    return false;
}

} // namespace

bool plan_report_files(const char* out, const char* input_path, bool want_json,
                       const char* junit_path, ReportRunInputs inputs, OutputPaths& paths) {
    if (!plan_output_paths(out, input_path, want_json, paths)) {
        std::fprintf(stderr, "error: could not resolve output path from --out '%s'\n", out);
        return false;
    }
    std::vector<RunPath> outputs{{paths.html_path, "--out"}};
    if (want_json) outputs.push_back({paths.json_path, "--json"});
    if (junit_path != nullptr) {
        paths.junit_path = junit_path;
        outputs.push_back({paths.junit_path, "--junit"});
    }
    return run_outputs_allowed(outputs, std::move(inputs.files), inputs.config_path,
                               inputs.defaults_cfg_path);
}

bool open_report_files(const OutputPaths& paths, ReportFiles& files, std::string& message) {
    if (!create_output_directory(paths, message)) {
        files.failed = *paths.directory;
        return false;
    }
    files.html = output_set_open(files.set, paths.html_path);
    if (files.html == nullptr) return failed_to_write(files, paths.html_path, message);
    if (!paths.json_path.empty()) {
        files.json = output_set_open(files.set, paths.json_path);
        if (files.json == nullptr) return failed_to_write(files, paths.json_path, message);
    }
    if (paths.junit_path.empty()) return true;
    files.junit = output_set_open(files.set, paths.junit_path);
    if (files.junit == nullptr) return failed_to_write(files, paths.junit_path, message);
    return true;
}

bool commit_report_files(ReportFiles& files, std::string& message) {
    std::string failed;
    return output_set_commit(files.set, failed) || failed_to_write(files, failed, message);
}
