#include "cli/error_report.h"

#include "audio/file_replacement.h"
#include "cli/output_paths.h"
#include "report/plot_page.h"
#include "results/results_json.h"

#include <cstdio>

void write_error_report(const RunContext& context) {
    const OutputPaths& paths = context.paths;
    std::string ignored;
    if (!create_output_directory(paths, ignored)) return;
    if (!write_error_page(paths.html_path, context.ref_path, context.dut_path,
                          context.error_text.c_str())) {
        std::fprintf(stderr, "warning: could not write the error report '%s'\n",
                     paths.html_path.c_str());
        return;
    }
    std::string json;
    if (context.json &&
        (!build_error_json(context.error_text, context.ref_path, context.dut_path, json) ||
         !write_file_atomically(paths.json_path, json))) {
        std::fprintf(stderr, "warning: could not write the error report '%s'\n",
                     paths.json_path.c_str());
        return;
    }
    std::fprintf(stderr, "wrote an error report to %s (overall: ERROR)\n", paths.html_path.c_str());
}
