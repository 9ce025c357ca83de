#include "report/cards/spectral_card.h"

#include "report/cards/card_pieces.h"

#include <algorithm>
#include <span>

namespace {

// The ratio above which a bin fails.
constexpr double kFailRatio = 1.00001;

// The highest level of a chart spectrum; the chart's floor of -140 dB when it is empty.
double spectrum_peak_db(std::span<const double> levels) {
    if (levels.empty()) return -140.0;
    return *std::max_element(levels.begin(), levels.end());
}

// The worst bin's tolerance, and where its frame lies when the scan compared several frames
// (a single frame's position is already in the card's sub-title).
bool append_worst_bin_notes(TextBuffer& page, const ReportInputs& in,
                            const SpectralChannelResult& record) {
    if (!text_append_format(page, "<div class=\"v-sub\">tolerance %.6f dB</div>",
                            record.worst_tolerance_db)) {
        return false;
    }
    if (record.frames_scanned <= 1) return true;
    const std::string position =
        spectral_position_text(frame_centre_seconds(in, record.worst_frame_start));
    return text_append_format(page, "<div class=\"v-sub\">at %s</div>", position.c_str());
}

bool append_level_tile(TextBuffer& page, const char* key, std::span<const double> levels) {
    return append_tile_open(page, key, false) &&
           text_append_format(page, "%.1f dB", spectrum_peak_db(levels)) && append_tile_close(page);
}

bool append_worst_bin_tile(TextBuffer& page, const ReportInputs& in,
                           const SpectralChannelResult& record) {
    return append_tile_open(page, "Worst Bin", false) &&
           text_append_format(page, "%.1f Hz, %+.6f dB", record.worst_freq_hz,
                              record.worst_diff_db) &&
           append_worst_bin_notes(page, in, record) && append_tile_close(page);
}

bool append_tile_row(TextBuffer& page, const ReportInputs& in, const SpectralChannelResult& record,
                     const SpectrumFigure& spectra) {
    return text_append(page, "<div class=\"tile-row\">\n") &&
           append_tile_count(page, "Bins Compared", false, record.bins_compared) &&
           append_tile_count(page, "Bins Failed", record.bins_failed > 0, record.bins_failed) &&
           append_tile_open(page, "P99 Ratio", record.p99_ratio > kFailRatio) &&
           text_append_format(page, "%.3f", record.p99_ratio) && append_tile_close(page) &&
           append_worst_bin_tile(page, in, record) &&
           append_level_tile(page, "Ref Peak Level", spectra.ref_db) &&
           append_level_tile(page, "DUT Peak Level", spectra.dut_db) && append_tile_row_close(page);
}

} // namespace

bool append_short_overlap_note(TextBuffer& page) {
    return text_append(
        page, "<p class=\"chart-note\">Not enough aligned samples for a snapshot frame.</p>\n");
}

bool append_single_frame_block(TextBuffer& page, const ReportInputs& in, unsigned channel,
                               const char* suffix) {
    const SpectralChannelResult& record = in.results.spectral.result.scan.channel[channel];
    if (record.frame_gated) {
        return text_append(page, "<p class=\"chart-note\">Frame gated -- reference level did not "
                                 "clear the noise floor in this snapshot.</p>\n");
    }
    if (record.insufficient_samples) return append_short_overlap_note(page);
    const std::string frame_id = std::string("sx-spectral-frame") + suffix;
    ChartFrame frame;
    frame.kind = ChartKind::spectral;
    frame.frame_id = frame_id.c_str();
    frame.title = "Ref vs. DUT magnitude spectrum";
    frame.trace_toggle = true;
    const SpectrumFigure& spectra = in.results.figures.spectral_scan[channel];
    return append_record_chart(page, in, record, spectra, frame, suffix) &&
           append_tile_row(page, in, record, spectra);
}
