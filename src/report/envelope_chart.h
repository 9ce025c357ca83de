// The waveform envelope chart: a view of one channel reduced to 4096 min/max columns, drawn as
// filled outlines of the reference and optionally the DUT, with grid, labels, failure markers and
// the JSON data element the page script redraws from.
#pragma once

#include "audio/wav_file.h"
#include "report/text_buffer.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

inline constexpr std::size_t kEnvelopeColumns = 4096;

enum class EnvelopeScale { linear, db };

struct ChartMarker {
    std::string label; // escaped when written
    double frac = 0.0; // position as a fraction 0..1 of the view
};

// Per column the smallest and largest value (dB values floored at -140 on the dB scale) and
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

struct EnvelopeView {
    const WavFile* ref = nullptr;
    const WavFile* dut = nullptr; // no DUT trace when null
    std::int64_t dut_offset = 0;  // reference frame f is drawn with DUT frame f + dut_offset
    unsigned channel = 0;
    std::int64_t first_frame = 0; // the view, in reference frames
    std::size_t frame_count = 0;
    EnvelopeScale scale = EnvelopeScale::linear;
    const char* id_suffix = ""; // appended to the svg and data element ids
    const char* title = "";     // the aria label: "Full-file waveform overview" or a detail view
    std::span<const ChartMarker> markers;
    std::optional<double> detail_frac; // the dashed detail-position line, when given
    EnvelopeCache* cache = nullptr;    // reuse reductions across the page, when given
};

// Reduces frames [first, first + count) of `channel` of `file`, read at file frame f + shift for
// view frame f, to kEnvelopeColumns columns (frames outside the file leave columns invalid).
Envelope reduce_envelope(const WavFile& file, unsigned channel, std::int64_t first,
                         std::size_t count, std::int64_t shift, EnvelopeScale scale);

// reduce_envelope through `cache` (when not null): a view reduced before is taken from it.
const Envelope& cached_envelope(EnvelopeCache* cache, const WavFile& file, unsigned channel,
                                std::int64_t first, std::size_t count, std::int64_t shift,
                                EnvelopeScale scale, Envelope& scratch);

// The SVG and its data element "sx-envelope-data<suffix>".
bool append_envelope_chart(TextBuffer& page, const EnvelopeView& view);
