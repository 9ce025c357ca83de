#include "cli/run_stage.h"

#include "audio/audio.h"

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// Room for a 4,095-byte path and the words around it.
char g_stage[4352] = "starting";

double g_stage_start = -1.0; // when the current stage began; negative before the first
bool g_shown = false;        // a progress line stands on the terminal
int g_percent = -1;          // the percent it shows

void show_percent(double fraction) {
    const int percent = static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 100.0);
    if (g_shown && percent == g_percent) return;
    std::fprintf(stderr, "\r\033[K  %s %d%%", g_stage, percent);
    std::fflush(stderr);
    g_shown = true;
    g_percent = percent;
}

double seconds_now() {
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

bool stage_times_wanted() {
    static const bool wanted = std::getenv("SONALYX_STAGE_TIMES") != nullptr;
    return wanted;
}

// Prints how long the current stage took and the peak resident memory so far, when that is
// wanted and a stage is running.
void end_stage() {
    if (!stage_times_wanted() || g_stage_start < 0.0) return;
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::fprintf(stderr, "stage-time %.3f %ld %s\n", seconds_now() - g_stage_start,
                 static_cast<long>(usage.ru_maxrss), g_stage);
}

} // namespace

void finish_run_stages() {
    clear_stage_progress();
    end_stage();
    g_stage_start = -1.0;
}

void show_stage_progress() {
    set_progress_listener(show_percent);
}

void clear_stage_progress() {
    if (!g_shown) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    g_shown = false;
    g_percent = -1;
}

void set_run_stage(const char* format, ...) {
    clear_stage_progress();
    end_stage();
    g_stage_start = seconds_now();
    va_list args;
    va_start(args, format);
    std::vsnprintf(g_stage, sizeof g_stage, format, args);
    va_end(args);
}

const char* run_stage() {
    return g_stage;
}

void stop_out_of_memory(std::size_t bytes) {
    if (g_shown) {
        [[maybe_unused]] const ssize_t erased = ::write(STDERR_FILENO, "\r\033[K", 4);
    }
    char line[sizeof g_stage + 128];
    const int length = std::snprintf(
        line, sizeof line, "error: out of memory while %s: could not allocate %zu bytes\n", g_stage,
        bytes);
    std::fflush(stdout);
    if (length > 0) {
        const auto size = std::min(static_cast<std::size_t>(length), sizeof line - 1);
        [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line, size);
    }
    ::_exit(1);
}
