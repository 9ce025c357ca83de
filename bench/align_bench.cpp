// Time and memory of channel alignment on long file pairs, next to the whole-file correlation it
// replaced (both channels copied out, each zero-padded into one transform of next_pow2(2 x frames)
// points, run on the straightforward reference transform, which gives the same bits as the fast
// one). Builds a 48 kHz stereo pair of program-like material in memory for each length in minutes
// given on the command line (10 by default), the DUT late by 240 frames, and aligns it with a
// search of +-4800 frames. Each variant runs in a child process of its own, which generates the
// pair, resets its peak-RSS mark (/proc/self/clear_refs), aligns, and reports its wall time, its
// resident memory just before aligning and its peak resident memory while aligning (VmHWM). The
// whole-file correlation is skipped when its bound passes half the machine's memory.
#include "align/alignment.h"
#include "align/correlation_plan.h"
#include "bench_pair.h"
#include "dsp/fft.h"
#include "support/reference_correlation.h"
#include "support/signal_gen.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <span>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::size_t kChannels = 2;
constexpr std::int64_t kDelay = 240;
constexpr std::size_t kMaxLag = 4800;
constexpr double kMiB = 1024.0 * 1024.0;

// What a child reports through its pipe.
struct Outcome {
    double seconds = 0.0;
    double rss_before_mib = 0.0;
    double peak_mib = 0.0;
    bool peak_reset = false;
    std::int64_t lag[kChannels] = {};
    double corr[kChannels] = {};
};

struct ChildResult {
    Outcome outcome;
    double lifetime_peak_mib = 0.0; // ru_maxrss of the whole child, generation included
    bool ok = false;
};

