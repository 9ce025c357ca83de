#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/cards/cards.h"
#include "report/cards/check_status.h"
#include "report/cards/spectral_card.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

__attribute__((format(printf, 1, 2))) std::string format_text(const char* format, ...) {
    std::array<char, 256> text{};
    va_list args;
    va_start(args, format);
    std::vsnprintf(text.data(), text.size(), format, args);
    va_end(args);
    return text.data();
}

// "Checked ..." for the scan modes, from the first channel's record; empty when nothing was
// scanned. The edge-skip form follows the sweep_edge_skip_samples setting being set, and states
// the skip the scan applied.
std::string scan_subtitle(const ReportInputs& in) {
    const SpectralScanResult& scan = in.results.spectral.result.scan;
    if (!in.results.spectral.ran || scan.channels == 0 || spectral_scan_in_error(scan)) return {};
    const SpectralChannelResult& record = scan.channel[0];
    if (record.frames_scanned == 0) return {};
    const double rate = static_cast<double>(in.ref.sample_rate);
    const std::size_t points = static_cast<std::size_t>(record.frames_scanned);
    if (points > 1) {
        if (!in.results.config.spectral_fidelity.sweep_edge_skip_samples.set) {
            return format_text("Checked across the whole file (%zu points)", points);
        }
        const double skip_ms = static_cast<double>(record.edge_skipped_samples) * 1000.0 / rate;
        return format_text(
            "Checked across the whole file except the first and last %.0f ms (%zu points)", skip_ms,
            points);
    }
    const std::string position =
        spectral_position_text(frame_centre_seconds(in, record.chart_frame_start));
    const std::string duration = spectral_position_text(static_cast<double>(in.ref.frames) / rate);
    return format_text("Checked at %s of %s", position.c_str(), duration.c_str());
}

std::string card_head(const ReportInputs& in) {
    const SpectralOutcome& outcome = in.results.spectral.result;
    if (outcome.snapshot_mode) {
        return format_text(
            "<h3>Spectral Fidelity</h3><span class=\"sub\">%zu independent snapshots</span>",
            outcome.snapshots.snapshots.size());
    }
    const std::string subtitle = scan_subtitle(in);
    if (subtitle.empty()) return "<h3>Spectral Fidelity</h3>";
    return "<h3>Spectral Fidelity</h3><span class=\"sub\">" + subtitle + "</span>";
}

bool append_channel_block(TextBuffer& page, const ReportInputs& in, unsigned channel,
                          const char* suffix) {
    const SpectralOutcome& outcome = in.results.spectral.result;
    if (!outcome.snapshot_mode) return append_single_frame_block(page, in, channel, suffix);
    if (outcome.snapshots.snapshots.empty()) return append_short_overlap_note(page);
    return append_snapshot_widget(page, in, channel, suffix);
}

bool append_card_body(TextBuffer& page, const ReportInputs& in) {
    if (!in.results.spectral.ran) return true;
    const std::uint32_t channels = in.ref.channels;
    for (unsigned c = 0; c < gallery_blocks(channels); ++c) {
        if (!append_gallery_heading(page, channels, c) ||
            !append_channel_block(page, in, c, channel_suffix(channels, c))) {
            return false;
        }
    }
    return true;
}

} // namespace

bool append_spectral_card(TextBuffer& page, const ReportInputs& in) {
    // Spectral fidelity always gates the overall verdict.
    const Badge badge =
        check_badge(in.results.spectral.ran, true, spectral_passed(in.results.spectral.result));
    const std::string head = card_head(in);
    return append_card_open(page, "spectral", head.c_str(), &badge) && append_card_body(page, in) &&
           append_card_close(page);
}
