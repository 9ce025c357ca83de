// Pieces of the Spectral Fidelity card shared by its files: positions in "%d:%04.1f" form, the
// chart of one channel record (reference and DUT spectra of the record's chart frame), the
// single-frame block of the scan modes and the snapshot widget of the snapshot mode.
#pragma once

#include "dsp/dsp.h"
#include "report/charts/chart_frame.h"
#include "report/page/report_inputs.h"
#include "report/page/text_buffer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// A time as minutes and seconds, "%d:%04.1f" (rounded to tenths first, so 59.97 s reads "1:00.0").
std::string spectral_position_text(double seconds);

// The time of the centre of the run's spectral frame (fft_size frames) that starts at reference
// frame `start`: (start + fft_size / 2) / sample_rate, as the snapshots report their times.
double frame_centre_seconds(const ReportInputs& in, std::uint64_t start);

// The chart frame `frame` holding the spectral chart of `record` (tier lines, the fail marker
// when the record failed, the labelled peaks), or the short-overlap note when a spectrum is empty.
bool append_record_chart(TextBuffer& page, const ReportInputs& in,
                         const SpectralChannelResult& record, const SpectrumFigure& spectra,
                         const ChartFrame& frame, const std::string& id_suffix);

// "<p class=\"chart-note\">Not enough aligned samples for a snapshot frame.</p>\n"
bool append_short_overlap_note(TextBuffer& page);

// Scan modes: the gated or too-short note, or the chart and the tile row of the channel.
bool append_single_frame_block(TextBuffer& page, const ReportInputs& in, unsigned channel,
                               const char* suffix);

// Snapshot mode: roll-up, tabs, panels and tab script of one channel.
bool append_snapshot_widget(TextBuffer& page, const ReportInputs& in, unsigned channel,
                            const char* suffix);
