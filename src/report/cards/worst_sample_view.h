// What the Time Domain and Impulse Template cards show around a channel's worst sample: the tile
// row that names it with its amplitudes, and the two waveform charts (the full signal with the
// detail position marked, and a detail view around the worst sample).
#pragma once

#include "report/page/report_inputs.h"
#include "report/page/text_buffer.h"

#include <cstddef>
#include <cstdint>
#include <optional>

// The worst sample of a channel record that failed, else nothing.
template <typename Channel> std::optional<std::uint64_t> failing_sample(const Channel& c) {
    return c.has_failures ? std::optional<std::uint64_t>(c.worst_sample) : std::nullopt;
}

// "<div class=\"tile-row\">\n" and the Worst Sample tile "%ld (%.3f s)"; the check's own tile
// follows, then append_amplitudes_row_close.
bool append_worst_sample_row_open(TextBuffer& page, std::uint64_t worst, std::uint32_t rate);
// The "Ref / DUT Amplitude" tile "%.6f / %.6f" and the end of the row.
bool append_amplitudes_row_close(TextBuffer& page, double ref_amp, double dut_amp);

struct WorstSampleCharts {
    const char* frame_stem = ""; // "sx-timedomain": ids "<stem>-frame<ch>", "<stem>-zoom-frame<ch>"
    const char* suffix_stem = "";  // "-timedomain": suffixes "<stem><ch>", "<stem>-zoom<ch>"
    const char* marker_label = ""; // names the worst sample on the detail view
};

// Both charts of `channel`: the full view and `zoom_figure` around the worst sample; `worst` is
// the worst sample when the channel failed.
bool append_worst_sample_charts(TextBuffer& page, const ReportInputs& in, unsigned channel,
                                const WorstSampleCharts& charts, std::optional<std::uint64_t> worst,
                                const WaveformFigure& zoom_figure);
