#include "align/align.h"
#include "audio/audio.h"
#include "cli/commands.h"
#include "cli/defaults_lookup.h"
#include "cli/input_checks.h"
#include "cli/output_guard.h"
#include "cli/run_stage.h"
#include "config/config.h"
#include "results/results.h"

#include <cstdio>
#include <span>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

// The search window from the defaults file, with the note when half the file caps it.
std::size_t trim_window(const AlignmentConfig& config, const WavFile& file) {
    const double seconds = config.sync_search_window_sec.value;
    const SyncSearchWindow window = sync_search_window(seconds, file.sample_rate, file.frames);
    if (window.capped) {
        std::fprintf(stderr,
                     "note: sync_search_window_sec=%.1fs (%zu samples) exceeds half this file's "
                     "length -- capped to %.2fs (%zu samples) so the leading/trailing searches "
                     "can't overlap (see the technical guide's alignment section)\n",
                     seconds, window.requested,
                     static_cast<double>(window.frames) / file.sample_rate, window.frames);
    }
    return window.frames;
}

// The clean signal is one contiguous stretch of the interleaved samples, so it is written
// straight from the decoded file: the output is the same as from a copy, without a second
// buffer the size of the programme.
bool write_clean_signal(FileReplacement& out, const WavFile& file, const TrimPoints& points) {
    const std::size_t frames = points.trim_point - points.sync_point;
    const std::span<const double> clean(file.samples.data() + points.sync_point * file.channels,
                                        frames * file.channels);
    return wav_write_into(out, file.sample_rate, file.channels, file.format, clean, frames);
}

// Opens the clean-signal file and the report file before writing either, then writes both;
// false with `failed` naming the file that could not be opened or written.
bool write_trim_files(OutputSet& set, const TrimOptions& options, const WavFile& file,
                      const TrimPoints& points, std::string& failed) {
    failed = options.out_path;
    FileReplacement* wav = output_set_open(set, options.out_path);
    if (wav == nullptr) return false;
    FileReplacement* report = nullptr;
    if (options.report_path != nullptr) {
        failed = options.report_path;
        report = output_set_open(set, options.report_path);
        if (report == nullptr) return false;
    }
    failed = options.out_path;
    if (!write_clean_signal(*wav, file, points)) return false;
    if (report == nullptr) return true;
    failed = options.report_path;
    std::string json;
    return build_trim_report_json(options.input_path, points, json) &&
           replacement_write_text(*report, json);
}

// The clean signal and, with --report, the JSON report are one set: both are put in place or
// neither is. Prints the line naming the file that failed.
bool write_trim_outputs(const TrimOptions& options, const WavFile& file, const TrimPoints& points) {
    OutputSet set;
    std::string failed;
    if (write_trim_files(set, options, file, points, failed) && output_set_commit(set, failed))
        return true;
    std::fprintf(stderr, "error: failed to write '%s'\n", failed.c_str());
    return false;
}

void print_occurrence(const char* which, const SyncDetection& found) {
    std::printf("  %s: channel %d, sample %zu, PSR %.2f, similarity %.3f", which, found.channel,
                static_cast<std::size_t>(found.position), found.psr, found.similarity);
    if (found.rep_count > 0) {
        std::printf(" (reps:");
        for (int r = 0; r < found.rep_count && r < kSyncChirpCount; ++r) {
            std::printf(" %.2f", found.rep_psr[r]);
        }
        std::printf(")");
    }
    std::printf("\n");
}

void print_summary(const TrimOptions& options, const TrimPoints& points) {
    const std::size_t frames = points.trim_point - points.sync_point;
    if (options.report_path != nullptr) {
        std::printf("wrote %s (%zu clean-signal frames) + %s\n", options.out_path, frames,
                    options.report_path);
        return;
    }
    std::printf("wrote %s (%zu clean-signal frames)\n", options.out_path, frames);
    print_occurrence("leading", points.leading);
    print_occurrence("trailing", points.trailing);
}

} // namespace

int run_trim_command(std::span<char* const> args) {
    TrimOptions options;
    if (const auto status = finish_scan(scan_trim_options(args, options))) return *status;
    std::vector<RunPath> outputs{{options.out_path, "--out"}};
    if (options.report_path) outputs.push_back({options.report_path, "--report"});
    if (!run_outputs_allowed(outputs, {{options.input_path, "--input file"}}, nullptr,
                             options.defaults_path))
        return 1;

    SettingsFile defaults;
    std::string message;
    if (!load_run_defaults(options.defaults_path, defaults, message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    if (::isatty(STDERR_FILENO)) show_stage_progress();
    AlignmentConfig config;
    resolve_alignment_config({}, defaults, config);
    WavFile file;
    if (!read_tool_input(options.input_path, file)) return 1;

    const std::size_t window = trim_window(config, file);
    set_run_stage("searching for the sync tones");
    TrimPoints points;
    if (!locate_trim_points(file, window, config.sync_psr_threshold.value, points, message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    set_run_stage("writing the clean signal");
    if (!write_trim_outputs(options, file, points)) return 1;
    clear_stage_progress();
    print_summary(options, points);
    return 0;
}
