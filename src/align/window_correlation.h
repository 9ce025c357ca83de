// C(L) = sum a[n] * b[n - L] at every lag of a window, block by block through the FFT: each block
// of a is correlated with the stretch of b it meets at those lags in one transform of fixed size,
// and the blocks' sums are added up. Time grows linearly with the length of a; memory depends on
// the window and the plan only.
#pragma once

#include "align/correlation_plan.h"
#include "audio/audio.h"

#include <cstdint>
#include <memory>

struct WindowSums {
    std::unique_ptr<double[]> storage; // the sums first, then the two transform buffers
    const double* c = nullptr;         // C(L) at c[L - lo]; null when the storage was not had
    std::uint64_t failed_bytes = 0;    // the size of the allocation that failed, else 0
};

// Needs non-empty inputs and window and a plan from plan_blocks for them.
WindowSums correlate_window(const ChannelView& a, const ChannelView& b, LagWindow window,
                            BlockPlan plan);
