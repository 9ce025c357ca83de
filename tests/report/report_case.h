// A constructed analyze run for the report tests: a short sine in both files (the DUT identical
// to the reference), settings resolved to their built-in defaults, the alignment of identical
// files, and records that each test fills in; the figures are taken when the inputs are asked for.
#pragma once

#include "config/analysis_config.h"
#include "config/configuration_rows.h"
#include "config/resolve_settings.h"
#include "report/page/report_inputs.h"
#include "results/run_results.h"
#include "support/memory_wav.h"
#include "support/signal_gen.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

inline constexpr std::uint32_t kCaseRate = 48000;
inline constexpr std::size_t kCaseFrames = 4800; // 0.1 s

struct ReportCase {
    RunResults results;
    WavFile ref;
    WavFile dut;
    std::string json = "{\"status\": \"analyzed\"}";

    explicit ReportCase(unsigned channels, std::size_t frames = kCaseFrames) {
        const std::vector<double> tone = signal_sine(1000.0, 0.5, kCaseRate, frames);
        const std::vector<std::vector<double>> samples(channels, tone);
        ref = memory_wav(samples, kCaseRate);
        dut = memory_wav(samples, kCaseRate);
        results.ref = {"/audio/ref.wav", kCaseRate, channels, 64, true, frames};
        results.dut = {"/audio/dut.wav", kCaseRate, channels, 64, true, frames};
        results.sample_rate = kCaseRate;
        results.alignment.channels = channels;
        results.alignment.aligned = true;
        for (std::size_t c = 0; c < channels && c < 2; ++c)
            results.alignment.channel[c] = {true, 0, 1.0, false, false, AlignmentState::measured};
        resolve_analysis_config({}, {}, {}, kCaseRate, frames, results.config);
        results.configuration = configuration_rows(results.config);
    }

    // The record as the driver hands it to the report: with the figures taken from both files.
    ReportInputs inputs() const {
        prepared = results;
        build_page_figures(prepared, ref, dut, prepared.figures);
        chart_data = {};
        return {prepared, ref, dut, json, &chart_data};
    }

  private:
    mutable RunResults prepared;
    mutable ChartDataSets chart_data;
};
