// A whole `sonalyx analyze` run with default settings on long programmes: a 10-minute and a
// 60-minute (or the minutes given as arguments) stereo 48 kHz 24-bit pair of program-like
// material, the DUT 123 frames late and slightly changed, as a lossy codec would leave it. Each
// run goes in a child process so that its peak resident memory (the child's ru_maxrss) is the
// run's alone; the child reports each stage's time and the peak memory so far
// (SONALYX_STAGE_TIMES). The table compares the wall time with reading both files once
// (`cat ref dut > /dev/null`).
#include "bench_pair.h"
#include "cli/commands.h"
#include "cli/run_stage.h"
#include "support/temp_dir.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::size_t kDelay = 123;
constexpr std::size_t kBlockFrames = 1 << 16;

struct ChildRun {
    int status = -1;
    double seconds = 0.0;
    double peak_mib = 0.0;
};

void put_le(std::string& out, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

std::string header_24bit_stereo(std::size_t frames) {
    const std::uint64_t data = frames * 6;
    std::string h = "RIFF";
    put_le(h, 36 + data, 4);
    h += "WAVEfmt ";
    put_le(h, 16, 4);
    put_le(h, 1, 2);
    put_le(h, 2, 2);
    put_le(h, kRate, 4);
    put_le(h, kRate * 6, 4);
    put_le(h, 6, 2);
    put_le(h, 24, 2);
    h += "data";
    put_le(h, data, 4);
    return h;
}

void put_sample(std::string& out, double x) {
    const double clamped = x > 1.0 ? 1.0 : (x < -1.0 ? -1.0 : x);
    put_le(out, static_cast<std::uint64_t>(std::llround(clamped * 8388607.0)), 3);
}

// The DUT's change: a little gain, a gentle one-pole smoothing and noise at about -90 dBFS.
double codec_like(double x, double& state, SignalRng& rng) {
    state = 0.9 * x + 0.1 * state;
    return 0.998 * state + 0.00003 * signal_next_uniform(rng, -1.0, 1.0);
}

// Streams both files block by block, so that writing an hour's pair needs no hour of memory.
bool write_pair(const std::string& ref_path, const std::string& dut_path, std::size_t frames) {
    std::FILE* ref = std::fopen(ref_path.c_str(), "wb");
    std::FILE* dut = std::fopen(dut_path.c_str(), "wb");
    if (ref == nullptr || dut == nullptr) return false;
    std::string ref_bytes = header_24bit_stereo(frames);
    std::string dut_bytes = header_24bit_stereo(frames + kDelay);
    dut_bytes.append(kDelay * 6, '\0');
    SignalRng source = signal_rng(1);
    SignalRng noise = signal_rng(2);
    double state[2] = {0.0, 0.0};
    bool ok = true;
    for (std::size_t n = 0; n < frames && ok; ++n) {
        double frame[2];
        bench_program_frame(n, source, frame);
        for (int k = 0; k < 2; ++k) {
            put_sample(ref_bytes, frame[k]);
            put_sample(dut_bytes, codec_like(frame[k], state[k], noise));
        }
        if (ref_bytes.size() >= kBlockFrames * 6 || n + 1 == frames) {
            ok = std::fwrite(ref_bytes.data(), 1, ref_bytes.size(), ref) == ref_bytes.size() &&
                 std::fwrite(dut_bytes.data(), 1, dut_bytes.size(), dut) == dut_bytes.size();
            ref_bytes.clear();
            dut_bytes.clear();
        }
    }
    return (std::fclose(ref) == 0) & (std::fclose(dut) == 0) & ok;
}

// Runs `body` in a child with standard output silenced and standard error sent to `err_path`.
template <typename Body> ChildRun run_child(const std::string& err_path, Body body) {
    ChildRun run;
    const double start = now_seconds();
    const pid_t pid = fork();
    if (pid == 0) {
        const int null = open("/dev/null", O_WRONLY);
        const int err = open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(null, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        std::_Exit(body());
    }
    int status = 0;
    rusage usage{};
    if (pid < 0 || wait4(pid, &status, 0, &usage) != pid) return run;
    run.seconds = now_seconds() - start;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.peak_mib = static_cast<double>(usage.ru_maxrss) / 1024.0;
    return run;
}

ChildRun run_analyze(const TempDir& dir) {
    setenv("SONALYX_STAGE_TIMES", "1", 1);
    return run_child(dir.file("stderr"), [&dir] {
        std::vector<std::string> words{"sonalyx", "analyze",           "--ref", dir.file("ref.wav"),
                                       "--dut",   dir.file("dut.wav"), "--out", dir.file("r.html")};
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(word.data());
        const int status = run_analyze_command(argv);
        finish_run_stages();
        return status;
    });
}

ChildRun run_cat(const TempDir& dir) {
    return run_child(dir.file("cat-stderr"), [&dir] {
        const std::string ref = dir.file("ref.wav");
        const std::string dut = dir.file("dut.wav");
        execl("/bin/cat", "cat", ref.c_str(), dut.c_str(), static_cast<char*>(nullptr));
        return 127;
    });
}

struct StageCost {
    double seconds = 0.0;
    double peak_mib = 0.0; // the run's peak resident memory when the stage ended
};

// The stages the child printed, in order, each named without the path it names.
std::vector<std::pair<std::string, StageCost>> stage_costs(const std::string& err_text) {
    std::vector<std::pair<std::string, StageCost>> stages;
    std::istringstream lines(err_text);
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string tag;
        StageCost cost;
        long peak_kib = 0;
        if (!(words >> tag >> cost.seconds >> peak_kib) || tag != "stage-time") continue;
        cost.peak_mib = static_cast<double>(peak_kib) / 1024.0;
        std::string name;
        std::getline(words >> std::ws, name);
        stages.emplace_back(name.substr(0, name.find(" '")), cost);
    }
    return stages;
}

int bench(double minutes) {
    const TempDir dir;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    if (!write_pair(dir.file("ref.wav"), dir.file("dut.wav"), frames)) return 1;
    // The files are on disk before anything is timed, so the kernel's write-back of two
    // freshly written gigabytes does not run alongside the read it is compared with.
    ::sync();
    const ChildRun cat = run_cat(dir);
    const ChildRun run = run_analyze(dir);
    if (run.status != 0) {
        std::fprintf(stderr, "analyze failed with status %d:\n%s", run.status,
                     read_text_file(dir.file("stderr")).c_str());
        return 1;
    }
    std::printf("analyze, %.1f min stereo 48 kHz 24-bit pair, default settings\n", minutes);
    std::printf("%-34s %12s\n", "what", "value");
    std::printf("%-34s %12.2f\n", "wall seconds", run.seconds);
    std::printf("%-34s %12.1f\n", "peak RSS MiB", run.peak_mib);
    std::printf("%-34s %12.2f\n", "cat ref dut > /dev/null, seconds", cat.seconds);
    std::printf("%-34s %12.1f\n", "ratio to cat", run.seconds / cat.seconds);
    std::printf("%-34s %12s %12s\n", "stage", "seconds", "peak MiB");
    for (const auto& [stage, cost] : stage_costs(read_text_file(dir.file("stderr"))))
        std::printf("  %-32s %12.2f %12.1f\n", stage.c_str(), cost.seconds, cost.peak_mib);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<double> minutes{10.0, 60.0};
    if (argc > 1) minutes.assign(argc - 1, 0.0);
    for (int i = 1; i < argc; ++i)
        minutes[static_cast<std::size_t>(i - 1)] = std::atof(argv[i]);
    for (const double m : minutes)
        if (bench(m) != 0) return 1;
    return 0;
}
