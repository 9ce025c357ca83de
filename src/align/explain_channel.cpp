#include "align/alignment_diagnosis.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

// The facts every cause sentence draws on.
struct SentenceInputs {
    const char* prefix;
    const AlignmentDiagnosis& d;
    double rate;
    std::size_t max_lag;
    double whole_corr;
    double threshold;
};

double seconds(const SentenceInputs& in, double samples) {
    return samples / in.rate;
}

void polarity_sentence(BoundedText& out, const SentenceInputs& in) {
    bounded_append(out,
                   "%sthe DUT is polarity-inverted: it matches the reference with the sign flipped "
                   "(correlation %.4f), so no offset lines it up. Invert it and run again.",
                   in.prefix, in.d.inverted_corr);
}

void window_sentence(BoundedText& out, const SentenceInputs& in) {
    const std::int64_t lag = std::abs(in.d.wide_lag);
    const double lag_seconds = seconds(in, static_cast<double>(lag));
    // The lag plus 0.1 s, rounded up to a tenth; a lag of whole tenths is not raised further.
    const double suggested = std::ceil(lag_seconds * 10.0 + 1.0) / 10.0;
    bounded_append(out,
                   "%sthe DUT matches the reference but %.3f s (%ld samples) %s, outside the "
                   "+-%.3f s search window. Set alignment.fine_align_max_search_sec to at least "
                   "%.1f in sonalyx-defaults.cfg, or trim both files so they start together.",
                   in.prefix, lag_seconds, lag, in.d.wide_lag <= 0 ? "early" : "late",
                   seconds(in, static_cast<double>(in.max_lag)), suggested);
}

void drift_sentence(BoundedText& out, const SentenceInputs& in) {
    const std::int64_t drift = std::abs(in.d.last_lag - in.d.first_lag);
    const double last_start = static_cast<double>(in.d.last_start);
    const double ppm = static_cast<double>(drift) * 1e6 / last_start;
    bounded_append(out,
                   "%sthe start of the files lines up (offset %+ld samples) but the end lines up "
                   "%ld samples %s (offset %+ld, %.1f s further on). That fits samples skipped or "
                   "repeated in between, or a clock-speed difference of about %.0f ppm. One fixed "
                   "offset cannot line up the whole file, so no comparison was made.",
                   in.prefix, in.d.first_lag, drift,
                   in.d.first_lag < in.d.last_lag ? "later" : "earlier", in.d.last_lag,
                   seconds(in, last_start), ppm);
}

void first_only_sentence(BoundedText& out, const SentenceInputs& in) {
    const double stretch = seconds(in, static_cast<double>(in.d.stretch_len));
    bounded_append(out,
                   "%sthe first %.1f s lines up (offset %+ld samples) but the last %.1f s does not "
                   "(correlation %.2f). Something changes partway through: for example a splice, a "
                   "long dropout, a slip larger than the search window, or a different or "
                   "truncated ending.",
                   in.prefix, stretch, in.d.first_lag, stretch, in.d.last_corr);
}

void last_only_sentence(BoundedText& out, const SentenceInputs& in) {
    const double stretch = seconds(in, static_cast<double>(in.d.stretch_len));
    bounded_append(out,
                   "%sthe last %.1f s lines up (offset %+ld samples) but the first %.1f s does not "
                   "(correlation %.2f). The beginning differs, or the content changes partway "
                   "through.",
                   in.prefix, stretch, in.d.last_lag, stretch, in.d.first_corr);
}

void middle_sentence(BoundedText& out, const SentenceInputs& in) {
    bounded_append(out,
                   "%sthe first and the last %.1f s both line up (offset %+ld samples) but the "
                   "files as a whole do not (correlation %.2f, needs %.2f): a stretch in between "
                   "differs, for example a splice, a long dropout or inserted audio.",
                   in.prefix, seconds(in, static_cast<double>(in.d.stretch_len)), in.d.first_lag,
                   in.whole_corr, in.threshold);
}

void no_match_sentence(BoundedText& out, const SentenceInputs& in) {
    bounded_append(out,
                   "%sno consistent match (correlation %.4f, needs %.4f) in the whole file, its "
                   "first and last stretch, or a wider search. The files may not contain the same "
                   "audio, or the DUT is too heavily changed to line up. Check that you gave the "
                   "right pair.",
                   in.prefix, in.whole_corr, in.threshold);
}

} // namespace

void explain_channel(BoundedText& out, const char* prefix, const AlignmentDiagnosis& diagnosis,
                     std::uint32_t sample_rate, std::size_t max_lag, double whole_corr,
                     double confidence_threshold) {
    const SentenceInputs in{prefix,  diagnosis,  static_cast<double>(sample_rate),
                            max_lag, whole_corr, confidence_threshold};
    switch (diagnosis.cause) {
    case AlignmentCause::polarity_inverted:
        return polarity_sentence(out, in);
    case AlignmentCause::outside_search_window:
        return window_sentence(out, in);
    case AlignmentCause::drift:
        return drift_sentence(out, in);
    case AlignmentCause::only_first_stretch:
        return first_only_sentence(out, in);
    case AlignmentCause::only_last_stretch:
        return last_only_sentence(out, in);
    case AlignmentCause::middle_differs:
        return middle_sentence(out, in);
    default:
        return no_match_sentence(out, in);
    }
}
