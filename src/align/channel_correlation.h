// The correlation search on channels read in place from a file's interleaved samples.
#pragma once

#include "align/alignment.h"
#include "audio/audio.h"

#include <cstddef>

// cross_correlate on two channel views.
CorrelationPeak correlate_channels(const ChannelView& a, const ChannelView& b, std::size_t max_lag,
                                   bool invert);
