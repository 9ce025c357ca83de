#include "cli/commands.h"
#include "cli/defaults_lookup.h"

#include <cstdio>
#include <string>

int run_analyze_command(std::span<char* const> args) {
    AnalyzeOptions options;
    if (const auto status = finish_scan(scan_analyze_options(args, options))) return *status;

    AnalysisSettings config_file;
    if (options.config_path && !load_override_file(options.config_path, config_file)) {
        std::fprintf(stderr, "error: failed to read or parse --config '%s'\n", options.config_path);
        return 1;
    }
    DefaultsFileSettings defaults;
    std::string message;
    if (!load_run_defaults(options.defaults_path, defaults, message) ||
        !apply_default_profile(config_file, "--config", message) ||
        !apply_default_profile(defaults.analysis, "sonalyx-defaults.cfg", message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    return report_not_built("analyze");
}
