// Alignment: the per-channel lag between reference and DUT by FFT cross-correlation, the overlap
// a file offset gives, and the plain-words explanation of a failed alignment.
#pragma once

#include "align/alignment.h"
#include "align/alignment_diagnosis.h"
#include "align/overlap.h"
