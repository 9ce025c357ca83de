#include "audio/progress.h"

namespace {

ProgressListener g_listener = nullptr;

} // namespace

ProgressListener set_progress_listener(ProgressListener listener) {
    const ProgressListener previous = g_listener;
    g_listener = listener;
    return previous;
}

void report_progress(double fraction) {
    if (g_listener != nullptr) g_listener(fraction);
}
