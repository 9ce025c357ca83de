#include "cli/error_report.h"

#include "cli/report_files.h"
#include "report/report.h"
#include "results/results.h"

#include <cstdio>

namespace {

bool write_error_files(const RunContext& context, ReportFiles& files) {
    if (!write_error_page(*files.html, context.ref_path, context.dut_path,
                          context.error_text.c_str())) {
        files.failed = context.paths.html_path;
        return false;
    }
    std::string json;
    if (files.json != nullptr &&
        (!build_error_json(context.error_text, context.ref_path, context.dut_path, json) ||
         !replacement_write_text(*files.json, json))) {
        files.failed = context.paths.json_path;
        return false;
    }
    std::string junit;
    if (files.junit != nullptr && (!write_analyze_error_junit(context.error_text, context.ref_path,
                                                              context.dut_path, junit) ||
                                   !replacement_write_text(*files.junit, junit))) {
        files.failed = context.paths.junit_path;
        return false;
    }
    std::string ignored;
    return commit_report_files(files, ignored);
}

} // namespace

void write_error_report(const RunContext& context) {
    ReportFiles files;
    std::string ignored;
    if (open_report_files(context.paths, files, ignored) && write_error_files(context, files)) {
        std::fprintf(stderr, "wrote an error report to %s (overall: ERROR)\n",
                     context.paths.html_path.c_str());
        return;
    }
    // The page and its JSON are one set: either both were written or neither was.
    std::fprintf(stderr, "warning: could not write the error report '%s'%s\n", files.failed.c_str(),
                 files.json != nullptr || context.json
                     ? " (neither the page nor its JSON was written)"
                     : "");
}
