// Waveform envelopes: a view of one channel reduced to 4096 columns, each keeping the smallest
// and largest value (or level) of the frames it covers, for the pages' waveform charts. The
// reduction reads each sample of the view once, whatever the file's length.
#pragma once

#include "audio/wav_file.h"
#include "dsp/spectrum_frame.h"

#include <cstddef>
#include <cstdint>
#include <deque>
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

// Reductions already made while one page is built, so charts that show the same view of the same
// file (the overview and the full-signal charts of the deep-scan cards) read its samples once.
// The files must outlive the cache.
struct EnvelopeCache {
    struct Entry {
        const WavFile* file = nullptr;
        unsigned channel = 0;
        std::int64_t first = 0;
        std::size_t count = 0;
        std::int64_t shift = 0;
        EnvelopeScale scale = EnvelopeScale::linear;
        Envelope envelope;
    };
    std::deque<Entry> entries; // a deque: adding an entry keeps earlier ones in place
};

// Reduces frames [first, first + count) of `channel` of `file`, read at file frame f + shift for
// view frame f, to kEnvelopeColumns columns (frames outside the file leave columns invalid).
Envelope reduce_envelope(const WavFile& file, unsigned channel, std::int64_t first,
                         std::size_t count, std::int64_t shift, EnvelopeScale scale);

// reduce_envelope through `cache` (when not null): a view reduced before is taken from it.
const Envelope& cached_envelope(EnvelopeCache* cache, const WavFile& file, unsigned channel,
                                std::int64_t first, std::size_t count, std::int64_t shift,
                                EnvelopeScale scale, Envelope& scratch);
