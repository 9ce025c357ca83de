#include "dsp/fft_strips.h"

#include "dsp/fft_butterflies.h"
#include "dsp/fft_twiddles.h"

#include <cstring>

// A stage here has a span of 1, 2, ... rows / 2 rows (length 2 * span * row_points) and pairs
// point (row, column) with (row + span, column) for row % (2 * span) < span, with twiddle
// k = (row % span) * row_points + column. Partners share their column, so a strip of kStripPoints
// adjacent columns goes through all these stages on its own, copied to contiguous scratch where
// each stage is a plain stage of half length span * kStripPoints.
//
// Twiddles come from recurrence states: for the current strip, each stage keeps one chain value
// per row offset h < span, the twiddle at the strip's first column. Stepping a state kStripPoints
// times yields the strip's twiddles and leaves it at the next strip's first column.

namespace {

constexpr std::size_t kStripPoints = 16;
// Rows of a strip lie row_points points apart, a stride the hardware does not follow; each row
// copy first asks for the row this many rows ahead.
constexpr std::size_t kRowsAhead = 8;

struct StripWork {
    FftKernel kernel = FftKernel::portable;
    std::size_t rows = 0;
    std::size_t row_points = 0;
    double* points = nullptr;   // rows * kStripPoints points of the current strip
    double* twiddles = nullptr; // one stage's run of rows / 2 * kStripPoints twiddles
    double* state_re = nullptr; // rows - 1 states, the stage with span s at [s - 1, 2 s - 1)
    double* state_im = nullptr;
};

FftComplex load_state(const StripWork& work, std::size_t i) {
    return {work.state_re[i], work.state_im[i]};
}

void store_state(const StripWork& work, std::size_t i, FftComplex w) {
    work.state_re[i] = w.re;
    work.state_im[i] = w.im;
}

StripWork carve(FftKernel kernel, std::size_t rows, std::size_t row_points, double* scratch) {
    StripWork work;
    work.kernel = kernel;
    work.rows = rows;
    work.row_points = row_points;
    work.points = scratch;
    work.twiddles = work.points + 2 * rows * kStripPoints;
    work.state_re = work.twiddles + fft_twiddle_run_doubles(rows / 2 * kStripPoints);
    work.state_im = work.state_re + (rows - 1);
    return work;
}

// One stage's chain as it walks row by row: its twiddle at the start of row offset h.
struct ChainCursor {
    std::size_t span = 0;
    std::size_t h = 0;
    FftComplex w{1.0, 0.0};
    FftComplex r{1.0, 0.0};
};

ChainCursor chain_start(const StripWork& work, std::size_t span, bool inverse) {
    ChainCursor cursor;
    cursor.span = span;
    cursor.r = fft_stage_step(2 * span * work.row_points, inverse);
    return cursor;
}

// Sets each stage's states to its chain values at the row starts k = h * row_points. A chain is
// a long run of dependent multiplications. The last stage's chain alone is one row longer than
// all the others together, so it is stepped side by side with them, taken one after another.
void start_states(const StripWork& work, bool inverse) {
    const std::size_t last_span = work.rows / 2;
    ChainCursor last = chain_start(work, last_span, inverse);
    ChainCursor other = chain_start(work, 1, inverse);
    for (; last.h < last_span; ++last.h) {
        store_state(work, last_span - 1 + last.h, last.w);
        if (other.span < last_span) {
            store_state(work, other.span - 1 + other.h, other.w);
        }
        for (std::size_t column = 0; column < work.row_points; ++column) {
            last.w = fft_multiply(last.w, last.r);
            other.w = fft_multiply(other.w, other.r);
        }
        if (++other.h == other.span) {
            other = chain_start(work, 2 * other.span, inverse);
        }
    }
}

// The strip's run for the stage with this span: the twiddle of row offset h and column j goes to
// point h * kStripPoints + j. Each row offset's chain is stepped through the strip's columns;
// the chains are independent, so consecutive ones overlap in the processor.
void next_twiddles(const StripWork& work, std::size_t span, FftComplex r) {
    const std::size_t count = span * kStripPoints;
    for (std::size_t h = 0; h < span; ++h) {
        FftComplex w = load_state(work, span - 1 + h);
        for (std::size_t j = 0; j < kStripPoints; ++j) {
            fft_store_twiddle(work.twiddles, count, h * kStripPoints + j, w);
            w = fft_multiply(w, r);
        }
        store_state(work, span - 1 + h, w);
    }
}

void prefetch_row(const double* row) {
    for (std::size_t d = 0; d < 2 * kStripPoints; d += 8) {
        __builtin_prefetch(row + d);
    }
}

// Row by row, writes the scratch strip back to the columns at `store_to` (unless null) and then
// loads the columns at `load_from` (unless null) into the freed scratch row. Storing one strip
// and loading the next in the same pass touches each memory page once for both.
void exchange_rows(const StripWork& work, double* store_to, const double* load_from) {
    const std::size_t stride = 2 * work.row_points;
    const std::size_t row_bytes = 2 * kStripPoints * sizeof(double);
    for (std::size_t r = 0; r < work.rows; ++r) {
        double* scratch_row = work.points + 2 * r * kStripPoints;
        const double* ahead = load_from != nullptr ? load_from : store_to;
        if (r + kRowsAhead < work.rows) {
            prefetch_row(ahead + (r + kRowsAhead) * stride);
        }
        if (store_to != nullptr) {
            std::memcpy(store_to + r * stride, scratch_row, row_bytes);
        }
        if (load_from != nullptr) {
            std::memcpy(scratch_row, load_from + r * stride, row_bytes);
        }
    }
}

void run_strip_stages(const StripWork& work, bool inverse) {
    for (std::size_t span = 1; span < work.rows; span *= 2) {
        next_twiddles(work, span, fft_stage_step(2 * span * work.row_points, inverse));
        fft_butterfly_stage(work.kernel, work.points, work.rows * kStripPoints, span * kStripPoints,
                            work.twiddles);
    }
}

} // namespace

std::size_t fft_strip_scratch_doubles(std::size_t rows) {
    return 2 * rows * kStripPoints + fft_twiddle_run_doubles(rows / 2 * kStripPoints) +
           2 * (rows - 1);
}

void fft_strip_stages(FftKernel kernel, double* data, std::size_t rows, std::size_t row_points,
                      bool inverse, double* scratch) {
    const StripWork work = carve(kernel, rows, row_points, scratch);
    start_states(work, inverse);
    exchange_rows(work, nullptr, data);
    for (std::size_t column = 0; column < row_points; column += kStripPoints) {
        run_strip_stages(work, inverse);
        const std::size_t next = column + kStripPoints;
        exchange_rows(work, data + 2 * column, next < row_points ? data + 2 * next : nullptr);
    }
}
