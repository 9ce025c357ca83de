#include "align/alignment_diagnosis.h"

namespace {

// What every sentence of the paragraph needs besides the records.
struct ExplainSettings {
    std::uint32_t sample_rate;
    std::size_t max_lag;
    std::int64_t tolerance;
    double threshold;
};

void disagreement_sentence(BoundedText& out, const AlignmentResult& alignment,
                           const ExplainSettings& settings) {
    bounded_append(out,
                   "the channels disagree by %ld samples (left lines up at %+ld, right at %+ld), "
                   "more than the %ld allowed. If the DUT really delays one channel, raise "
                   "alignment.fine_align_agreement_tolerance_samples in sonalyx-defaults.cfg; "
                   "otherwise check the capture.",
                   alignment.disagreement, alignment.channel[0].offset, alignment.channel[1].offset,
                   settings.tolerance);
}

void channel_sentence(BoundedText& out, const char* prefix, const AlignmentResult& alignment,
                      const ChannelDiagnoses& diagnosis, std::size_t k,
                      const ExplainSettings& settings) {
    explain_channel(out, prefix, diagnosis[k], settings.sample_rate, settings.max_lag,
                    alignment.channel[k].confidence, settings.threshold);
}

void silent_partner_sentence(BoundedText& out, const char* side) {
    bounded_append(out,
                   " The %s channel is silent in the reference or the DUT, so it offered no "
                   "offset to go by.",
                   side);
}

// Equal causes whose telling figures agree, so one sentence can speak for both channels.
bool same_explanation(const AlignmentDiagnosis& left, const AlignmentDiagnosis& right) {
    if (left.cause != right.cause) return false;
    switch (left.cause) {
    case AlignmentCause::polarity_inverted:
        return true;
    case AlignmentCause::outside_search_window:
        return left.wide_lag == right.wide_lag;
    case AlignmentCause::only_first_stretch:
    case AlignmentCause::middle_differs:
        return left.first_lag == right.first_lag;
    case AlignmentCause::only_last_stretch:
        return left.last_lag == right.last_lag;
    case AlignmentCause::drift:
        return left.first_lag == right.first_lag && left.last_lag == right.last_lag;
    default:
        return false;
    }
}

void both_unmatched_sentence(BoundedText& out, const AlignmentResult& alignment,
                             const ExplainSettings& settings) {
    bounded_append(out,
                   "no consistent match (correlation %.4f on the left channel, %.4f on the "
                   "right, needs %.4f) in the whole file, its first and last stretch, or a wider "
                   "search. The files may not contain the same audio, or the DUT is too heavily "
                   "changed to line up. Check that you gave the right pair.",
                   alignment.channel[0].confidence, alignment.channel[1].confidence,
                   settings.threshold);
}

void both_channels_sentence(BoundedText& out, const AlignmentResult& alignment,
                            const ChannelDiagnoses& diagnosis, const ExplainSettings& settings) {
    BoundedText shared = bounded_text(kBothChannelsSentenceCapacity);
    channel_sentence(shared, "", alignment, diagnosis, 0, settings);
    bounded_append(out, "both channels: %s", shared.storage.data());
}

// Each failed channel gets its own sentence; a silent partner is named after it.
void per_channel_sentences(BoundedText& out, const AlignmentResult& alignment,
                           const ChannelDiagnoses& diagnosis, const ExplainSettings& settings) {
    const ChannelAlignment& left = alignment.channel[0];
    const ChannelAlignment& right = alignment.channel[1];
    if (!left.ok) {
        channel_sentence(out, "left channel: ", alignment, diagnosis, 0, settings);
        if (right.state == AlignmentState::silent_zero) silent_partner_sentence(out, "right");
    }
    if (right.ok) return;
    if (!left.ok) bounded_append(out, " ");
    channel_sentence(out, "right channel: ", alignment, diagnosis, 1, settings);
    if (left.state == AlignmentState::silent_zero) silent_partner_sentence(out, "left");
}

void explain_stereo(BoundedText& out, const AlignmentResult& alignment,
                    const ChannelDiagnoses& diagnosis, const ExplainSettings& settings) {
    const bool left_ok = alignment.channel[0].ok;
    const bool right_ok = alignment.channel[1].ok;
    if (left_ok && right_ok) return disagreement_sentence(out, alignment, settings);
    if (!left_ok && !right_ok) {
        // Only two causes of exactly 0 share the joint sentence; equal unknown causes do not.
        const AlignmentCause left_cause = diagnosis[0].cause;
        if (left_cause == AlignmentCause::no_match && diagnosis[1].cause == left_cause)
            return both_unmatched_sentence(out, alignment, settings);
        if (same_explanation(diagnosis[0], diagnosis[1]))
            return both_channels_sentence(out, alignment, diagnosis, settings);
    }
    per_channel_sentences(out, alignment, diagnosis, settings);
}

} // namespace

std::string explain_alignment_failure(const AlignmentResult& alignment,
                                      const ChannelDiagnoses& diagnosis, std::uint32_t sample_rate,
                                      std::size_t max_lag, std::int64_t tolerance,
                                      double confidence_threshold) {
    const ExplainSettings settings{sample_rate, max_lag, tolerance, confidence_threshold};
    BoundedText out = bounded_text(kAlignmentExplanationCapacity);
    bounded_append(out, "alignment failed -- ");
    // Only the first two channels are ever examined, so any count from two up reads as stereo.
    if (alignment.channels >= 2) {
        explain_stereo(out, alignment, diagnosis, settings);
    } else if (alignment.channel[0].ok) {
        disagreement_sentence(out, alignment, settings);
    } else {
        channel_sentence(out, "", alignment, diagnosis, 0, settings);
    }
    return std::string(bounded_view(out));
}
