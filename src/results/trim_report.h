// The trim report: where the leading and trailing sync tones were found, how clearly, and the
// frames the clean signal was cut between, as one flat JSON object.
#pragma once

#include "align/align.h"

#include <string>

// Builds input_file (however long the path), each occurrence's offset, channel, PSR, similarity
// and repetition PSRs (leading first), then sync_point and trim_point; the last entry has no
// comma. False only when memory ran out or a PSR or similarity is NaN or infinite (an internal
// fault); `json` is then empty.
bool build_trim_report_json(const char* input_path, const TrimPoints& points, std::string& json);
