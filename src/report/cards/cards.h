// The cards of the analyze report, one writer each, in page order. Each appends its whole section
// (or nothing, for a card its check leaves out) and returns false at the first failed append.
#pragma once

#include "report/page/report_inputs.h"
#include "report/page/text_buffer.h"

bool append_alignment_card(TextBuffer& page, const ReportInputs& in);
bool append_spectral_card(TextBuffer& page, const ReportInputs& in);
bool append_overview_card(TextBuffer& page, const ReportInputs& in);
bool append_bitexact_card(TextBuffer& page, const ReportInputs& in);
bool append_level_card(TextBuffer& page, const ReportInputs& in);
bool append_artifact_card(TextBuffer& page, const ReportInputs& in);
bool append_distortion_card(TextBuffer& page, const ReportInputs& in);
bool append_loudness_card(TextBuffer& page, const ReportInputs& in);
bool append_time_domain_card(TextBuffer& page, const ReportInputs& in);
bool append_impulse_template_card(TextBuffer& page, const ReportInputs& in);
bool append_configuration_card(TextBuffer& page, const ReportInputs& in);
