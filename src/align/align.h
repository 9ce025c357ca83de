// Alignment: the per-channel lag between reference and DUT by FFT cross-correlation, and the
// plain-words explanation of a failed alignment.
#pragma once

#include "align/alignment.h"
#include "align/alignment_diagnosis.h"
