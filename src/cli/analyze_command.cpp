#include "cli/analyze_pipeline.h"
#include "cli/commands.h"
#include "cli/error_report.h"
#include "cli/report_files.h"

int run_analyze_command(std::span<char* const> args) {
    AnalyzeOptions options;
    if (const auto status = finish_scan(scan_analyze_options(args, options))) return *status;
    RunContext context;
    const ReportRunInputs inputs{
        {{options.ref_path, "--ref input"}, {options.dut_path, "--dut input"}},
        options.config_path,
        options.defaults_path};
    if (!plan_report_files(options.out_path, options.ref_path, options.json, options.junit_path,
                           inputs, context.paths))
        return 1;
    const int status = run_analyze_pipeline(options, context);
    if (status == 1 && context.report_possible && !context.error_text.empty())
        write_error_report(context);
    return status;
}
