// Alignment: the per-channel lag between reference and DUT by FFT cross-correlation, the
// plain-words explanation of a failed alignment, and the sync tone with its matched-filter search.
#pragma once

#include "align/alignment.h"
#include "align/alignment_diagnosis.h"
#include "align/find_sync_tone.h"
#include "align/matched_filter.h"
#include "align/sync_tone.h"
