#include "cli/analyze_pipeline.h"
#include "cli/commands.h"
#include "cli/error_report.h"
#include "cli/output_guard.h"

#include <cstdio>
#include <vector>

namespace {

// Plans where the report (or the ERROR report) goes and refuses a run that would write over one
// of its inputs, before any work; the reason is printed.
bool plan_analyze_outputs(const AnalyzeOptions& options, OutputPaths& paths) {
    if (!plan_output_paths(options.out_path, options.ref_path, options.json, paths)) {
        std::fprintf(stderr, "error: could not resolve output path from --out '%s'\n",
                     options.out_path);
        return false;
    }
    std::vector<RunPath> outputs{{paths.html_path, "--out"}};
    if (options.json) outputs.push_back({paths.json_path, "--json"});
    return run_outputs_allowed(
        outputs, {{options.ref_path, "--ref input"}, {options.dut_path, "--dut input"}},
        options.config_path, options.defaults_path);
}

} // namespace

int run_analyze_command(std::span<char* const> args) {
    AnalyzeOptions options;
    if (const auto status = finish_scan(scan_analyze_options(args, options))) return *status;
    RunContext context;
    if (!plan_analyze_outputs(options, context.paths)) return 1;
    const int status = run_analyze_pipeline(options, context);
    if (status == 1 && context.report_possible && !context.error_text.empty())
        write_error_report(context);
    return status;
}
