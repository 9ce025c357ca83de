#include "cli/batch_manifest.h"
#include "cli/batch_merge.h"
#include "cli/batch_options.h"
#include "cli/batch_outputs.h"
#include "cli/batch_progress.h"
#include "cli/batch_resume.h"
#include "cli/batch_run.h"
#include "cli/commands.h"
#include "cli/defaults_lookup.h"

#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace {

// The pairs this machine takes in manifest order: those a resumed batch keeps have their rows
// already, the others are to run and their rows go to `run_slots`.
struct Selection {
    std::vector<PairRow> rows;
    std::vector<ManifestPair> to_run;
    std::vector<std::size_t> run_slots;
};

std::vector<std::string> settings_files(const BatchOptions& options) {
    std::vector<std::string> files;
    if (options.analyze.config_path) files.emplace_back(options.analyze.config_path);
    const std::string defaults =
        options.analyze.defaults_path ? options.analyze.defaults_path : found_defaults_file();
    if (!defaults.empty()) files.push_back(defaults);
    return files;
}

bool still_current(const BatchOptions& options, const std::string& out_dir,
                   const ManifestPair& pair) {
    const std::string outputs[] = {pair_page_path(out_dir, pair), pair_json_path(out_dir, pair)};
    std::vector<std::string> sources = settings_files(options);
    sources.push_back(pair.ref);
    sources.push_back(pair.dut);
    return outputs_newer_than(outputs, sources);
}

Selection select_pairs(const BatchOptions& options, const Manifest& manifest,
                       const std::string& out_dir) {
    Selection selection;
    for (std::size_t i = 0; i < manifest.pairs.size(); ++i) {
        const ManifestPair& pair = manifest.pairs[i];
        if (options.shard && !shard_takes(*options.shard, i)) continue;
        PairRow kept;
        if (options.resume && still_current(options, out_dir, pair))
            kept = read_pair_row(out_dir, pair, 0.0);
        if (!kept.ran) {
            selection.run_slots.push_back(selection.rows.size());
            selection.to_run.push_back(pair);
        }
        selection.rows.push_back(std::move(kept));
    }
    return selection;
}

bool make_batch_folder(const std::string& dir) {
    std::error_code error;
    std::filesystem::create_directories(dir, error);
    if (std::filesystem::is_directory(dir, error)) return true;
    std::fprintf(stderr, "error: could not create output directory '%s'\n", dir.c_str());
    return false;
}

std::size_t default_jobs() {
    const long cores = ::sysconf(_SC_NPROCESSORS_ONLN);
    return cores > 0 ? static_cast<std::size_t>(cores) : 1;
}

// The exit status: 1 when a pair could not run at all, 2 with --exit-code when a pair is not PASS.
int batch_status(const std::vector<PairRow>& rows, bool exit_code) {
    bool all_ran = true;
    bool all_pass = true;
    for (const PairRow& row : rows) {
        all_ran = all_ran && row.ran;
        all_pass = all_pass && row.row.verdict == "PASS";
    }
    if (!all_ran) return 1;
    return exit_code && !all_pass ? 2 : 0;
}

// Writes the batch's outputs (or its shard's rows) and prints the summary line.
bool finish_batch(const BatchOptions& options, const Manifest& manifest, const std::string& out_dir,
                  const std::vector<BatchRow>& rows, double seconds) {
    std::string message;
    std::string wrote;
    if (options.shard) {
        wrote = out_dir + "/" + shard_file_name(*options.shard);
        if (!write_shard_rows(wrote, rows, seconds, message)) wrote.clear();
    } else {
        const std::string suite = std::filesystem::path(manifest.name).filename().string();
        if (write_batch_outputs(out_dir, suite, rows, seconds, message))
            wrote = batch_outputs_named(out_dir, options.json);
    }
    if (wrote.empty()) {
        std::fputs(message.c_str(), stderr);
        return false;
    }
    print_batch_written(wrote, rows);
    return true;
}

int run_batch(const BatchOptions& options) {
    Manifest manifest;
    std::string message;
    if (!read_manifest(options.manifest_path, manifest, message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    const std::string out_dir = batch_folder(options.out_dir);
    if (!make_batch_folder(out_dir)) return 1;
    const double start = batch_seconds_now();
    Selection selection = select_pairs(options, manifest, out_dir);
    const BatchPlan plan{out_dir, options.analyze_args,
                         options.jobs ? options.jobs : default_jobs(),
                         !options.quiet && ::isatty(STDERR_FILENO)};
    std::vector<PairRow> run = run_pairs(plan, selection.to_run);
    for (std::size_t i = 0; i < run.size(); ++i)
        selection.rows[selection.run_slots[i]] = std::move(run[i]);
    std::vector<BatchRow> rows;
    for (const PairRow& row : selection.rows)
        rows.push_back(row.row);
    if (!finish_batch(options, manifest, out_dir, rows, batch_seconds_now() - start)) return 1;
    return batch_status(selection.rows, options.exit_code);
}

} // namespace

int run_batch_command(std::span<char* const> args) {
    BatchOptions options;
    if (const auto status = finish_scan(scan_batch_options(args, options))) return *status;
    if (options.merge_dir) return run_batch_merge(options);
    return run_batch(options);
}
