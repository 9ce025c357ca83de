// What the analyze report is drawn from: the run's record, both decoded files (the charts read
// their samples) and the finished results JSON text.
#pragma once

#include "audio/wav_file.h"
#include "results/run_results.h"

#include <string_view>

struct ReportInputs {
    const RunResults& results;
    const WavFile& ref;
    const WavFile& dut;
    std::string_view json_text;
};
