// The Impulse Template card (shown when the check is enabled): per channel the samples above the
// template, the worst excess with both amplitudes, and the full and detail charts.
#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/cards/cards.h"
#include "report/cards/check_status.h"
#include "report/cards/worst_sample_view.h"

namespace {

constexpr WorstSampleCharts kCharts{"sx-impulsetemplate", "-impulsetemplate", "Impulse"};

bool append_counts(TextBuffer& page, const ImpulseTemplateChannel& c, std::uint32_t channels,
                   unsigned channel) {
    return append_channel_tile_row_open(page, channel) &&
           append_tile_text(page, "Channel", false, channel_label(channels, channel)) &&
           append_tile_count(page, "Total Fails", c.total_fails != 0, c.total_fails) &&
           append_tile_row_close(page);
}

bool append_worst(TextBuffer& page, const ImpulseTemplateChannel& c, std::uint32_t rate) {
    if (!c.has_failures) return true;
    return append_worst_sample_row_open(page, c.worst_sample, rate) &&
           text_append_format(page,
                              "<div class=\"tile\"><div class=\"k\">Diff (linear)</div><div "
                              "class=\"v fail\">%.6f</div></div>\n",
                              c.worst_diff) &&
           append_amplitudes_row_close(page, c.worst_ref_amp, c.worst_dut_amp);
}

bool append_channel(TextBuffer& page, const ReportInputs& in, unsigned channel) {
    const ImpulseTemplateChannel& c = in.results.impulse_template.result.channel[channel];
    return append_counts(page, c, in.ref.channels, channel) &&
           append_worst(page, c, in.ref.sample_rate) &&
           append_worst_sample_charts(page, in, channel, kCharts, failing_sample(c),
                                      in.results.figures.impulse_zoom[channel]);
}

} // namespace

bool append_impulse_template_card(TextBuffer& page, const ReportInputs& in) {
    if (!in.results.config.impulse_template.enabled.value) return true;
    const Badge badge = status_badge(check_status(in.results, GatingCheck::impulse_template));
    return append_card_open(page, "impulsetemplate", "<h3>Impulse Template</h3>", &badge) &&
           (!in.results.impulse_template.ran ||
            append_gallery(page, in.ref.channels,
                           [&](unsigned channel) { return append_channel(page, in, channel); })) &&
           append_card_close(page);
}
