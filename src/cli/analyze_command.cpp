#include "cli/analyze_pipeline.h"
#include "cli/commands.h"
#include "cli/error_report.h"

int run_analyze_command(std::span<char* const> args) {
    AnalyzeOptions options;
    if (const auto status = finish_scan(scan_analyze_options(args, options))) return *status;
    RunContext context;
    const int status = run_analyze_pipeline(options, context);
    if (status == 1 && context.report_possible && !context.error_text.empty())
        write_error_report(context);
    return status;
}
