// The trim report: where the leading and trailing sync tones were found, how clearly, and the
// frames the clean signal was cut between, as one flat JSON object.
#pragma once

#include "align/trim_points.h"

#include <string>

// Builds input_file, each occurrence's offset, channel, PSR, similarity and repetition PSRs
// (leading first), then sync_point and trim_point, within kTrimReportCapacity bytes; the last
// entry has no comma. False when an entry does not fit; `json` is then empty.
bool build_trim_report_json(const char* input_path, const TrimPoints& points, std::string& json);
