#include "align/trim_points.h"
#include "audio/file_replacement.h"
#include "audio/wav_writer.h"
#include "cli/commands.h"
#include "cli/defaults_lookup.h"
#include "cli/input_checks.h"
#include "cli/output_guard.h"
#include "config/alignment_config.h"
#include "results/trim_report.h"

#include <cstdio>
#include <span>
#include <string>
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
bool write_clean_signal(const char* path, const WavFile& file, const TrimPoints& points) {
    const std::size_t frames = points.trim_point - points.sync_point;
    const std::span<const double> clean(file.samples.data() + points.sync_point * file.channels,
                                        frames * file.channels);
    return wav_write(path, file.sample_rate, file.channels, file.format, clean, frames);
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

int report_trim(const TrimOptions& options, const TrimPoints& points) {
    const std::size_t frames = points.trim_point - points.sync_point;
    if (options.report_path == nullptr) {
        std::printf("wrote %s (%zu clean-signal frames)\n", options.out_path, frames);
        print_occurrence("leading", points.leading);
        print_occurrence("trailing", points.trailing);
        return 0;
    }
    std::string json;
    if (!build_trim_report_json(options.input_path, points, json) ||
        !write_file_atomically(options.report_path, json)) {
        std::fprintf(stderr, "error: failed to write '%s'\n", options.report_path);
        return 1;
    }
    std::printf("wrote %s (%zu clean-signal frames) + %s\n", options.out_path, frames,
                options.report_path);
    return 0;
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

    DefaultsFileSettings defaults;
    std::string message;
    if (!load_run_defaults(options.defaults_path, defaults, message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    AlignmentConfig config;
    resolve_alignment_config({}, defaults, config);
    WavFile file;
    if (!read_tool_input(options.input_path, file)) return 1;

    const std::size_t window = trim_window(config, file);
    TrimPoints points;
    if (!locate_trim_points(file, window, config.sync_psr_threshold.value, points, message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    if (!write_clean_signal(options.out_path, file, points)) {
        std::fprintf(stderr, "error: failed to write '%s'\n", options.out_path);
        return 1;
    }
    return report_trim(options, points);
}
