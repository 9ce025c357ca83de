// The Bit-Exactness card (titled Bit Accuracy when only that check ran): samples differing with
// their share, the first and worst difference, the bit accuracy verdict and the difference-rate
// bar.
#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/cards/cards.h"
#include "report/cards/check_status.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>

namespace {

double differing_pct(const BitCompareResult& r) {
    if (r.samples_compared == 0) return 0.0;
    return static_cast<double>(r.samples_differing) * 100.0 /
           static_cast<double>(r.samples_compared);
}

// "%.4f%%" below 0.1 %, "%.1f%%" from 0.1 % up, "0%" when nothing was compared.
std::string differing_pct_text(const BitCompareResult& r) {
    if (r.samples_compared == 0) return "0%";
    const double pct = differing_pct(r);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), pct < 0.1 ? "%.4f%%" : "%.1f%%", pct);
    return text.data();
}

struct DiffPoint {
    std::uint64_t frame;
    double ref;
    double dut;
};

bool append_diff_tile_head(TextBuffer& page, const char* label, bool failing, DiffPoint point,
                           std::uint32_t rate) {
    return text_append_format(page,
                              "<div class=\"tile tile-wide\"><div class=\"k\">%s</div><div "
                              "class=\"v%s\">frame %zu (",
                              label, fail_suffix(failing), point.frame) &&
           append_frame_time(page, point.frame, rate) && text_append(page, ")");
}

bool append_diff_tile(TextBuffer& page, const char* label, bool failing, DiffPoint point,
                      std::uint32_t rate) {
    return append_diff_tile_head(page, label, failing, point, rate) &&
           text_append_format(page,
                              "</div>\n<div class=\"v-sub\">ref %.6f &rarr; dut %.6f &middot; "
                              "<span class=\"delta\">&Delta; %.6f</span></div></div>\n",
                              point.ref, point.dut, std::fabs(point.dut - point.ref));
}

bool append_diff_tiles(TextBuffer& page, const RunResults& results, std::uint32_t rate) {
    const BitCompareResult& r = results.bit_exact.result;
    if (r.samples_differing == 0) return true;
    const bool failing = !r.passed;
    const DiffPoint first{r.first_diff_frame, r.first_diff_ref_value, r.first_diff_dut_value};
    const DiffPoint worst{r.worst_diff_frame, r.worst_diff_ref_value, r.worst_diff_dut_value};
    // With bit accuracy run beside it, the worst difference is the one its verdict judges.
    const char* worst_label = results.bit_accuracy.ran ? "Bit Accuracy Worst Diff" : "Worst Diff";
    if (!append_diff_tile(page, "First Diff", failing, first, rate)) return false;
    if (r.worst_diff_frame != r.first_diff_frame || r.worst_diff_channel != r.first_diff_channel)
        return append_diff_tile(page, worst_label, failing, worst, rate);
    // The worst difference is the first one: its tile names the frame and refers to the tile
    // above instead of repeating the values.
    return append_diff_tile_head(page, worst_label, failing, worst, rate) &&
           text_append(page, " &middot; same location as above</div></div>\n");
}

bool append_accuracy_tile(TextBuffer& page, const RunResults& results) {
    const BitCompareResult& r = results.bit_accuracy.result;
    const double tolerance = results.config.bit_accuracy.tolerance_db.value;
    if (!r.passed && r.samples_compared == 0) {
        return text_append(page, "<div class=\"tile\"><div class=\"k\">Bit Accuracy</div><div "
                                 "class=\"v fail\">Fail</div></div>\n") &&
               text_append_format(page,
                                  "<div class=\"tile\"><div class=\"k\">Tolerance</div><div "
                                  "class=\"v\">%.2f dB</div></div>\n",
                                  tolerance);
    }
    // The tolerance is followed by the worst error it was held against, when anything differed.
    std::array<char, 48> worst{};
    if (r.max_error_db != kBitCompareNoErrorDb)
        std::snprintf(worst.data(), worst.size(), " &middot; worst %.2f dB", r.max_error_db);
    return text_append_format(page,
                              "<div class=\"tile tile-wide\"><div class=\"k\">Bit Accuracy</div>"
                              "<div class=\"v %s\">%s <span class=\"pct\">%.2f dB tolerance%s"
                              "</span></div></div>\n",
                              r.passed ? "pass" : "fail", r.passed ? "Pass" : "Fail", tolerance,
                              worst.data());
}

bool append_diffrate_bar(TextBuffer& page, const BitCompareResult& r) {
    return text_append_format(page,
                              "<div class=\"diffrate-bar\">\n<div class=\"diffrate-bar-track\">"
                              "<div class=\"diffrate-bar-fill\" style=\"width: %.1f%%;\"></div>"
                              "</div>\n<div class=\"diffrate-bar-label\">%s of samples differ"
                              "</div>\n</div>\n",
                              std::min(differing_pct(r), 100.0), differing_pct_text(r).c_str());
}

bool append_exact_body(TextBuffer& page, const RunResults& results, std::uint32_t rate) {
    const BitCompareResult& r = results.bit_exact.result;
    return text_append_format(page,
                              "<div class=\"tile-row\">\n<div class=\"tile\"><div class=\"k\">"
                              "Samples Differing</div><div class=\"v%s\">%zu <span class=\"pct\">"
                              "of %zu &middot; %s</span></div></div>\n",
                              fail_suffix(!r.passed), r.samples_differing, r.samples_compared,
                              differing_pct_text(r).c_str()) &&
           append_diff_tiles(page, results, rate) &&
           (!results.bit_accuracy.ran || append_accuracy_tile(page, results)) &&
           append_tile_row_close(page) && append_diffrate_bar(page, r);
}

bool append_accuracy_only_body(TextBuffer& page, const RunResults& results) {
    return text_append(page, "<p class=\"desc\">Strict comparison skipped -- run without "
                             "<code>--no-bitexact</code> to include it.</p>\n") &&
           text_append(page, "<div class=\"tile-row\">\n") && append_accuracy_tile(page, results) &&
           append_tile_row_close(page);
}

} // namespace

bool append_bitexact_card(TextBuffer& page, const ReportInputs& in) {
    const RunResults& results = in.results;
    if (!results.bit_exact.ran && !results.bit_accuracy.ran) return true;
    if (!results.bit_exact.ran) {
        const Badge skipped = check_badge(false, false, true);
        return append_card_open(page, "bitexact", "<h3>Bit Accuracy</h3>", &skipped) &&
               append_accuracy_only_body(page, results) && append_card_close(page);
    }
    const Badge badge = status_badge(check_status(results, GatingCheck::bitexact));
    return append_card_open(page, "bitexact", "<h3>Bit-Exactness</h3>", &badge) &&
           append_exact_body(page, results, in.ref.sample_rate) && append_card_close(page);
}