// Source frame m of program-like material: drifting chords under a phrase envelope, a beat of
// noise bursts, and a little hiss. The noise comes from a generator seeded by m itself, so any
// frame can be computed on its own.
void program_frame(std::size_t m, double out[kChannels]) {
    const double t = static_cast<double>(m) / kRate;
    const double two_pi = 2.0 * std::numbers::pi;
    SignalRng rng = signal_rng(m * 0x9E3779B97F4A7C15ull + 7);
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

// The file whose frame n is source frame n + first.
WavFile program_file(std::size_t frames, std::size_t first) {
    WavFile file;
    file.sample_rate = kRate;
    file.channels = kChannels;
    file.format = kWavFormatFloat64;
    file.frames = frames;
    file.samples.resize(frames * kChannels);
    for (std::size_t n = 0; n < frames; ++n)
        program_frame(n + first, &file.samples[n * kChannels]);
    return file;
}

// A field of /proc/self/status in MiB (0 when missing).
double status_mib(const char* field) {
    std::FILE* status = std::fopen("/proc/self/status", "r");
    if (status == nullptr) return 0.0;
    char line[256];
    double kib = 0.0;
    const std::size_t length = std::strlen(field);
    while (std::fgets(line, sizeof line, status) != nullptr) {
        if (std::strncmp(line, field, length) == 0 && line[length] == ':')
            kib = std::atof(line + length + 1);
    }
    std::fclose(status);
    return kib / 1024.0;
}

// Sets VmHWM back to the current RSS; false where the kernel does not offer it.
bool reset_peak_rss() {
    std::FILE* refs = std::fopen("/proc/self/clear_refs", "w");
    if (refs == nullptr) return false;
    const bool ok = std::fputs("5", refs) >= 0;
    return std::fclose(refs) == 0 && ok;
}

std::vector<double> channel_copy(const WavFile& file, std::size_t k) {
    std::vector<double> out(file.frames);
    for (std::size_t f = 0; f < file.frames; ++f)
        out[f] = file.samples[f * file.channels + k];
    return out;
}

void align_fast(const WavFile& ref, const WavFile& dut, Outcome& out) {
    const AlignmentResult result = align_channels(ref, dut, kMaxLag, 2, 0.9, -70.0);
    for (std::size_t k = 0; k < kChannels; ++k) {
        out.lag[k] = result.channel[k].offset;
        out.corr[k] = result.channel[k].confidence;
    }
}

void align_reference(const WavFile& ref, const WavFile& dut, Outcome& out) {
    for (std::size_t k = 0; k < kChannels; ++k) {
        const ReferencePeak peak =
            reference_correlate(channel_copy(ref, k), channel_copy(dut, k), kMaxLag, false);
        out.lag[k] = peak.lag;
        out.corr[k] = peak.corr;
    }
}

using Aligner = void (*)(const WavFile&, const WavFile&, Outcome&);

// Child side: generate, reset the peak mark, align, send the outcome.
[[noreturn]] void child_main(Aligner aligner, std::size_t frames, int pipe_out) {
    const WavFile ref = program_file(frames, kDelay);
    const WavFile dut = program_file(frames, 0); // dut[n + kDelay] == ref[n]
    Outcome out;
    out.rss_before_mib = status_mib("VmRSS");
    out.peak_reset = reset_peak_rss();
    const double start = now_seconds();
    aligner(ref, dut, out);
    out.seconds = now_seconds() - start;
    out.peak_mib = status_mib("VmHWM");
    const bool sent = write(pipe_out, &out, sizeof out) == static_cast<ssize_t>(sizeof out);
    _exit(sent ? 0 : 1);
}

ChildResult run_child(Aligner aligner, std::size_t frames) {
    ChildResult result;
    int fds[2];
    if (pipe(fds) != 0) return result;
    const pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        child_main(aligner, frames, fds[1]);
    }
    close(fds[1]);
    const bool got = pid > 0 && read(fds[0], &result.outcome, sizeof result.outcome) ==
                                    static_cast<ssize_t>(sizeof result.outcome);
    close(fds[0]);
    int status = 0;
    struct rusage usage {};
    if (pid > 0 && wait4(pid, &status, 0, &usage) == pid) {
        result.lifetime_peak_mib = static_cast<double>(usage.ru_maxrss) / 1024.0;
        result.ok = got && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    return result;
}

void print_row(const char* method, const ChildResult& r) {
    const Outcome& o = r.outcome;
    std::printf("%-30s %8.2f %10.1f %10.1f %10.1f %11.1f %6lld %6lld %+.3e %+.3e%s\n", method,
                o.seconds, o.rss_before_mib, o.peak_mib, o.peak_mib - o.rss_before_mib,
                r.lifetime_peak_mib, static_cast<long long>(o.lag[0]),
                static_cast<long long>(o.lag[1]), o.corr[0] - 1.0, o.corr[1] - 1.0,
                r.ok ? (o.peak_reset ? "" : "  (peak not reset)") : "  (failed)");
}

// The largest |corr difference| relative to the reference's, or -1 when a lag differs.
double largest_difference(const Outcome& fast, const Outcome& reference) {
    double largest = 0.0;
    for (std::size_t k = 0; k < kChannels; ++k) {
        if (fast.lag[k] != reference.lag[k]) return -1.0;
        const double scale = std::max(std::fabs(reference.corr[k]), 1e-300);
        largest = std::max(largest, std::fabs(fast.corr[k] - reference.corr[k]) / scale);
    }
    return largest;
}

// Peak memory the whole-file correlation needs: its two complex arrays, both decoded files and
// one mono copy per side.
double whole_file_bound_mib(std::size_t frames) {
    const double arrays = 2.0 * static_cast<double>(2 * next_pow2(2 * frames - 1)) * 8.0;
    const double files = 2.0 * static_cast<double>(frames * kChannels) * 8.0;
    const double mono = 2.0 * static_cast<double>(frames) * 8.0;
    return (arrays + files + mono) / kMiB;
}

double machine_mib() {
    return static_cast<double>(sysconf(_SC_PHYS_PAGES)) *
           static_cast<double>(sysconf(_SC_PAGE_SIZE)) / kMiB;
}

void print_header(double minutes, std::size_t frames) {
    const LagWindow window = lag_window(frames, frames, kMaxLag);
    const BlockPlan plan = plan_blocks(frames, frames, window);
    const double files_mib = 2.0 * static_cast<double>(frames * kChannels) * 8.0 / kMiB;
    const double sums_mib =
        static_cast<double>(lag_window_width(window) + 4 * plan.points) * 8.0 / kMiB;
    std::printf("%.1f min stereo %u Hz, DUT late by %lld frames, search +-%zu: %zu frames\n",
                minutes, kRate, static_cast<long long>(kDelay), kMaxLag, frames);
    std::printf("blocked: %zu-point transforms over blocks of %zu frames, %.1f MiB of buffers; "
                "both decoded files %.1f MiB\n",
                plan.points, plan.block, sums_mib, files_mib);
    std::printf("whole-file: N = %zu points, bound %.1f MiB with the files\n\n",
                static_cast<std::size_t>(next_pow2(2 * frames - 1)), whole_file_bound_mib(frames));
    std::printf("%-30s %8s %10s %10s %10s %11s %6s %6s %10s %10s\n", "method", "seconds",
                "before MiB", "peak MiB", "growth MiB", "life MiB", "lag0", "lag1", "corr0 - 1",
                "corr1 - 1");
}

// Runs both variants on one length; true when the blocked alignment finds the delay on both
// channels and, where the whole-file correlation ran, agrees with it.
bool run_length(double minutes) {
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    print_header(minutes, frames);
    const ChildResult fast = run_child(align_fast, frames);
    print_row("align_channels (blocked)", fast);
    std::fflush(stdout);
    const bool found = fast.ok && fast.outcome.lag[0] == kDelay && fast.outcome.lag[1] == kDelay;
    if (whole_file_bound_mib(frames) > machine_mib() / 2.0) {
        std::printf("whole-file reference skipped: it needs more than half of the %.0f MiB of "
                    "memory\n\n",
                    machine_mib());
        return found;
    }
    const ChildResult reference = run_child(align_reference, frames);
    print_row("whole-file, reference FFT", reference);
    const double difference = largest_difference(fast.outcome, reference.outcome);
    std::printf("\nspeed-up %.2fx; lags %s, largest relative corr difference %.2e; corr - 1 is "
                "the error (the DUT is an exact copy); before = RSS with both files built, peak = "
                "VmHWM while aligning, growth = peak - before, life = ru_maxrss of the whole "
                "child\n\n",
                reference.outcome.seconds / fast.outcome.seconds,
                difference < 0.0 ? "DIFFER" : "identical", difference < 0.0 ? 0.0 : difference);
    // The whole-file transform itself errs by about 1e-9 at 10 minutes (its twiddle recurrence
    // runs over 2^25 steps); the blocked one by far less.
    return found && reference.ok && difference >= 0.0 && difference <= 1e-8;
}

} // namespace

int main(int argc, char** argv) {
    bool ok = true;
    if (argc < 2) return run_length(10.0) ? 0 : 1;
    for (int i = 1; i < argc; ++i)
        ok = run_length(std::atof(argv[i])) && ok;
    return ok ? 0 : 1;
}
