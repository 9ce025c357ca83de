#include "dsp/spectral_record_fixture.h"

#include "dsp/spectral_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

namespace {

bool g_fail_nothrow_arrays = false;

// Element min(round(p (m - 1)), m - 1) of the fully sorted list; 0 for an empty one.
double sorted_percentile(const std::vector<double>& sorted, double p) {
    if (sorted.empty()) return 0.0;
    const double last = static_cast<double>(sorted.size() - 1);
    const auto index = static_cast<std::size_t>(std::min(std::round(p * last), last));
    return sorted[index];
}

} // namespace

// Replaces the non-throwing array allocation of the whole test program so that allocation failure
// can be provoked; otherwise it hands the request to the ordinary array allocation (whose matching
// delete[] frees it).
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    if (g_fail_nothrow_arrays) return nullptr;
    try {
        return ::operator new[](size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void spectral_fail_nothrow_arrays(bool on) {
    g_fail_nothrow_arrays = on;
}

SpectralSettings spectral_test_settings(std::size_t n) {
    SpectralSettings s;
    s.n = n;
    s.defaults = {1e300, -100.0, -70.0, -60.0, 5.0, 10.0, 1.0};
    return s;
}

ExpectedRecord spectral_expected_record(const WavFile& ref, const WavFile& dut,
                                        std::int64_t dut_offset, const SpectralSettings& settings,
                                        std::span<const std::size_t> starts, unsigned channel) {
    SpectralFrameHarness h;
    h.n = settings.n;
    h.mode = settings.mode;
    h.relative_floor_db = settings.relative_floor_db;
    h.sweep = settings.sweep;
    h.bands = spectral_band_table(settings.bands, settings.defaults);
    ExpectedRecord e;
    double worst = -1.0;
    bool failing_peak = false;
    for (const std::size_t start : starts) {
        const SpectralFrameResult r = spectral_harness_run(h, ref, dut, start, dut_offset, channel);
        if (r.gated) {
            ++e.frames_gated;
            continue;
        }
        e.bins_compared += r.bins_compared;
        e.bins_excluded += r.bins_excluded;
        e.bins_failed += r.bins_failed;
        failing_peak = failing_peak || r.failing_peak;
        if (r.worst_bin >= 0 && r.worst_ratio > worst) {
            worst = r.worst_ratio;
            e.worst_ratio = r.worst_ratio;
            e.worst_diff_db = r.worst_diff_db;
            e.worst_is_peak = r.worst_is_peak;
            e.worst_frame_start = start;
            e.worst_freq_hz = spectral_bin_hz(static_cast<std::size_t>(r.worst_bin), settings.n,
                                              static_cast<double>(ref.sample_rate));
        }
    }
    const std::span<const double> pooled = spectral_harness_ratios(h);
    std::vector<double> sorted(pooled.begin(), pooled.end());
    std::sort(sorted.begin(), sorted.end());
    e.p50 = sorted_percentile(sorted, 0.5);
    e.p95 = sorted_percentile(sorted, 0.95);
    e.p99 = sorted_percentile(sorted, 0.99);
    e.passed = sorted.empty() || (e.p99 <= 1.00001 && !failing_peak);
    return e;
}

void expect_record(const SpectralChannelResult& actual, const ExpectedRecord& expected,
                   std::size_t frames) {
    EXPECT_FALSE(actual.insufficient_samples);
    EXPECT_EQ(actual.frames_scanned, frames);
    EXPECT_EQ(actual.frames_gated, expected.frames_gated);
    EXPECT_EQ(actual.frame_gated, frames > 0 && expected.frames_gated == frames);
    EXPECT_EQ(actual.bins_compared, expected.bins_compared);
    EXPECT_EQ(actual.bins_excluded, expected.bins_excluded);
    EXPECT_EQ(actual.bins_failed, expected.bins_failed);
    EXPECT_EQ(actual.p50_ratio, expected.p50);
    EXPECT_EQ(actual.p95_ratio, expected.p95);
    EXPECT_EQ(actual.p99_ratio, expected.p99);
    EXPECT_EQ(actual.worst_ratio, expected.worst_ratio);
    EXPECT_EQ(actual.worst_diff_db, expected.worst_diff_db);
    EXPECT_EQ(actual.worst_freq_hz, expected.worst_freq_hz);
    EXPECT_EQ(actual.worst_is_peak, expected.worst_is_peak);
    EXPECT_EQ(actual.worst_frame_start, expected.worst_frame_start);
    EXPECT_EQ(actual.passed, expected.passed);
}
