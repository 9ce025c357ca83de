// Time and peak memory of `sonalyx trim` on a 10-minute (or argv[1] minutes) stereo 48 kHz 24-bit
// capture with the default 45 s search windows. The capture is generated and written first; the
// trim then runs in a child process, so its peak resident memory (the child's ru_maxrss) counts
// the trim alone.
#include "align/sync_tone.h"
#include "bench_pair.h"
#include "cli/commands.h"
#include "support/sync_capture.h"
#include "support/temp_dir.h"
#include "support/wav_fixture.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;

// Writes the capture; `frames` and `clean_frames` receive its length and the expected cut's.
bool write_capture(const std::string& path, double minutes, std::size_t& frames,
                   std::size_t& clean_frames) {
    SyncCaptureLayout layout;
    layout.channels = 2;
    layout.format = 24;
    layout.lead_frames = 3 * kRate;
    layout.tail_frames = 3 * kRate;
    layout.noise_peak = 0.0005;
    std::vector<double> tone(sync_template_length(kRate));
    sync_template_generate(tone, kRate);
    frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    layout.programme_frames = frames - 2 * tone.size() - 2 * kRate - 6 * kRate;
    const SyncCapture capture = make_sync_capture(layout, tone);
    clean_frames = capture.clean_end - capture.clean_start;
    return fixture_write_file(path, sync_capture_wav_bytes(layout, capture));
}

struct ChildRun {
    int status = -1;
    double seconds = 0.0;
    double peak_mib = 0.0;
};

// Runs the trim command in a child with its output silenced.
ChildRun run_trim(const std::string& input, const std::string& output) {
    ChildRun run;
    const double start = now_seconds();
    const pid_t pid = fork();
    if (pid == 0) {
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        std::vector<std::string> words{"sonalyx", "trim", "--input", input, "--out", output};
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(word.data());
        std::_Exit(run_trim_command(argv));
    }
    int status = 0;
    rusage usage{};
    if (pid < 0 || wait4(pid, &status, 0, &usage) != pid) return run;
    run.seconds = now_seconds() - start;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.peak_mib = static_cast<double>(usage.ru_maxrss) / 1024.0;
    return run;
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const TempDir dir;
    const std::string input = dir.file("capture.wav");
    std::size_t frames = 0;
    std::size_t clean_frames = 0;
    if (!write_capture(input, minutes, frames, clean_frames)) return 1;
    const ChildRun run = run_trim(input, dir.file("clean.wav"));
    if (run.status != 0) {
        std::fprintf(stderr, "trim failed with status %d\n", run.status);
        return 1;
    }
    // The decoded input alone: two channels of doubles.
    const double decoded_mib = static_cast<double>(2 * 8 * frames) / (1024.0 * 1024.0);
    std::printf("trim, %.1f min stereo 48 kHz 24-bit, 45 s windows (%zu clean frames)\n", minutes,
                clean_frames);
    std::printf("%-22s %10s %14s %18s\n", "what", "seconds", "peak MiB", "decoded MiB");
    std::printf("%-22s %10.3f %14.1f %18.1f\n", "read, search, write", run.seconds, run.peak_mib,
                decoded_mib);
    return 0;
}
