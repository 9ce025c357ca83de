#include "dsp/spectral_fixture.h"

#include "support/memory_wav.h"
#include "support/signal_gen.h"

WavFile spectral_wav(const std::vector<std::vector<double>>& channels, double sample_rate) {
    return memory_wav(channels, static_cast<std::uint32_t>(sample_rate));
}

double spectral_bin_hz(std::size_t bin, std::size_t n, double sample_rate) {
    return static_cast<double>(bin) * sample_rate / static_cast<double>(n);
}

std::vector<double> spectral_tones(std::span<const SpectralTone> tones, std::size_t frames,
                                   double sample_rate) {
    std::vector<double> out(frames, 0.0);
    for (const SpectralTone& tone : tones) {
        const std::vector<double> sine =
            signal_sine(tone.freq_hz, tone.amplitude, sample_rate, frames);
        for (std::size_t i = 0; i < frames; ++i) {
            out[i] += sine[i];
        }
    }
    return out;
}

std::vector<double> spectral_silence(std::size_t frames) {
    return std::vector<double>(frames, 0.0);
}

std::vector<double> spectral_scaled(const std::vector<double>& samples, double gain) {
    std::vector<double> out(samples);
    for (double& x : out) {
        x *= gain;
    }
    return out;
}

SpectralFrameResult spectral_harness_run(SpectralFrameHarness& h, const WavFile& ref,
                                         const WavFile& dut, std::size_t start,
                                         std::int64_t dut_offset, unsigned channel) {
    const std::size_t bins = h.n / 2;
    spectral_band_map(h.bands, bins, static_cast<double>(ref.sample_rate), h.n, h.band_of_bin);
    h.ref_db.assign(bins, 0.0);
    h.dut_db.assign(bins, 0.0);
    h.peak.assign(bins, 0);
    h.ratios.resize(h.ratio_count + bins);

    SpectralFrameSetup setup;
    setup.n = h.n;
    setup.bin_count = bins;
    setup.mode = h.mode;
    setup.relative_floor_db = h.relative_floor_db;
    setup.bands = h.bands;
    setup.band_of_bin = h.band_of_bin;
    setup.sweep = h.sweep;

    SpectralFrameBuffers buffers;
    buffers.ref_db = h.ref_db.data();
    buffers.dut_db = h.dut_db.data();
    buffers.peak = h.peak.data();
    buffers.ratios = h.ratios.data();
    buffers.ratio_count = h.ratio_count;
    const SpectralFrameResult result =
        spectral_compare_frame(aligned_pair(ref, dut, dut_offset), channel, start, setup, buffers);
    h.ratio_count = buffers.ratio_count;
    return result;
}

std::span<const double> spectral_harness_ratios(const SpectralFrameHarness& h) {
    return std::span<const double>(h.ratios.data(), h.ratio_count);
}

std::vector<std::size_t> spectral_harness_peaks(const SpectralFrameHarness& h) {
    std::vector<std::size_t> bins;
    for (std::size_t k = 0; k < h.peak.size(); ++k) {
        if (h.peak[k] != 0) bins.push_back(k);
    }
    return bins;
}
