// A constructed run for the Spectral Fidelity card tests: a 1000 Hz tone at 8000 Hz (exactly on
// bin 128 of a 1024-point frame) in the reference, the same tone at half the amplitude in the
// DUT, which starts `kDutLead` frames late, and records filled in by each test.
#pragma once

#include "report/page/report_inputs.h"
#include "results/run_results.h"
#include "support/memory_wav.h"
#include "support/signal_gen.h"

#include <cstddef>
#include <cstdint>
#include <vector>

inline constexpr std::uint32_t kCardRate = 8000;
inline constexpr std::size_t kCardFft = 1024;
inline constexpr std::size_t kCardFrames = 16000; // 2.0 s
inline constexpr std::int64_t kDutLead = 4000;    // silent frames before the DUT's tone

// A channel of the reference: the tone at `amplitude`, kCardFrames long.
inline std::vector<double> card_tone(double amplitude) {
    return signal_sine(1000.0, amplitude, kCardRate, kCardFrames);
}

// The DUT channel: kDutLead zeros, then the tone at half the reference's amplitude.
inline std::vector<double> card_dut_tone(double amplitude) {
    std::vector<double> dut(static_cast<std::size_t>(kDutLead), 0.0);
    const std::vector<double> tone = card_tone(amplitude / 2.0);
    dut.insert(dut.end(), tone.begin(), tone.end());
    return dut;
}

// A passing one-frame record at the centred frame: worst bin 1000 Hz, +0.25 dB, the tone's bin
// flagged as a peak.
inline SpectralChannelResult card_record() {
    SpectralChannelResult r;
    r.passed = true;
    r.frames_scanned = 1;
    r.bins_compared = 512;
    r.bins_failed = 0;
    r.p99_ratio = 0.123;
    r.worst_ratio = 0.5;
    r.worst_diff_db = 0.25;
    r.worst_freq_hz = 1000.0;
    r.worst_frame_start = (kCardFrames - kCardFft) / 2;
    r.chart_frame_start = r.worst_frame_start;
    r.worst_tolerance_db = 0.5;
    r.chart_tiers = {-100.0, -60.0, -20.0};
    r.chart_peak_bins = {128};
    return r;
}

struct SpectralCardCase {
    RunResults results;
    WavFile ref;
    WavFile dut;

    explicit SpectralCardCase(unsigned channels) {
        std::vector<std::vector<double>> ref_channels(channels, card_tone(0.5));
        std::vector<std::vector<double>> dut_channels(channels, card_dut_tone(0.5));
        ref = memory_wav(ref_channels, kCardRate);
        dut = memory_wav(dut_channels, kCardRate);
        results.sample_rate = kCardRate;
        results.alignment.file_offset = kDutLead;
        results.alignment.aligned = true;
        results.config.spectral_fidelity.fft_size.value = kCardFft;
        results.spectral.ran = true;
        results.spectral.result.scan.channels = channels;
        for (unsigned c = 0; c < channels && c < 2; ++c)
            results.spectral.result.scan.channel[c] = card_record();
    }

    // The record as the driver hands it to the report: with the figures taken from both files.
    ReportInputs inputs() const {
        prepared = results;
        build_page_figures(prepared, ref, dut, prepared.figures);
        chart_data = {};
        return {prepared, ref, dut, "", &chart_data};
    }
    SpectralChannelResult& scan(unsigned channel) {
        return results.spectral.result.scan.channel[channel];
    }

  private:
    mutable RunResults prepared;
    mutable ChartDataSets chart_data;
};
