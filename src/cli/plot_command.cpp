#include "cli/analyze_inputs.h"
#include "cli/commands.h"
#include "cli/defaults_lookup.h"
#include "cli/input_checks.h"
#include "cli/output_guard.h"
#include "cli/output_paths.h"
#include "report/plot_page.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

// The defaults file's fft_size, else the size the spectral check would pick for this file.
std::size_t plot_fft_size(const DefaultsFileSettings& defaults, const WavFile& file) {
    const auto& configured = defaults.analysis.spectral_fidelity.fft_size;
    if (configured) return static_cast<std::size_t>(*configured);
    return default_fft_size(file.sample_rate, file.frames);
}

// Reads the input and checks its format; every problem is printed as it is found.
bool read_plot_input(const PlotOptions& options, WavFile& file) {
    if (!read_tool_input(options.input_path, file)) return false;
    std::string error_text;
    const bool rate = rate_supported(file, "--input", error_text);
    return channels_supported(file, "--input", error_text) && rate; // both are told at once
}

// Plans the page and JSON paths and refuses a run that would write over its input, before any
// work; the reason is printed.
bool plan_plot_outputs(const PlotOptions& options, OutputPaths& paths) {
    if (!plan_output_paths(options.out_path, options.input_path, options.json, paths)) {
        std::fprintf(stderr, "error: could not resolve output path from --out '%s'\n",
                     options.out_path);
        return false;
    }
    std::vector<RunPath> outputs{{paths.html_path, "--out"}};
    if (options.json) outputs.push_back({paths.json_path, "--json"});
    return run_outputs_allowed(outputs, {{options.input_path, "--input file"}}, nullptr,
                               options.defaults_path);
}

bool write_plot_outputs(const PlotOptions& options, const OutputPaths& paths,
                        const PlotData& plot) {
    std::string message;
    if (!create_output_directory(paths, message)) {
        std::fputs(message.c_str(), stderr);
        std::fprintf(stderr, "error: could not resolve output path from --out '%s'\n",
                     options.out_path);
        return false;
    }
    if (!write_plot_page(paths.html_path, plot)) {
        std::fprintf(stderr, "error: failed to write '%s'\n", paths.html_path.c_str());
        return false;
    }
    if (!options.json) {
        std::printf("wrote %s\n", paths.html_path.c_str());
        return true;
    }
    if (!write_plot_json(paths.json_path, options.input_path, *plot.file)) {
        std::fprintf(stderr, "error: failed to write '%s'\n", paths.json_path.c_str());
        return false;
    }
    std::printf("wrote %s + %s\n", paths.html_path.c_str(), paths.json_path.c_str());
    return true;
}

} // namespace

int run_plot_command(std::span<char* const> args) {
    PlotOptions options;
    if (const auto status = finish_scan(scan_plot_options(args, options))) return *status;
    OutputPaths paths;
    if (!plan_plot_outputs(options, paths)) return 1;
    DefaultsFileSettings defaults;
    std::string message;
    if (!load_run_defaults(options.defaults_path, defaults, message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    WavFile file;
    if (!read_plot_input(options, file)) return 1;
    PlotData plot;
    plot.input_path = options.input_path;
    plot.file = &file;
    plot.fft_size = plot_fft_size(defaults, file);
    if (!fft_size_supported(plot.fft_size)) {
        std::fprintf(stderr,
                     "error: spectral_fidelity.fft_size %zu not supported -- must be one of 1024, "
                     "2048, 4096, 8192, 16384, 32768\n",
                     plot.fft_size);
        return 1;
    }
    plot.noise_floor_db = defaults.analysis.spectral_fidelity.noise_floor_db.value_or(-100.0);
    const TesterInfo tester = tester_info_from(defaults.general);
    plot.tester = &tester;
    return write_plot_outputs(options, paths, plot) ? 0 : 1;
}
