// `sonalyx batch` against the same pairs analyzed one by one: P pairs (100 by default) of S
// seconds (20) of stereo 48 kHz noise, the DUT 7 frames late, run with --jobs 1 and --jobs J (2).
// The table gives the sum of the single analyze runs, the batch's wall time, the wall time the jobs
// would take with no overhead at all (the sum divided by J) and what the batch adds per pair. Both
// go through the built executable, as a user runs them. Arguments: [pairs] [seconds] [jobs].
#include "bench_pair.h"
#include "support/run_process.h"
#include "support/signal_gen.h"
#include "support/temp_dir.h"

#include "audio/audio.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::size_t kDelay = 7;

// Writes ref.wav and dut.wav: seeded noise and the same noise kDelay frames late.
bool write_pair(const TempDir& dir, std::size_t seconds) {
    const std::size_t frames = seconds * kRate;
    std::vector<double> ref = signal_uniform(11, frames * 2, -0.5, 0.5);
    std::vector<double> dut(ref.size(), 0.0);
    std::copy(ref.begin(), ref.end() - kDelay * 2, dut.begin() + kDelay * 2);
    return wav_write(dir.file("ref.wav").c_str(), kRate, 2, 16, ref, frames) &&
           wav_write(dir.file("dut.wav").c_str(), kRate, 2, 16, dut, frames);
}

std::string manifest_text(std::size_t pairs) {
    std::string text = "id\tref\tdut\n";
    for (std::size_t i = 0; i < pairs; ++i)
        text += "pair" + std::to_string(i) + "\tref.wav\tdut.wav\n";
    return text;
}

// Seconds the single runs take one after the other; negative when one of them fails.
double single_runs(const TempDir& dir, std::size_t pairs) {
    double total = 0.0;
    for (std::size_t i = 0; i < pairs; ++i) {
        const double start = now_seconds();
        const ProcessOutput run =
            run_process({SONALYX_EXE, "analyze", "--ref", "ref.wav", "--dut", "dut.wav", "--out",
                         "single-pair" + std::to_string(i) + ".html", "--json", "--quiet"},
                        dir.path());
        if (run.exit_status != 0) return -1.0;
        total += now_seconds() - start;
    }
    return total;
}

// The wall time of one batch over the pairs with `jobs` at a time; negative when it fails.
double batch_run(const TempDir& dir, std::size_t jobs) {
    const double start = now_seconds();
    const ProcessOutput batch =
        run_process({SONALYX_EXE, "batch", "--manifest", "pairs.tsv", "--out", "batch/", "--jobs",
                     std::to_string(jobs), "--quiet"},
                    dir.path());
    if (batch.exit_status == 0) return now_seconds() - start;
    std::fprintf(stderr, "batch_bench: the batch failed\n%s", batch.err.c_str());
    return -1.0;
}

std::size_t argument(int argc, char** argv, int index, std::size_t fallback) {
    return argc > index ? std::strtoul(argv[index], nullptr, 10) : fallback;
}

} // namespace

int main(int argc, char** argv) {
    const std::size_t pairs = argument(argc, argv, 1, 100);
    const std::size_t seconds = argument(argc, argv, 2, 20);
    const std::size_t jobs = argument(argc, argv, 3, 2);
    const TempDir dir;
    if (pairs == 0 || jobs == 0 || !write_pair(dir, seconds) ||
        !write_text_file(dir.file("pairs.tsv"), manifest_text(pairs))) {
        std::fprintf(stderr, "batch_bench: could not prepare the pairs\n");
        return 1;
    }
    const double sum = single_runs(dir, pairs);
    if (sum < 0.0) {
        std::fprintf(stderr, "batch_bench: a single analyze run failed\n");
        return 1;
    }
    std::printf("%6s %6s %5s %14s %12s %12s %16s\n", "pairs", "sec", "jobs", "sum single s",
                "batch wall s", "sum/jobs s", "overhead/pair ms");
    // One job at a time shows the batch's own cost alone; the asked-for jobs show the gain.
    for (const std::size_t count : {std::size_t{1}, jobs}) {
        const double wall = batch_run(dir, count);
        if (wall < 0.0) return 1;
        const double ideal = sum / static_cast<double>(count);
        std::printf(
            "%6zu %6zu %5zu %14.2f %12.2f %12.2f %16.1f\n", pairs, seconds, count, sum, wall, ideal,
            (wall - ideal) * static_cast<double>(count) / static_cast<double>(pairs) * 1000.0);
        if (jobs == 1) break;
    }
    return 0;
}
