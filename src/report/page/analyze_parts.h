// The pieces of the analyze report between the top bar and the cards, and the embedded results
// JSON element: each appends its whole fragment and returns false at the first failed append.
#pragma once

#include "report/page/report_inputs.h"
#include "report/page/text_buffer.h"

#include <string_view>

// The signal row: both paths, then the reference's rate, format word and channel word.
bool append_signal_row(TextBuffer& page, const ReportInputs& in);

// The four KPI tiles (analysis mode, spectral fidelity, THD+N, overall verdict) and the note that
// follows when bit-exactness failed without gating.
bool append_kpi_grid(TextBuffer& page, const RunResults& results);

// The navigation links with their data-fail and data-nongating marks.
bool append_nav_tabs(TextBuffer& page, const RunResults& results);

// The "sonalyx-results" script element with every "</script" of `json` written as "<\/script".
bool append_results_element(TextBuffer& page, std::string_view json);
