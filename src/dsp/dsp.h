// The transform kernel: power-of-two sizing, the in-place complex FFT (forward unscaled, inverse
// divided by n) used by alignment, sync-tone search and the spectral chart, and the Hann-windowed
// spectrum frames in dB and linear magnitude used by the spectral and distortion checks.
// The transform's pieces (bit reversal, twiddle recurrence, butterfly kernels, cache-blocked
// stages) have headers of their own for tests and benchmarks; other subsystems use these two.
// Also the median and nearest-rank percentile that every check's statistics share, the frame
// placement of frame-by-frame scans, the spectral fidelity comparison (one frame, its bands and the
// sweep peak search; the single-frame, continuous and snapshot forms) and the distortion (THD+N)
// check. And the loudness measure and comparison; its pieces (K-weighting, gated blocks, loudness
// range, true peak) have headers of their own for tests and benchmarks. And artifact detection,
// whose neighbourhood medians come from a sliding sorted window. And the min/max envelopes the
// waveform charts show, and the non-throwing scratch arrays other layers allocate through.
#pragma once

#include "dsp/artifact.h"
#include "dsp/distortion.h"
#include "dsp/envelope.h"
#include "dsp/fft.h"
#include "dsp/frame_plan.h"
#include "dsp/loudness.h"
#include "dsp/nothrow_array.h"
#include "dsp/spectral_bands.h"
#include "dsp/spectral_frame.h"
#include "dsp/spectral_result.h"
#include "dsp/spectral_scan.h"
#include "dsp/spectral_snapshots.h"
#include "dsp/spectrum_frame.h"
#include "dsp/statistics.h"
#include "dsp/sweep_search.h"
