// Time and memory of channel alignment on a long file pair, next to the same correlation steps run
// on the straightforward reference transform. Builds a 10-minute (or argv[1] minutes) 48 kHz
// stereo pair of program-like material in memory, the DUT late by 240 frames, and aligns it with a
// search of +-4800 frames. Each variant runs in a child process of its own, which generates the
// pair, resets its peak-RSS mark (/proc/self/clear_refs), aligns, and reports its wall time, its
// resident memory just before aligning and its peak resident memory while aligning (VmHWM).
#include "align/alignment.h"
#include "bench_pair.h"
#include "dsp/fft.h"
#include "dsp/fft_stages.h"
#include "support/reference_fft.h"
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

// The correlation of align_channels, step for step, on the plain reference transform: two zeroed
// arrays of N points, both transforms, A * conj(B), the inverse, the lag scan and the energies.
CorrelationPeak reference_correlate(std::span<const double> a, std::span<const double> b) {
    const std::size_t n = next_pow2(a.size() + b.size() - 1);
    std::vector<double> fa(2 * n, 0.0);
    std::vector<double> fb(2 * n, 0.0);
    for (std::size_t i = 0; i < a.size(); ++i)
        fa[2 * i] = a[i];
    for (std::size_t i = 0; i < b.size(); ++i)
        fb[2 * i] = b[i];
    reference_fft_complex(fa.data(), n, false);
    reference_fft_complex(fb.data(), n, false);
    for (std::size_t k = 0; k < n; ++k) {
        const double ar = fa[2 * k], ai = fa[2 * k + 1], br = fb[2 * k], bi = fb[2 * k + 1];
        fa[2 * k] = ar * br + ai * bi;
        fa[2 * k + 1] = ai * br - ar * bi;
    }
    reference_fft_complex(fa.data(), n, true);
    const auto reach = static_cast<std::int64_t>(kMaxLag);
    const std::int64_t lo = std::max(-reach, 1 - static_cast<std::int64_t>(b.size()));
    const std::int64_t hi = std::min(reach, static_cast<std::int64_t>(a.size()) - 1);
    const auto c = [&](std::int64_t l) {
        return fa[2 * static_cast<std::size_t>(l < 0 ? l + static_cast<std::int64_t>(n) : l)];
    };
    std::int64_t best_l = lo;
    double best = -1e300;
    for (std::int64_t l = lo; l <= hi; ++l) {
        if (c(l) > best) {
            best = c(l);
            best_l = l;
        }
    }
    const auto end =
        std::min(static_cast<std::int64_t>(a.size()), static_cast<std::int64_t>(b.size()) + best_l);
    double energy_a = 0.0;
    double energy_b = 0.0;
    for (std::int64_t i = std::max<std::int64_t>(0, best_l); i < end; ++i) {
        energy_a += a[static_cast<std::size_t>(i)] * a[static_cast<std::size_t>(i)];
        energy_b +=
            b[static_cast<std::size_t>(i - best_l)] * b[static_cast<std::size_t>(i - best_l)];
    }
    const double product = energy_a * energy_b;
    return {-best_l, product > 0.0 ? c(best_l) / std::sqrt(product) : 0.0};
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
        const CorrelationPeak peak =
            reference_correlate(channel_copy(ref, k), channel_copy(dut, k));
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
    std::printf("%-30s %8.2f %10.1f %10.1f %10.1f %11.1f %6lld %6lld %.12f %.12f%s\n", method,
                o.seconds, o.rss_before_mib, o.peak_mib, o.peak_mib - o.rss_before_mib,
                r.lifetime_peak_mib, static_cast<long long>(o.lag[0]),
                static_cast<long long>(o.lag[1]), o.corr[0], o.corr[1],
                r.ok ? (o.peak_reset ? "" : "  (peak not reset)") : "  (failed)");
}

bool same_result(const Outcome& a, const Outcome& b) {
    return std::memcmp(a.lag, b.lag, sizeof a.lag) == 0 &&
           std::memcmp(a.corr, b.corr, sizeof a.corr) == 0;
}

} // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const auto frames = static_cast<std::size_t>(minutes * 60.0 * kRate);
    const std::size_t n = next_pow2(2 * frames - 1);
    const double files_mib = 2.0 * static_cast<double>(frames * kChannels) * 8.0 / kMiB;
    const double arrays_mib = 2.0 * static_cast<double>(2 * n) * 8.0 / kMiB;
    const double mono_mib = 2.0 * static_cast<double>(frames) * 8.0 / kMiB;
    const double scratch_mib = static_cast<double>(fft_stages_scratch_doubles(n)) * 8.0 / kMiB;
    std::printf("%.1f min stereo %u Hz, DUT late by %lld frames, search +-%zu: %zu frames, "
                "N = %zu points\n",
                minutes, kRate, static_cast<long long>(kDelay), kMaxLag, frames, n);
    std::printf("bound: two complex arrays %.1f + both decoded files %.1f + one mono copy per "
                "side %.1f = %.1f MiB (transform scratch %.1f MiB on top)\n\n",
                arrays_mib, files_mib, mono_mib, arrays_mib + files_mib + mono_mib, scratch_mib);
    std::printf("%-30s %8s %10s %10s %10s %11s %6s %6s %14s %14s\n", "method", "seconds",
                "before MiB", "peak MiB", "growth MiB", "life MiB", "lag0", "lag1", "corr0",
                "corr1");
    const ChildResult fast = run_child(align_fast, frames);
    print_row("align_channels (fast FFT)", fast);
    std::fflush(stdout);
    const ChildResult reference = run_child(align_reference, frames);
    print_row("same steps, reference FFT", reference);
    const bool same = same_result(fast.outcome, reference.outcome);
    std::printf("\nspeed-up %.2fx; results %s; before = RSS with both files built, peak = VmHWM "
                "while aligning, growth = peak - before, life = ru_maxrss of the whole child\n",
                reference.outcome.seconds / fast.outcome.seconds,
                same ? "identical bit for bit" : "DIFFER");
    const bool found = fast.outcome.lag[0] == kDelay && fast.outcome.lag[1] == kDelay;
    return fast.ok && reference.ok && same && found ? 0 : 1;
}
