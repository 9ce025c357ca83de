// The analyze report: one self-contained HTML page with the signal row, the KPI grid, the
// navigation tabs, every card, the footer, the embedded results JSON and the page scripts.
#pragma once

#include "audio/audio.h"
#include "report/page/report_inputs.h"

// Builds the whole page in memory, then writes it into `out` in one piece; false when an append
// fails or the file cannot be written completely. The caller puts the file in place.
bool write_analyze_report(FileReplacement& out, const ReportInputs& in);
