#include "cli/batch_progress.h"

#include <chrono>
#include <cmath>
#include <cstdio>

double batch_seconds_now() {
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

BatchProgress start_batch_progress(std::size_t total, bool wanted) {
    BatchProgress progress;
    progress.started = batch_seconds_now();
    progress.total = total;
    progress.wanted = wanted;
    show_batch_progress(progress, 0);
    return progress;
}

void show_batch_progress(BatchProgress& progress, std::size_t done) {
    if (!progress.wanted || progress.total == 0) return;
    std::fprintf(stderr, "\r\033[K  %zu / %zu pairs done", done, progress.total);
    if (done > 0) {
        const double elapsed = batch_seconds_now() - progress.started;
        const double left =
            elapsed / static_cast<double>(done) * static_cast<double>(progress.total - done);
        const long seconds = std::lround(left);
        std::fprintf(stderr, ", ETA %ld:%02ld", seconds / 60, seconds % 60);
    }
    std::fflush(stderr);
    progress.shown = true;
}

void clear_batch_progress(BatchProgress& progress) {
    if (!progress.shown) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    progress.shown = false;
}
