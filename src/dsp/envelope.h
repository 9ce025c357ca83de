// Waveform envelopes: a view of one channel reduced to 4096 columns, each keeping the smallest
// and largest value (or level) of the frames it covers, for the pages' waveform charts. The
// reduction reads each sample of the view once, whatever the file's length.
#pragma once

#include "audio/audio.h"
#include "dsp/spectrum_frame.h"

#include <cstddef>
#include <cstdint>
#include <vector>

inline constexpr std::size_t kEnvelopeColumns = 4096;

enum class EnvelopeScale { linear, db };

// Per column the smallest and largest value (dB values floored at kDisplayFloorDb on the dB
// scale) and
// whether the column holds any frame.
struct Envelope {
    std::vector<double> min;
    std::vector<double> max;
    std::vector<std::uint8_t> valid;
};

// Reduces frames [first, first + count) of `channel` of `file`, read at file frame f + shift for
// view frame f, to kEnvelopeColumns columns (frames outside the file leave columns invalid).
Envelope reduce_envelope(const WavFile& file, unsigned channel, std::int64_t first,
                         std::size_t count, std::int64_t shift, EnvelopeScale scale);
