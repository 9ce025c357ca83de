// Reading speed and memory of the WAV reader against the plain cost of reading the same bytes.
// Generates a 10-minute 48 kHz stereo 24-bit file of music-like material in a scratch directory,
// then times wav_read of it and `cat file > /dev/null`, each in its own child process, and prints
// wall time and peak resident memory of both next to the expected memory floor.
#include "audio/wav_reader.h"
#include "bench_pair.h"
#include "support/signal_gen.h"
#include "support/temp_dir.h"
#include "support/wav_fixture.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <numbers>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::uint32_t kChannels = 2;
constexpr std::size_t kFrames = std::size_t{kRate} * 600;
constexpr int kRuns = 3;

struct Measurement {
    double seconds = 0.0;
    double peak_mib = 0.0;
    bool ok = false;
};

// One frame of material: a few drifting partials under a slow phrase envelope, plus noise.
void synth_frame(std::size_t n, SignalRng& rng, double out[kChannels]) {
    const double t = static_cast<double>(n) / kRate;
    const double two_pi = 2.0 * std::numbers::pi;
    const double phrase = 0.55 + 0.45 * std::sin(two_pi * 0.07 * t) * std::sin(two_pi * 0.31 * t);
    const double root = 110.0 * std::exp2(std::floor(std::fmod(t, 8.0) / 2.0) / 12.0);
    double tone = 0.0;
    for (int h = 1; h <= 5; ++h)
        tone += std::sin(two_pi * root * h * t) / (h * 2.2);
    const double beat = std::exp(-18.0 * std::fmod(t, 0.5)) * signal_next_uniform(rng, -1.0, 1.0);
    out[0] = 0.55 * phrase * tone + 0.2 * beat;
    out[1] = 0.5 * phrase * std::sin(two_pi * root * 1.5 * t + 0.3) + 0.18 * beat +
             0.01 * signal_next_uniform(rng, -1.0, 1.0);
}

// Writes the file one second at a time so this process stays small (its size would otherwise be
// counted into the children's peaks).
bool write_material(const std::string& path) {
    FixtureFmt fmt;
    fmt.channels = kChannels;
    fmt.sample_rate = kRate;
    fmt.bits = 24;
    FixtureChunk data = fixture_int_data(24, {});
    data.declared_size = static_cast<std::uint32_t>(kFrames * kChannels * 3);
    const FixtureChunk chunks[] = {fixture_fmt_chunk(fmt), data};
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return false;
    const std::vector<std::uint8_t> header = fixture_wav_bytes(chunks);
    bool ok = std::fwrite(header.data(), 1, header.size(), file) == header.size();
    SignalRng rng = signal_rng(2024);
    std::vector<std::int64_t> codes;
    for (std::size_t start = 0; ok && start < kFrames; start += kRate) {
        codes.clear();
        for (std::size_t n = start; n < std::min(kFrames, start + kRate); ++n) {
            double frame[kChannels];
            synth_frame(n, rng, frame);
            for (const double x : frame)
                codes.push_back(std::llround(x * 8388607.0));
        }
        const std::vector<std::uint8_t> bytes = fixture_int_data(24, codes).payload;
        ok = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    }
    return std::fclose(file) == 0 && ok;
}

// Waits for the child and fills in its peak resident memory and success.
void finish_child(pid_t pid, double start, Measurement& m) {
    int status = 0;
    struct rusage usage {};
    if (wait4(pid, &status, 0, &usage) != pid) return;
    m.seconds = now_seconds() - start;
    m.peak_mib = static_cast<double>(usage.ru_maxrss) / 1024.0;
    m.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

Measurement measure_wav_read(const std::string& path) {
    Measurement m;
    const double start = now_seconds();
    const pid_t pid = fork();
    if (pid == 0) {
        WavFile file;
        const bool ok = wav_read(path.c_str(), file) && file.frames == kFrames;
        _exit(ok ? 0 : 1);
    }
    if (pid > 0) finish_child(pid, start, m);
    return m;
}

Measurement measure_cat(const std::string& path) {
    Measurement m;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    char* const argv[] = {const_cast<char*>("cat"), const_cast<char*>(path.c_str()), nullptr};
    const double start = now_seconds();
    pid_t pid = 0;
    if (posix_spawnp(&pid, "cat", &actions, nullptr, argv, environ) == 0) {
        finish_child(pid, start, m);
    }
    posix_spawn_file_actions_destroy(&actions);
    return m;
}

// Median wall time and largest peak of several runs; not ok if any run failed.
Measurement summarize(std::vector<Measurement> runs) {
    std::sort(runs.begin(), runs.end(),
              [](const Measurement& a, const Measurement& b) { return a.seconds < b.seconds; });
    Measurement out = runs[runs.size() / 2];
    for (const Measurement& run : runs) {
        out.peak_mib = std::max(out.peak_mib, run.peak_mib);
        out.ok = out.ok && run.ok;
    }
    return out;
}

void print_row(const char* method, const Measurement& m) {
    std::printf("%-26s %9.3f %10.1f%s\n", method, m.seconds, m.peak_mib, m.ok ? "" : "  (failed)");
}

} // namespace

int main() {
    const TempDir dir;
    const std::string path = dir.file("material.wav");
    if (!write_material(path)) {
        std::fprintf(stderr, "error: cannot write %s\n", path.c_str());
        return 1;
    }
    std::vector<Measurement> reads;
    std::vector<Measurement> cats;
    for (int run = 0; run < kRuns; ++run) {
        reads.push_back(measure_wav_read(path));
        cats.push_back(measure_cat(path));
    }
    const double payload_mib = static_cast<double>(kFrames * kChannels * 3) / (1024.0 * 1024.0);
    const double doubles_mib = static_cast<double>(kFrames * kChannels * 8) / (1024.0 * 1024.0);
    std::printf("10 min, %u Hz, %u channels, 24-bit: %.1f MiB payload (median of %d runs)\n\n",
                kRate, kChannels, payload_mib, kRuns);
    std::printf("%-26s %9s %10s\n", "method", "seconds", "peak MiB");
    const Measurement read = summarize(reads);
    const Measurement cat = summarize(cats);
    print_row("wav_read", read);
    print_row("cat file > /dev/null", cat);
    std::printf("%-26s %9s %10.1f\n", "floor (payload + doubles)", "-", payload_mib + doubles_mib);
    return read.ok && cat.ok ? 0 : 1;
}
