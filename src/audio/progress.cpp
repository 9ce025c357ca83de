#include "audio/progress.h"

namespace {

ProgressListener g_listener = nullptr;
double g_from = 0.0;  // where the current part starts within the stage
double g_scale = 1.0; // the part's share of the stage

} // namespace

ProgressListener set_progress_listener(ProgressListener listener) {
    const ProgressListener previous = g_listener;
    g_listener = listener;
    return previous;
}

void report_progress(double fraction) {
    if (g_listener != nullptr) g_listener(g_from + g_scale * fraction);
}

ProgressPart::ProgressPart(double from, double to) : saved_from_(g_from), saved_scale_(g_scale) {
    g_from = saved_from_ + saved_scale_ * from;
    g_scale = saved_scale_ * (to - from);
}

ProgressPart::ProgressPart(std::size_t index, std::size_t count)
    : ProgressPart(static_cast<double>(index) / static_cast<double>(count),
                   static_cast<double>(index + 1) / static_cast<double>(count)) {}

ProgressPart::~ProgressPart() {
    g_from = saved_from_;
    g_scale = saved_scale_;
}
