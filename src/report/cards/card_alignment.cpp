// The Signal Alignment card: the length-mismatch caption, the confidence gauge with the offset
// (mono) or the file offset and disagreement (stereo), and a caption for every silent channel.
#include "report/cards/alignment_gauge.h"
#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/cards/cards.h"

#include <algorithm>

namespace {

double offset_ms(std::int64_t offset, std::uint32_t sample_rate) {
    if (sample_rate == 0) return 0.0;
    return static_cast<double>(offset) / static_cast<double>(sample_rate) * 1000.0;
}

const char* silent_files(const ChannelAlignment& channel) {
    if (channel.ref_silent && channel.dut_silent) return "Both reference and DUT are";
    return channel.ref_silent ? "Reference is" : "DUT is";
}

// `label` is "Channel" in mono, "L" or "R" in stereo; nothing is written for a sounding channel.
bool append_silence_caption(TextBuffer& page, const AlignmentResult& alignment, unsigned channel,
                            const char* label) {
    const ChannelAlignment& c = alignment.channel[channel];
    if (!c.ref_silent && !c.dut_silent) return true;
    // A borrowed offset is named as such even when both files are silent on the channel.
    if (c.state == AlignmentState::silent_borrowed) {
        return text_append_format(
            page,
            "<div class=\"align-gauge-caption\">%s: %s silent on this channel -- offset borrowed "
            "from the other channel (confidence %.3f), not independently measured.</div>\n",
            label, silent_files(c), alignment.channel[1 - channel].confidence);
    }
    if (c.ref_silent && c.dut_silent) {
        return text_append_format(page,
                                  "<div class=\"align-gauge-caption\">%s: %s silent on this "
                                  "channel -- nothing to compare, offset assumed 0.</div>\n",
                                  label, silent_files(c));
    }
    return text_append_format(page,
                              "<div class=\"align-gauge-caption\">%s: %s silent on this channel, "
                              "and no reliable offset was available to borrow -- assumed 0."
                              "</div>\n",
                              label, silent_files(c));
}

bool append_mono_gauge(TextBuffer& page, const AlignmentResult& alignment,
                       std::uint32_t sample_rate) {
    const std::int64_t offset = alignment.file_offset;
    return append_alignment_gauge_open(page, alignment.channel[0].confidence) &&
           text_append_format(page,
                              "<div class=\"align-gauge-caption\">%ld smp offset &middot; %.2f "
                              "ms</div>\n</div>\n",
                              offset, offset_ms(offset, sample_rate)) &&
           append_silence_caption(page, alignment, 0, "Channel");
}

// The lower confidence of the measured channels; 1.0 when neither was measured.
double stereo_gauge_value(const AlignmentResult& alignment) {
    double value = 1.0;
    bool any = false;
    for (const ChannelAlignment& c : alignment.channel) {
        if (c.state != AlignmentState::measured) continue;
        value = any ? std::min(value, c.confidence) : c.confidence;
        any = true;
    }
    return value;
}

bool append_stereo_gauge(TextBuffer& page, const AlignmentResult& alignment,
                         std::uint32_t sample_rate) {
    // Silent channels are already excused inside the aligned flag (they count as reliable), so
    // the headline is marked failing exactly when the file is not aligned.
    const std::int64_t offset = alignment.file_offset;
    return append_alignment_gauge_open(page, stereo_gauge_value(alignment)) &&
           text_append_format(page,
                              "<div class=\"align-gauge-caption%s\">File Offset %ld smp (%.2f ms) "
                              "&middot; Disagreement %ld smp</div>\n",
                              fail_suffix(!alignment.aligned), offset,
                              offset_ms(offset, sample_rate), alignment.disagreement) &&
           text_append_format(page,
                              "<div class=\"align-gauge-caption\">L %.3f &middot; R %.3f</div>\n"
                              "</div>\n",
                              alignment.channel[0].confidence, alignment.channel[1].confidence) &&
           append_silence_caption(page, alignment, 0, "L") &&
           append_silence_caption(page, alignment, 1, "R");
}

bool append_length_mismatch(TextBuffer& page, const LengthMismatch& mismatch) {
    if (!mismatch.failed) return true;
    return text_append_format(page,
                              "<div class=\"align-gauge-caption fail\">Length mismatch: %.1f%% of "
                              "the reference (%ld samples) falls outside the aligned overlap and "
                              "was not compared by any check below.</div>\n",
                              mismatch.uncovered_pct, mismatch.uncovered_samples);
}

} // namespace

bool append_alignment_card(TextBuffer& page, const ReportInputs& in) {
    const RunResults& results = in.results;
    const std::uint32_t rate = in.ref.sample_rate;
    const bool stereo = in.ref.channels == 2;
    return append_card_open(page, "alignment", "<h3>Signal Alignment</h3>", nullptr) &&
           append_length_mismatch(page, results.length_mismatch) &&
           (stereo ? append_stereo_gauge(page, results.alignment, rate)
                   : append_mono_gauge(page, results.alignment, rate)) &&
           append_card_close(page);
}
