// What the analyze report is drawn from: the run's record, both decoded files (the charts read
// their samples), the finished results JSON text, and the record of the traces the page has
// embedded so far, which the report writer provides.
#pragma once

#include "audio/audio.h"
#include "report/charts/chart_data_sets.h"
#include "results/results.h"

#include <string_view>

struct ReportInputs {
    const RunResults& results;
    const WavFile& ref;
    const WavFile& dut;
    std::string_view json_text;
    ChartDataSets* chart_data = nullptr; // the traces the page has embedded; charts need it
};
