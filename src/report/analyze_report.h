// The analyze report: one self-contained HTML page with the signal row, the KPI grid, the
// navigation tabs, every card, the footer, the embedded results JSON and the page scripts.
#pragma once

#include "report/report_inputs.h"

#include <string>

// Builds the whole page in memory, then writes it in one piece; false when an append fails or the
// file cannot be written completely (nothing partial is left behind).
bool write_analyze_report(const std::string& path, const ReportInputs& in);
