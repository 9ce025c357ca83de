// The plot page for one file (spectrum on log and linear frequency scales, waveform overview and
// time energy per channel), the plot JSON summary, and the error page that stands in for a
// report when two files could not be compared.
#pragma once

#include "audio/audio.h"
#include "results/results.h"

#include <cstddef>
#include <string>

struct PlotData {
    std::string input_path;
    const WavFile* file = nullptr;
    std::size_t fft_size = 8192;        // the spectral frame's length
    double noise_floor_db = -100.0;     // drawn as the chart's noise-floor tier
    const TesterInfo* tester = nullptr; // null when tester information is not shown
    PlotFigures figures;                // what the charts draw, taken from the file beforehand
};

// Each writer builds its text in memory and writes it into `out` in one piece; false when the text
// cannot be built or written. The caller puts the file in place.
bool write_plot_page(FileReplacement& out, const PlotData& plot);

// status, input_file, sample_rate, channels, bit_depth, sample_format, frame_count,
// duration_seconds, the input path written whole however long it is; false when memory runs out
// or the file cannot be written.
bool write_plot_json(FileReplacement& out, const std::string& input_path, const WavFile& file);

bool write_error_page(FileReplacement& out, const char* ref_path, const char* dut_path,
                      const char* message);
