#include "align/alignment_diagnosis.h"
#include "align/channel_correlation.h"

#include <algorithm>
#include <cstdlib>

namespace {

// A stretch lines up at this correlation, whatever the confidence threshold.
constexpr double kStretchLinesUp = 0.5;

// What every channel's diagnosis shares.
struct DiagnosisPlan {
    std::size_t common = 0;  // n: frames both files have
    std::size_t stretch = 0; // q: length of the first and last stretch (0: files too short)
    std::size_t max_lag = 0;
    double threshold = 0.0;
};

DiagnosisPlan plan_diagnosis(const WavFile& ref, const WavFile& dut, std::size_t max_lag,
                             double threshold) {
    DiagnosisPlan plan{std::min(ref.frames, dut.frames), 0, max_lag, threshold};
    const std::size_t rate = ref.sample_rate; // the reference's rate (both files share it)
    if (plan.common / 4 >= rate / 4) plan.stretch = std::min(plan.common / 4, rate);
    return plan;
}

// One search of the diagnosis; a search that could not get its memory marks the diagnosis so and
// reports false, and the channel's diagnosis ends there.
bool search(const ChannelView& ref, const ChannelView& dut, std::size_t max_lag, bool invert,
            AlignmentDiagnosis& d, CorrelationPeak& peak) {
    peak = correlate_channels(ref, dut, max_lag, invert);
    if (!peak.out_of_memory) return true;
    d.out_of_memory = true;
    d.failed_bytes = peak.failed_bytes;
    return false;
}

// Correlates the first and the last stretch and names the cause they point to, if any.
AlignmentCause search_stretches(const ChannelView& ref, const ChannelView& dut,
                                const DiagnosisPlan& plan, AlignmentDiagnosis& d) {
    const std::size_t q = plan.stretch;
    d.stretch_len = q;
    d.last_start = plan.common - q;
    CorrelationPeak first;
    CorrelationPeak last;
    if (!search(view_slice(ref, 0, q), view_slice(dut, 0, q), plan.max_lag, false, d, first) ||
        !search(view_slice(ref, d.last_start, q), view_slice(dut, d.last_start, q), plan.max_lag,
                false, d, last))
        return AlignmentCause::no_match;
    d.first_lag = first.lag;
    d.first_corr = first.corr;
    d.last_lag = last.lag;
    d.last_corr = last.corr;
    const bool first_ok = d.first_corr >= kStretchLinesUp;
    const bool last_ok = d.last_corr >= kStretchLinesUp;
    if (first_ok && last_ok)
        return d.first_lag == d.last_lag ? AlignmentCause::middle_differs : AlignmentCause::drift;
    if (first_ok) return AlignmentCause::only_first_stretch;
    if (last_ok) return AlignmentCause::only_last_stretch;
    return AlignmentCause::no_match;
}

// Searches half the common length for a confident match the alignment window could not reach.
AlignmentCause search_wide(const ChannelView& ref, const ChannelView& dut,
                           const DiagnosisPlan& plan, AlignmentDiagnosis& d) {
    const std::size_t bound = plan.common / 2;
    if (bound <= plan.max_lag) return AlignmentCause::no_match;
    CorrelationPeak wide;
    if (!search(ref, dut, bound, false, d, wide)) return AlignmentCause::no_match;
    d.wide_lag = wide.lag;
    d.wide_corr = wide.corr;
    const bool outside = static_cast<std::size_t>(std::abs(wide.lag)) > plan.max_lag;
    if (d.wide_corr >= plan.threshold && outside) return AlignmentCause::outside_search_window;
    return AlignmentCause::no_match;
}

AlignmentCause find_cause(const ChannelView& ref, const ChannelView& dut, double whole_corr,
                          const DiagnosisPlan& plan, AlignmentDiagnosis& d) {
    CorrelationPeak inverted;
    if (!search(ref, dut, plan.max_lag, true, d, inverted)) return AlignmentCause::no_match;
    d.inverted_corr = inverted.corr;
    const double flipped = -d.inverted_corr;
    if (flipped >= plan.threshold && flipped > whole_corr) return AlignmentCause::polarity_inverted;
    if (plan.stretch > 0) {
        const AlignmentCause cause = search_stretches(ref, dut, plan, d);
        if (cause != AlignmentCause::no_match || d.out_of_memory) return cause;
    }
    return search_wide(ref, dut, plan, d);
}

} // namespace

ChannelDiagnoses diagnose_alignment(const WavFile& ref, const WavFile& dut,
                                    const AlignmentResult& alignment, std::size_t max_lag,
                                    double confidence_threshold) {
    ChannelDiagnoses diagnosis{};
    const DiagnosisPlan plan = plan_diagnosis(ref, dut, max_lag, confidence_threshold);
    const std::size_t count = std::min<std::uint64_t>(alignment.channels, 2);
    for (std::size_t k = 0; k < count; ++k) {
        const ChannelAlignment& channel = alignment.channel[k];
        if (channel.state != AlignmentState::measured || channel.ok) continue;
        AlignmentDiagnosis& d = diagnosis[k];
        d.examined = true;
        // A file without channel k leaves the channel at cause 0.
        if (k >= ref.channels || k >= dut.channels) continue;
        d.cause =
            find_cause(channel_view(ref, k), channel_view(dut, k), channel.confidence, plan, d);
    }
    return diagnosis;
}
