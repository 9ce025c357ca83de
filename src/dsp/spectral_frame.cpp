#include "dsp/spectral_frame.h"

#include "dsp/spectral_bin.h"
#include "dsp/spectral_peaks.h"
#include "dsp/spectrum_frame.h"

#include <algorithm>

namespace {

// Every bin for the multitone mode and for a sweep whose frequencies are not configured, else the
// bins around the tone the sweep must hold in this frame.
BinRange peak_search_range(const WavFile& ref, std::size_t start, const SpectralFrameSetup& setup) {
    if (setup.mode == SpectralMode::multitone || !setup.sweep.windowing) {
        return {0, setup.bin_count - 1};
    }
    const double freq =
        sweep_expected_frequency(setup.mode, setup.sweep, start, setup.n, ref.frames);
    return sweep_search_range(freq, static_cast<double>(ref.sample_rate), setup.n, setup.bin_count,
                              setup.sweep.window_cents);
}

// Only the amplitude sweep uses a relative floor, in place of the noise floor of the peak's band.
bool uses_relative_floor(const SpectralFrameSetup& setup) {
    return setup.mode == SpectralMode::amp_sweep && setup.relative_floor_db.has_value();
}

void mark_peaks(std::span<const double> ref_db, const SpectralFrameSetup& setup,
                const SpectralFrameResult& frame, std::span<std::uint8_t> peak) {
    const SpectralBand& band = setup.bands[frame.peak_band];
    const double level = ref_db[frame.ref_peak_bin];
    switch (setup.mode) {
    case SpectralMode::multitone:
        spectral_mark_run_peaks(ref_db, setup.bands, setup.band_of_bin, peak);
        return;
    case SpectralMode::freq_sweep:
        if (level > band.noise_floor_db) peak[frame.ref_peak_bin] = 1;
        return;
    case SpectralMode::amp_sweep:
        if (level > band.peak_threshold_db) peak[frame.ref_peak_bin] = 1;
        return;
    }
}

// Counts one bin and keeps it as the worst when its ratio is strictly the highest so far.
void tally_bin(SpectralFrameResult& frame, std::size_t k, const SpectralBinOutcome& bin,
               bool is_peak) {
    if (bin.excluded) {
        ++frame.bins_excluded;
        return;
    }
    ++frame.bins_compared;
    if (bin.failed) {
        ++frame.bins_failed;
        if (is_peak) frame.failing_peak = true;
    }
    if (bin.ratio > frame.worst_ratio) {
        frame.worst_bin = static_cast<long>(k);
        frame.worst_ratio = bin.ratio;
        frame.worst_diff_db = bin.diff_db;
        frame.worst_is_peak = is_peak;
        frame.worst_tolerance_db = bin.tolerance_db;
    }
}

void compare_bins(const SpectralFrameSetup& setup, SpectralFrameBuffers& buffers,
                  SpectralFrameResult& frame) {
    const bool relative = uses_relative_floor(setup);
    for (std::size_t k = 0; k < setup.bin_count; ++k) {
        const std::size_t b = setup.band_of_bin[k];
        const SpectralBand& band = setup.bands[b];
        const double floor = relative && b == frame.peak_band ? frame.gate_db : band.noise_floor_db;
        const bool is_peak = buffers.peak[k] != 0;
        const SpectralBinOutcome bin =
            spectral_compare_bin(floor, buffers.ref_db[k], buffers.dut_db[k], is_peak, band);
        if (!bin.excluded) buffers.ratios[buffers.ratio_count++] = bin.ratio;
        tally_bin(frame, k, bin, is_peak);
    }
}

} // namespace

SpectralFrameResult spectral_compare_frame(const AlignedPair& pair, unsigned channel,
                                           std::size_t start, const SpectralFrameSetup& setup,
                                           SpectralFrameBuffers& buffers) {
    SpectralFrameResult frame;
    const std::size_t dut_start =
        static_cast<std::size_t>(static_cast<std::int64_t>(start) + pair.offset);
    spectrum_db_frame(*pair.ref, channel, start, setup.n, buffers.ref_db);
    spectrum_db_frame(*pair.dut, channel, dut_start, setup.n, buffers.dut_db);
    std::fill_n(buffers.peak, setup.bin_count, std::uint8_t{0});
    // Without bins there is no peak that could clear the gate.
    frame.gated = setup.bin_count == 0;
    if (frame.gated) return frame;

    const std::span<const double> ref_db(buffers.ref_db, setup.bin_count);
    frame.ref_peak_bin = spectral_find_peak(ref_db, peak_search_range(*pair.ref, start, setup));
    frame.peak_band = setup.band_of_bin[frame.ref_peak_bin];
    const SpectralBand& band = setup.bands[frame.peak_band];
    const double peak_db = ref_db[frame.ref_peak_bin];
    frame.gate_db = spectral_gate_level(setup.mode, band, peak_db, setup.relative_floor_db);
    frame.peak_band_floor_db = uses_relative_floor(setup) ? frame.gate_db : band.noise_floor_db;
    frame.gated = !(peak_db > frame.gate_db);
    if (frame.gated) return frame;

    mark_peaks(ref_db, setup, frame, std::span<std::uint8_t>(buffers.peak, setup.bin_count));
    compare_bins(setup, buffers, frame);
    return frame;
}
