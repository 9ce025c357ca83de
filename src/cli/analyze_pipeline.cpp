#include "cli/analyze_pipeline.h"

#include "align/align.h"
#include "audio/audio.h"
#include "cli/analysis_checks.h"
#include "cli/analyze_inputs.h"
#include "cli/comparison_error.h"
#include "cli/output_paths.h"
#include "cli/overall_verdict.h"
#include "cli/report_files.h"
#include "cli/run_stage.h"
#include "report/report.h"
#include "results/results.h"

#include <cstdio>
#include <unistd.h>

namespace {

void status_line(const AnalyzeOptions& options, const char* text) {
    clear_stage_progress();
    if (!options.quiet) std::fprintf(stderr, "%s\n", text);
}

FileFacts file_facts(const char* path, const WavFile& file) {
    return {path,
            file.sample_rate,
            file.channels,
            wav_format_bits(file.format),
            wav_format_is_float(file.format),
            file.frames};
}

// Aligns the pair; a failure is explained in one paragraph and raised as a comparison error.
bool align_inputs(const AnalyzeOptions& options, const AnalyzeSettingsFiles& files,
                  const WavPair& wavs, RunContext& context, AlignmentResult& alignment) {
    AlignmentConfig settings;
    resolve_alignment_config(files.config_file, files.defaults, settings);
    const std::size_t max_lag = alignment_max_search_samples(settings, wavs.ref.sample_rate);
    const std::int64_t tolerance = settings.fine_align_agreement_tolerance_samples.value;
    const double threshold = settings.fine_align_confidence_threshold.value;
    status_line(options, "Aligning...");
    set_run_stage("aligning the files");
    alignment = align_channels(wavs.ref, wavs.dut, max_lag, tolerance, threshold,
                               settings.low_level_signal_threshold_db.value);
    if (alignment.aligned) return true;
    set_run_stage("explaining the failed alignment");
    const ChannelDiagnoses diagnosis =
        diagnose_alignment(wavs.ref, wavs.dut, alignment, max_lag, threshold);
    const std::string explanation = explain_alignment_failure(
        alignment, diagnosis, wavs.ref.sample_rate, max_lag, tolerance, threshold);
    report_comparison_error(context.error_text, "%s", explanation.c_str());
    return false;
}

// The reference frames the aligned DUT leaves uncovered; whether that fails is decided once the
// tolerance setting is resolved.
LengthMismatch measure_length_mismatch(const AlignedPair& pair) {
    LengthMismatch mismatch;
    const std::size_t ref_frames = pair.ref->frames;
    mismatch.shared_frames = pair.overlap.length;
    mismatch.uncovered_samples = static_cast<std::int64_t>(ref_frames - mismatch.shared_frames);
    if (ref_frames > 0)
        mismatch.uncovered_pct = static_cast<double>(mismatch.uncovered_samples) * 100.0 /
                                 static_cast<double>(ref_frames);
    return mismatch;
}

bool resolve_run_settings(const AnalyzeOptions& options, const AnalyzeSettingsFiles& files,
                          RunResults& results) {
    resolve_analysis_config(files.config_file, files.defaults, options.settings,
                            results.sample_rate, results.length_mismatch.shared_frames,
                            results.config);
    std::string message;
    if (!validate_analysis_config(results.config, results.sample_rate, message)) {
        std::fputs(message.c_str(), stderr);
        return false;
    }
    results.configuration = configuration_rows(results.config);
    LengthMismatch& mismatch = results.length_mismatch;
    mismatch.failed =
        mismatch.uncovered_pct > results.config.general.length_mismatch_tolerance_pct.value;
    return true;
}

// Writes the HTML report and the JSON text into the opened files; false with the line naming the
// file that failed.
bool write_report_files(ReportFiles& files, const ReportInputs& inputs, std::string& message) {
    if (!write_analyze_report(*files.html, inputs)) {
        message = "error: failed to write '" + files.html->path + "'\n";
        return false;
    }
    if (files.json != nullptr && !replacement_write_text(*files.json, inputs.json_text)) {
        message = "error: failed to write '" + files.json->path + "'\n";
        return false;
    }
    std::string junit;
    if (files.junit != nullptr && (!write_analyze_junit(inputs.results, junit) ||
                                   !replacement_write_text(*files.junit, junit))) {
        message = "error: failed to write '" + files.junit->path + "'\n";
        return false;
    }
    return commit_report_files(files, message);
}

// Takes the charts' figures from both files, writes the HTML report and, with --json, the JSON
// file as one set, then prints the summary line naming them.
bool write_outputs(const AnalyzeOptions& options, const OutputPaths& paths, RunResults& results,
                   const WavPair& wavs, const std::string& json) {
    set_run_stage("writing the report");
    ReportFiles files;
    std::string message;
    if (!open_report_files(paths, files, message)) {
        std::fputs(message.c_str(), stderr);
        return false;
    }
    status_line(options, "Writing report...");
    build_page_figures(results, wavs.ref, wavs.dut, results.figures);
    if (!write_report_files(files, {results, wavs.ref, wavs.dut, json}, message)) {
        std::fputs(message.c_str(), stderr);
        return false;
    }
    clear_stage_progress();
    const std::string summary = overall_summary_line(results.overall);
    std::string written = paths.html_path;
    for (const std::string* also : {&paths.json_path, &paths.junit_path}) {
        if (!also->empty()) written += " + " + *also;
    }
    std::printf("wrote %s (%s)\n", written.c_str(), summary.c_str());
    return true;
}

} // namespace

int run_analyze_pipeline(const AnalyzeOptions& options, RunContext& context) {
    AnalyzeSettingsFiles files;
    if (!load_analyze_settings(options, files)) return 1;
    if (!options.quiet && ::isatty(STDERR_FILENO)) show_stage_progress();
    context.report_possible = true;
    context.ref_path = options.ref_path;
    context.dut_path = options.dut_path;
    context.out_path = options.out_path;
    context.json = options.json;
    context.tester = tester_info_from(files.defaults);

    WavPair wavs;
    if (!read_analyze_inputs(options, context, wavs) || !check_input_formats(wavs, context))
        return 1;
    RunResults results;
    results.ref = file_facts(options.ref_path, wavs.ref);
    results.dut = file_facts(options.dut_path, wavs.dut);
    results.sample_rate = wavs.ref.sample_rate;
    results.tester = context.tester;
    if (!align_inputs(options, files, wavs, context, results.alignment)) return 1;
    const AlignedPair pair = aligned_pair(wavs.ref, wavs.dut, results.alignment.file_offset);
    results.length_mismatch = measure_length_mismatch(pair);
    if (!resolve_run_settings(options, files, results)) return 1;

    status_line(options, "Analyzing...");
    run_analysis_checks(pair, results);
    results.overall = compute_overall_verdict(gating_inputs(results));
    set_run_stage("building the results JSON");
    std::string json;
    std::string refused_key;
    if (!build_results_json(results, json, &refused_key)) {
        if (refused_key.empty())
            std::fputs("error: out of memory building the results JSON\n", stderr);
        else
            std::fprintf(stderr, "error: internal -- measurement '%s' is not a finite number\n",
                         refused_key.c_str());
        return 1;
    }
    if (!write_outputs(options, context.paths, results, wavs, json)) return 1;
    return !results.overall.passed && options.exit_code ? 2 : 0;
}
