#include "cli/batch_run.h"

#include "cli/batch_jobs.h"
#include "cli/batch_progress.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace {

std::string read_whole_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

PairRow error_row(const ManifestPair& pair, const std::string& report, std::string error,
                  double seconds) {
    PairRow out;
    out.row.id = pair.id;
    out.row.ref_path = pair.ref;
    out.row.dut_path = pair.dut;
    out.row.verdict = "ERROR";
    out.row.error = std::move(error);
    out.row.seconds = seconds;
    out.row.report = report;
    return out;
}

// The lines a failed child printed, without their "error: " heads, joined by "; ".
std::string joined_error_lines(const std::string& text) {
    std::string joined;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        std::string line = text.substr(at, end - at);
        at = end + 1;
        if (line.rfind("error: ", 0) == 0) line.erase(0, 7);
        if (line.empty()) continue;
        joined += (joined.empty() ? "" : "; ") + line;
    }
    return joined;
}

// Why a child left no results of its own.
std::string failure_text(const JobOutcome& outcome) {
    if (!outcome.started) return "analysis process could not be started";
    if (outcome.signal != 0)
        return "analysis process ended by signal " + std::to_string(outcome.signal);
    const std::string lines = joined_error_lines(outcome.error_text);
    if (!lines.empty()) return lines;
    return "analysis process exited with status " + std::to_string(outcome.exit_status) +
           " and wrote no results";
}

PairRow outcome_row(const std::string& out_dir, const ManifestPair& pair, const JobOutcome& outcome,
                    double seconds) {
    if (outcome.started && outcome.signal == 0) {
        PairRow read = read_pair_row(out_dir, pair, seconds);
        if (read.ran) return read;
    }
    return error_row(pair, {}, failure_text(outcome), seconds); // no page to link to
}

// The jobs of the pairs; each pair's earlier outputs are removed first, so that a run that writes
// nothing is never mistaken for one that did.
std::vector<Job> pair_jobs(const BatchPlan& plan, const std::vector<ManifestPair>& pairs) {
    std::vector<Job> jobs;
    for (const ManifestPair& pair : pairs) {
        const std::string page = pair_page_path(plan.out_dir, pair);
        const std::string json = pair_json_path(plan.out_dir, pair);
        ::unlink(page.c_str());
        ::unlink(json.c_str());
        Job job{{"/proc/self/exe", "analyze", "--ref", pair.ref, "--dut", pair.dut, "--out", page,
                 "--json", "--quiet"}};
        job.argv.insert(job.argv.end(), plan.analyze_args.begin(), plan.analyze_args.end());
        jobs.push_back(std::move(job));
    }
    return jobs;
}

} // namespace

std::string pair_page_path(const std::string& out_dir, const ManifestPair& pair) {
    return out_dir + "/" + pair.id + ".html";
}

std::string pair_json_path(const std::string& out_dir, const ManifestPair& pair) {
    return out_dir + "/" + pair.id + ".json";
}

PairRow read_pair_row(const std::string& out_dir, const ManifestPair& pair, double seconds) {
    PairRow out = error_row(pair, pair.id + ".html", {}, seconds);
    const std::string text = read_whole_file(pair_json_path(out_dir, pair));
    out.ran = !text.empty() && batch_row_from_results_json(text, out.row);
    return out;
}

std::vector<PairRow> run_pairs(const BatchPlan& plan, const std::vector<ManifestPair>& pairs) {
    const std::vector<Job> jobs = pair_jobs(plan, pairs);
    std::vector<double> started(pairs.size(), 0.0);
    std::vector<double> took(pairs.size(), 0.0);
    const char* kill_id = std::getenv("SONALYX_BATCH_TEST_KILL");
    BatchProgress progress = start_batch_progress(pairs.size(), plan.show_progress);
    std::size_t done = 0;
    JobHooks hooks;
    hooks.started = [&](std::size_t index, int pid) {
        started[index] = batch_seconds_now();
        if (kill_id != nullptr && pairs[index].id == kill_id) ::kill(pid, SIGKILL);
    };
    hooks.finished = [&](std::size_t index, const JobOutcome&) {
        took[index] = started[index] > 0.0 ? batch_seconds_now() - started[index] : 0.0;
        show_batch_progress(progress, ++done);
    };
    const std::vector<JobOutcome> outcomes = run_jobs(jobs, plan.jobs, hooks);
    clear_batch_progress(progress);
    std::vector<PairRow> rows;
    for (std::size_t i = 0; i < pairs.size(); ++i)
        rows.push_back(outcome_row(plan.out_dir, pairs[i], outcomes[i], took[i]));
    return rows;
}
