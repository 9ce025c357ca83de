// Alignment: the per-channel lag between reference and DUT by FFT cross-correlation, the
// plain-words explanation of a failed alignment, the sync tone with its matched-filter search, and
// the points between which a capture is trimmed.
#pragma once

#include "align/alignment.h"
#include "align/alignment_diagnosis.h"
#include "align/find_sync_tone.h"
#include "align/matched_filter.h"
#include "align/sync_tone.h"
#include "align/trim_points.h"
