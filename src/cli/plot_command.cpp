#include "cli/commands.h"
#include "cli/defaults_lookup.h"

#include <cstdio>
#include <string>

int run_plot_command(std::span<char* const> args) {
    PlotOptions options;
    if (const auto status = finish_scan(scan_plot_options(args, options))) return *status;

    DefaultsFileSettings defaults;
    std::string message;
    if (!load_run_defaults(options.defaults_path, defaults, message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    return report_not_built("plot");
}
