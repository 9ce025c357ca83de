// The Distortion (THD+N) card: the spectrum of the worst frame of the channel with the highest
// THD+N, its fundamental and THD+N against the tolerance, and the scan counts and percentiles.
#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/cards/cards.h"
#include "report/cards/check_status.h"
#include "report/cards/ref_only_note.h"
#include "report/cards/spectral_card.h"
#include "report/charts/chart_frame.h"
#include "report/charts/spectral_chart.h"

#include <vector>

namespace {

// THD+N levels at or below this are shown as "less than" it.
constexpr double kThdnFloorDb = -140.0;

// The worst frame of the channel the page figures picked.
bool append_worst_frame_chart(TextBuffer& page, const ReportInputs& in) {
    const std::size_t n = in.results.config.spectral_fidelity.fft_size.value;
    const SpectrumFigure& spectra = in.results.figures.distortion;
    if (spectra.ref_db.empty()) return append_short_overlap_note(page);
    SpectralChartData chart;
    chart.ref_db = spectra.ref_db;
    chart.dut_db = spectra.dut_db;
    chart.bin_hz = static_cast<double>(in.ref.sample_rate) / static_cast<double>(n);
    chart.nyquist_hz = static_cast<double>(in.ref.sample_rate) / 2.0;
    chart.id_suffix = "-distortion";
    chart.data_sets = in.chart_data;
    // The check's gate for the fundamental is the one threshold worth drawing here.
    chart.tiers.noise_floor_db = in.results.config.distortion.noise_floor_db.value;
    const ChartFrame frame{.kind = ChartKind::spectral,
                           .frame_id = "sx-distortion-frame",
                           .title = "Ref vs. DUT magnitude spectrum, worst frame",
                           .trace_toggle = true};
    return append_chart_frame_open(page, frame) && append_spectral_chart(page, chart) &&
           append_chart_frame_close(page, frame);
}

bool append_snapshot(TextBuffer& page, const ReportInputs& in, unsigned channel) {
    const DistortionChannelResult& c = in.results.distortion.result.channel[channel];
    // The same note the Spectral Fidelity card gives for an overlap shorter than one frame.
    if (c.insufficient_samples) return append_short_overlap_note(page);
    if (c.frame_gated || c.frames_scanned == 0) {
        return text_append(page, "<p class=\"chart-note\">Frame gated -- no fundamental cleared "
                                 "the noise floor in this snapshot.</p>\n");
    }
    return append_worst_frame_chart(page, in);
}

bool append_thdn_text(TextBuffer& page, const DistortionChannelResult& c) {
    if (c.thdn_db <= kThdnFloorDb)
        return text_append_format(page, "&lt; 0.00001%% (&lt; %.0f dB)", kThdnFloorDb);
    return text_append_format(page, "%.4f%% (%.1f dB)", c.thdn_ratio * 100.0, c.thdn_db);
}

bool append_tiles(TextBuffer& page, const DistortionChannelResult& c) {
    return text_append_format(page,
                              "<div class=\"tile-row\">\n<div class=\"tile\"><div class=\"k\">"
                              "Fundamental</div><div class=\"v\">%.1f Hz</div></div>\n",
                              c.fundamental_freq_hz) &&
           append_tile_open(page, "THD+N", !c.passed) && append_thdn_text(page, c) &&
           append_tile_close(page) &&
           text_append(page, "<div class=\"tile\"><div class=\"k\">Tolerance</div><div "
                             "class=\"v\">1.00%</div></div>\n</div>\n") &&
           text_append_format(page,
                              "<div class=\"tile-row card-row-gap\">\n<div class=\"tile\"><div "
                              "class=\"k\">Frames Scanned</div><div class=\"v\">%zu</div></div>\n"
                              "<div class=\"tile\"><div class=\"k\">Frames Gated</div><div "
                              "class=\"v\">%zu</div></div>\n",
                              c.frames_scanned, c.frames_gated) &&
           text_append_format(page,
                              "<div class=\"tile\"><div class=\"k\">P50 THD+N</div><div "
                              "class=\"v\">%.4f%%</div></div>\n<div class=\"tile\"><div "
                              "class=\"k\">P95 THD+N</div><div class=\"v\">%.4f%%</div></div>\n"
                              "</div>\n",
                              c.p50_thdn_ratio * 100.0, c.p95_thdn_ratio * 100.0);
}

bool append_distortion_body(TextBuffer& page, const ReportInputs& in) {
    if (!in.results.distortion.ran) return append_skipped_note(page, "--no-distortion");
    const DistortionResult& r = in.results.distortion.result;
    const std::size_t shown = distortion_shown_channel(r);
    return append_snapshot(page, in, static_cast<unsigned>(shown)) &&
           append_tiles(page, r.channel[shown]);
}

} // namespace

bool append_distortion_card(TextBuffer& page, const ReportInputs& in) {
    const Badge badge = status_badge(check_status(in.results, GatingCheck::distortion));
    return append_card_open(page, "distortion", "<h3>Distortion (THD+N)</h3>", &badge) &&
           append_distortion_body(page, in) && append_card_close(page);
}
