#include "cli/dispatch.h"

#include "cli/commands.h"
#include "cli/usage.h"

#include <cstdio>
#include <span>
#include <string_view>

int sonalyx_main(int argc, char** argv) {
    const std::span<char* const> args(argv, argc > 0 ? static_cast<std::size_t>(argc) : 0);
    if (args.size() < 2) {
        print_usage(stderr);
        return 1;
    }
    const std::string_view command = args[1];
    if (command == "--help" || command == "-h") {
        print_usage(stdout);
        return 0;
    }
    if (command == "--version") {
        std::printf("sonalyx v%s\n", kSonalyxVersion);
        return 0;
    }
    if (command == "analyze") return run_analyze_command(args);
    if (command == "trim") return run_trim_command(args);
    if (command == "plot") return run_plot_command(args);
    if (command == "batch") return run_batch_command(args);
    std::fprintf(
        stderr,
        "error: unknown subcommand '%s' (expected 'analyze', 'trim', 'plot', or 'batch')\n\n",
        args[1]);
    print_usage(stderr);
    return 1;
}
