#include "cli/analyze_inputs.h"
#include "cli/commands.h"
#include "cli/defaults_lookup.h"
#include "cli/input_checks.h"
#include "cli/output_paths.h"
#include "cli/report_files.h"
#include "cli/run_stage.h"
#include "report/report.h"

#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

// Writes the page and, with --json, its JSON file as one set.
bool write_plot_outputs(const PlotOptions& options, const OutputPaths& paths,
                        const PlotData& plot) {
    ReportFiles files;
    std::string message;
    if (open_report_files(paths, files, message)) {
        if (!write_plot_page(*files.html, plot)) {
            message = "error: failed to write '" + paths.html_path + "'\n";
        } else if (files.json != nullptr &&
                   !write_plot_json(*files.json, options.input_path, *plot.file)) {
            message = "error: failed to write '" + paths.json_path + "'\n";
        } else if (commit_report_files(files, message)) {
            clear_stage_progress();
            if (options.json)
                std::printf("wrote %s + %s\n", paths.html_path.c_str(), paths.json_path.c_str());
            else
                std::printf("wrote %s\n", paths.html_path.c_str());
            return true;
        }
    }
    std::fputs(message.c_str(), stderr);
    return false;
}

} // namespace

int run_plot_command(std::span<char* const> args) {
    PlotOptions options;
    if (const auto status = finish_scan(scan_plot_options(args, options))) return *status;
    OutputPaths paths;
    if (!plan_report_files(options.out_path, options.input_path, options.json, nullptr,
                           {{{options.input_path, "--input file"}}, nullptr, options.defaults_path},
                           paths))
        return 1;
    SettingsFile defaults;
    std::string message;
    if (!load_run_defaults(options.defaults_path, defaults, message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    WavFile file;
    if (::isatty(STDERR_FILENO)) show_stage_progress();
    if (!read_tool_input(options.input_path, file)) return 1;
    set_run_stage("drawing the plot page");
    PlotData plot;
    plot.input_path = options.input_path;
    plot.file = &file;
    // The defaults file's spectral settings, else their defaults for this file as the spectral
    // check would pick them.
    const ResolvedTable settings =
        resolve_from_files({}, defaults, {file.sample_rate, file.frames});
    plot.fft_size = static_cast<std::size_t>(
        resolved_setting(settings, SettingId::spectral_fft_size).value.integer);
    if (!fft_size_supported(plot.fft_size)) {
        std::fprintf(stderr,
                     "error: spectral_fidelity.fft_size %zu not supported -- must be one of 1024, "
                     "2048, 4096, 8192, 16384, 32768\n",
                     plot.fft_size);
        return 1;
    }
    plot.noise_floor_db =
        resolved_setting(settings, SettingId::spectral_noise_floor_db).value.number;
    const TesterInfo tester = tester_info_from(defaults);
    plot.tester = &tester;
    build_plot_figures(file, plot.fft_size, plot.figures);
    return write_plot_outputs(options, paths, plot) ? 0 : 1;
}
