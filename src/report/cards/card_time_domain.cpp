// The Time Domain card (shown when the scan is enabled): per channel the scored and excluded
// samples, the fails by level tier, the worst sample against its tolerance, and the full and
// detail charts.
#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/cards/cards.h"
#include "report/cards/check_status.h"
#include "report/cards/worst_sample_view.h"

namespace {

constexpr WorstSampleCharts kCharts{"sx-timedomain", "-timedomain", "Time Domain"};

bool append_counts(TextBuffer& page, const TimeDomainChannel& c, std::uint32_t channels,
                   unsigned channel) {
    return append_channel_tile_row_open(page, channel) &&
           append_tile_text(page, "Channel", false, channel_label(channels, channel)) &&
           append_tile_count(page, "Samples Included", false, c.samples_included) &&
           append_tile_count(page, "Samples Excluded", false, c.samples_excluded) &&
           append_tile_count(page, "Total Fails", c.total_fails != 0, c.total_fails) &&
           append_tile_row_close(page) &&
           text_append_format(page,
                              "<div class=\"tile-row\">\n<div class=\"tile\"><div class=\"k\">"
                              "Fails: Low-Level Signal Tier</div><div class=\"v\">%zu</div></div>\n"
                              "<div class=\"tile\"><div class=\"k\">Fails: Signal Tier</div><div "
                              "class=\"v\">%zu</div></div>\n<div class=\"tile\"><div class=\"k\">"
                              "Fails: Peak Tier</div><div class=\"v\">%zu</div></div>\n</div>\n",
                              c.fails_low_level_signal_tier, c.fails_signal_tier,
                              c.fails_peak_tier);
}

bool append_worst(TextBuffer& page, const TimeDomainChannel& c, std::uint32_t rate) {
    if (!c.has_failures) return true;
    return append_worst_sample_row_open(page, c.worst_sample, rate) &&
           text_append_format(page,
                              "<div class=\"tile\"><div class=\"k\">Diff / Tolerance</div><div "
                              "class=\"v fail\">%.2f%% / %.2f%%</div></div>\n",
                              c.worst_diff_pct, c.worst_tolerance_pct) &&
           append_amplitudes_row_close(page, c.worst_ref_amp, c.worst_dut_amp);
}

bool append_channel(TextBuffer& page, const ReportInputs& in, unsigned channel) {
    const TimeDomainChannel& c = in.results.time_domain.result.channel[channel];
    return append_counts(page, c, in.ref.channels, channel) &&
           append_worst(page, c, in.ref.sample_rate) &&
           append_worst_sample_charts(page, in, channel, kCharts, failing_sample(c),
                                      in.results.figures.time_domain_zoom[channel]);
}

} // namespace

bool append_time_domain_card(TextBuffer& page, const ReportInputs& in) {
    if (!in.results.config.time_domain.enabled.value) return true;
    const Badge badge = status_badge(check_status(in.results, GatingCheck::time_domain));
    return append_card_open(page, "timedomain", "<h3>Time Domain</h3>", &badge) &&
           (!in.results.time_domain.ran ||
            append_gallery(page, in.ref.channels,
                           [&](unsigned channel) { return append_channel(page, in, channel); })) &&
           append_card_close(page);
}
